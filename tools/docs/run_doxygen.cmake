# Writes the reference of the functions as DOXYFILE says.
# SPDX-License-Identifier: Apache-2.0
find_program(doxygen doxygen)
if(NOT doxygen)
  message(FATAL_ERROR "Doxygen is not installed; run scripts/bootstrap --also docs")
endif()
execute_process(COMMAND ${doxygen} ${DOXYFILE} COMMAND_ERROR_IS_FATAL ANY)
