# Writes a definition of each imported function but the allocator's from its declaration, by a call of a template that a
# header has: cmake -DDECLARATIONS= -DOUTPUT= [-DHEADER= -DTEMPLATE=] -P (this file). The recorder's own definitions see
# the whole register of a device, whatever the declaration says: bits above the device must not reach a driver.
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
    list(PREPEND ${function}_arguments "\"${function}\"")
    list(JOIN ${function}_arguments ", " names)
    set(signature "${${function}_signature}")
    if(TEMPLATE STREQUAL "tarvex::test::recorded")
      string(REPLACE "uint32_t dev_id" "uint64_t dev_id" signature "${signature}")
      string(REPLACE "${function}(" "recorded_${function}(" signature "${signature}")
      string(APPEND definitions "\n${signature} __asm__(\"${function}\")@")
    endif()
    string(APPEND definitions
      "\n${signature}\n{\n  return ${TEMPLATE}<${${function}_result}>(${names})@\n}\n")
  endif()
endforeach()
string(REPLACE "@" ";" definitions "${definitions}")
file(WRITE ${OUTPUT} "${definitions}\n}  // extern \"C\"\n")
