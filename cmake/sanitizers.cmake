# Sanitizers for the whole build, the catalogue compiler and every test included: the presets asan and tsan set this.
# The build type Sanitized brings their optimisation: fast enough for the tests, true to the source in a stack trace.
# SPDX-License-Identifier: Apache-2.0
set(TARVEX_SANITIZE "" CACHE STRING "sanitizers to build with, e.g. 'address,undefined' or 'thread'")

foreach(language IN ITEMS C CXX)
  # By now CMake itself has put an empty entry there.
  if(NOT CMAKE_${language}_FLAGS_SANITIZED)
    set(CMAKE_${language}_FLAGS_SANITIZED "-O1 -g" CACHE STRING "flags of the build type Sanitized" FORCE)
  endif()
  mark_as_advanced(CMAKE_${language}_FLAGS_SANITIZED)
endforeach()

if(TARVEX_SANITIZE)
  add_compile_options(-fsanitize=${TARVEX_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${TARVEX_SANITIZE})
endif()
