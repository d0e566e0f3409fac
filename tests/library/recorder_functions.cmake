# Writes a definition of each imported function but the allocator's from its declaration, by a call of a template that a
# header has: cmake -DDECLARATIONS= -DOUTPUT= [-DHEADER= -DTEMPLATE=] -P (this file).
# SPDX-License-Identifier: Apache-2.0
include(${CMAKE_CURRENT_LIST_DIR}/../../cmake/driver_declarations.cmake)
if(NOT HEADER)
  set(HEADER recorder.h)
  set(TEMPLATE tarvex::test::recorded)
endif()
read_driver_declarations(${DECLARATIONS})

set(definitions "// Generated from ${DECLARATIONS}\n\n#include \"${HEADER}\"\n\nextern \"C\" {\n")
foreach(function IN LISTS driver_functions)
  if(NOT ${function}_result MATCHES "^void")
    list(PREPEND ${function}_arguments __func__)
    list(JOIN ${function}_arguments ", " names)
    string(APPEND definitions
      "\n${${function}_signature}\n{\n  return ${TEMPLATE}<${${function}_result}>(${names})@\n}\n")
  endif()
endforeach()
string(REPLACE "@" ";" definitions "${definitions}")
file(WRITE ${OUTPUT} "${definitions}\n}  // extern \"C\"\n")
