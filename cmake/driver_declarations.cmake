# Reads the declarations of the driver's functions, for scripts that write something for each of them.
# SPDX-License-Identifier: Apache-2.0

# Sets driver_functions to the names, in the header's order, and for each of them NAME_result, NAME_signature and
# NAME_arguments, the names of its arguments.
macro(read_driver_declarations header)
  file(READ ${header} text)
  string(REPLACE ";" "@" text "${text}")
  string(REGEX REPLACE "/\\*([^*]|\\*[^/])*\\*/" "" text "${text}")
  string(REGEX REPLACE "[ \n]+" " " text "${text}")
  string(REGEX MATCHALL "(pd_status_t |ms_state \\*|void \\*|void )[a-z0-9_]+\\([^()]*\\)@" declarations "${text}")
  set(driver_functions)
  foreach(declaration IN LISTS declarations)
    string(REGEX MATCH "^(pd_status_t |ms_state \\*|void \\*|void )([a-z0-9_]+)\\(([^()]*)\\)" signature
      "${declaration}")
    set(function ${CMAKE_MATCH_2})
    list(APPEND driver_functions ${function})
    set(${function}_signature "${signature}")
    set(${function}_result "${CMAKE_MATCH_1}")
    set(${function}_arguments)
    string(REGEX MATCHALL "[a-z0-9_]+ ?(,|$)" parameters "${CMAKE_MATCH_3}")
    foreach(parameter IN LISTS parameters)
      string(REGEX REPLACE "[ ,]" "" parameter "${parameter}")
      if(NOT parameter STREQUAL void)
        list(APPEND ${function}_arguments ${parameter})
      endif()
    endforeach()
  endforeach()
endmacro()
