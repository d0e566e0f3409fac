# A short build. Debug information of everything but the library names functions and lines, which a stack trace and a
# profile take; the preset debug has all of it. What only builds or tests is optimised for the time of its compilation.
# SPDX-License-Identifier: Apache-2.0
add_compile_options($<$<CONFIG:RelWithDebInfo>:-g1>)

# Types and layouts in it are what the binary interface is compared by.
set(TARVEX_FULL_DEBUG_INFORMATION $<$<CONFIG:RelWithDebInfo>:-g>)
# For what nobody waits for once it is built.
set(TARVEX_QUICKLY_COMPILED $<$<CONFIG:RelWithDebInfo>:-O1>)

# Small files with one subject each read the same headers again; compiled some at a time, they are read once. Not by
# default, since names in anonymous namespaces then have to differ from file to file. Never those of the library.
option(TARVEX_COMPILE_TOGETHER "compile files of programs and stand-in some at a time" OFF)
set(CMAKE_UNITY_BUILD ${TARVEX_COMPILE_TOGETHER})
set(CMAKE_UNITY_BUILD_BATCH_SIZE 8)
