# Writes the list of the driver's functions with their rows, and a definition of each that the interposer exports:
# cmake -DDECLARATIONS= -DROWS= -DDEFINITIONS= -P (this file).
# SPDX-License-Identifier: Apache-2.0
include(${CMAKE_CURRENT_LIST_DIR}/../../cmake/driver_declarations.cmake)
read_driver_declarations(${DECLARATIONS})

set(head "// Generated from the driver's declarations@ do not edit.\n//\n// SPDX-License-Identifier: Apache-2.0\n")
set(rows "${head}#pragma once\n\n#include \"call_row.h\"\n\nnamespace tarvex::trace {\n\n")
set(definitions "${head}#include \"interposed.h\"\n\nextern \"C\" {\n")
set(list)
foreach(function IN LISTS driver_functions)
  list(JOIN ${function}_arguments "\", \"" quoted)
  if(quoted)
    set(quoted "\"${quoted}\"")
  endif()
  string(APPEND rows
    "template <>\ninline constexpr call_row row_of<&${function}> =\n"
    "    row_for(&${function}, \"${function}\", {${quoted}})@\n")
  string(APPEND list "${comma}&${function}")
  set(comma ",\n    ")
  list(JOIN ${function}_arguments ", " names)
  string(APPEND definitions
    "\n${${function}_signature}\n{\n  return tarvex::trace::call<&${function}>(${names})@\n}\n")
endforeach()
string(APPEND rows "\nusing driver_functions = function_list<\n    ${list}>@\n\n}  // namespace tarvex::trace\n")
string(APPEND definitions "\n}  // extern \"C\"\n")
foreach(kind rows definitions)
  string(REPLACE "@" ";" ${kind} "${${kind}}")
  string(TOUPPER ${kind} output)
  file(WRITE ${${output}} "${${kind}}")
endforeach()
