# Warnings for all of our own code; a target asks for them by linking tarvex_warnings.
# SPDX-License-Identifier: Apache-2.0
add_library(tarvex_warnings INTERFACE)
target_compile_options(tarvex_warnings INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  # GCC 12's own std::stable_sort uses what C++20 deprecates, and clang lays that at our door.
  target_compile_options(tarvex_warnings INTERFACE -Wno-deprecated-declarations)
endif()
