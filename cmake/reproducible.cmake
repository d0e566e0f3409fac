# The same bytes wherever it is built: no folder of this machine is written into what is compiled. Coverage looks its
# sources up by the folder, and does without.
# SPDX-License-Identifier: Apache-2.0
if(NOT CMAKE_BUILD_TYPE STREQUAL "Coverage")
  add_compile_options(-ffile-prefix-map=${PROJECT_BINARY_DIR}=build -ffile-prefix-map=${PROJECT_SOURCE_DIR}=.)
endif()
