# Reads what CMake itself needs of the pipeline in the folder TARVEX_PIPELINE: the names of targets and files must be
# known before the rows are compiled.
# SPDX-License-Identifier: Apache-2.0
foreach(stem pipeline totals)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${TARVEX_PIPELINE}/${stem}.toml)
  if(NOT EXISTS ${TARVEX_PIPELINE}/${stem}.toml)
    message(FATAL_ERROR
      "${TARVEX_PIPELINE}: no ${stem}.toml; give TARVEX_PIPELINE a folder with the rows of a pipeline")
  endif()
endforeach()

# Sets `variable` to the value of a key of a file; the key starts its line.
function(read_row_value stem key variable)
  file(STRINGS ${TARVEX_PIPELINE}/${stem}.toml line REGEX "^${key} *= *" LIMIT_COUNT 1)
  if(NOT line MATCHES "= *\"?([^\"# ]+)")
    message(FATAL_ERROR "${TARVEX_PIPELINE}/${stem}.toml: no line '${key} = ...'")
  endif()
  set(${variable} ${CMAKE_MATCH_1} PARENT_SCOPE)
endfunction()

read_row_value(pipeline name TARVEX_PIPELINE_NAME)
read_row_value(pipeline profile TARVEX_PIPELINE_PROFILE)
read_row_value(pipeline library TARVEX_LIBRARY)
read_row_value(totals tables TARVEX_TABLE_COUNT)
read_row_value(totals profiles TARVEX_PROFILE_COUNT)
