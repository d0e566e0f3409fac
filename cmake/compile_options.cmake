# Warnings for all of our own code; a target asks for them by linking tarvex_warnings.
# SPDX-License-Identifier: Apache-2.0
add_library(tarvex_warnings INTERFACE)
target_compile_options(tarvex_warnings INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
