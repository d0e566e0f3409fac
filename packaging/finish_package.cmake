# Runs behind cpack's install of all components and ahead of the packing: changelog and copyright, compressed pages, no
# search path in a program, and the packages that the package's programs and libraries depend on.
# SPDX-License-Identifier: Apache-2.0
cmake_policy(VERSION 3.25)

# dpkg-shlibdeps asks for a source package around it.
set(source ${CPACK_TOPLEVEL_DIRECTORY}/shlibdeps)
file(WRITE ${source}/debian/control "Source: ${CPACK_PACKAGE_NAME}\n\nPackage: any\nArchitecture: any\n")
list(TRANSFORM CPACK_TARVEX_LIBRARIES PREPEND -l OUTPUT_VARIABLE search)

file(GLOB components LIST_DIRECTORIES true ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/*)
foreach(component IN LISTS components)
  get_filename_component(name ${component} NAME)
  string(TOUPPER ${name} upper)
  set(package ${CPACK_DEBIAN_${upper}_PACKAGE_NAME})
  if(NOT package)
    message(FATAL_ERROR "finish_package: '${component}' is the folder of no component")
  endif()
  set(documents ${component}/usr/share/doc/${package})
  file(COPY ${CPACK_TARVEX_DOCUMENTS}/changelog ${CPACK_TARVEX_DOCUMENTS}/copyright DESTINATION ${documents}
    FILE_PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
  file(GLOB pages ${component}/usr/share/man/man*/*.[1-9])
  execute_process(COMMAND gzip -9nf ${documents}/changelog ${pages} COMMAND_ERROR_IS_FATAL ANY)
  file(GLOB_RECURSE binaries LIST_DIRECTORIES false ${component}/usr/bin/* ${component}/usr/lib/*.so*)
  foreach(binary IN LISTS binaries)
    if(IS_SYMLINK ${binary})
      list(REMOVE_ITEM binaries ${binary})
    else()
      file(RPATH_REMOVE FILE ${binary})
    endif()
  endforeach()
  if(binaries)
    execute_process(COMMAND dpkg-shlibdeps ${search} --ignore-missing-info -O ${binaries}
      WORKING_DIRECTORY ${source} OUTPUT_VARIABLE found ERROR_QUIET COMMAND_ERROR_IS_FATAL ANY)
    string(REGEX REPLACE "shlibs:Depends=([^\n]*)\n.*" "\\1" found "${found}")
    set(depends CPACK_DEBIAN_${upper}_PACKAGE_DEPENDS)
    string(JOIN ", " ${depends} ${${depends}} "${found}")
  endif()
endforeach()
