# The Debian packages, by `cpack -G DEB`: configure with the preset 'package', whose prefix is /usr.
# SPDX-License-Identifier: Apache-2.0
set(here ${CMAKE_CURRENT_SOURCE_DIR}/debian)
set(control ${CMAKE_CURRENT_BINARY_DIR}/control)

file(STRINGS ${here}/changelog maintainer REGEX "^ -- " LIMIT_COUNT 1)
string(REGEX REPLACE "^ -- (.*>)  .*" "\\1" maintainer "${maintainer}")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tarvex)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "${maintainer}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_COMPONENTS_ALL library standin trace agent development tools)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
# Each package has a description of its own, first line and all.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
# Made ready for Debian behind the install: documents, compression, search paths, and the packages that each depends on.
# (CPack's own way to those would have a maintainer script call ldconfig, where a trigger does.)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_SOURCE_DIR}/finish_package.cmake)
set(CPACK_TARVEX_DOCUMENTS ${here})

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SOURCE tarvex)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${maintainer}")
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)

# package COMPONENT NAME GROUP SUMMARY TEXT: name, place and description of a component's package.
macro(package component name group summary text)
  string(TOUPPER ${component} upper)
  set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${name})
  set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION ${group})
  set(CPACK_DEBIAN_${upper}_DESCRIPTION "${summary}\n${text}")
endmacro()

package(library ${TARVEX_LIBRARY_PACKAGE}0 libs "control-plane interface of the ${TARVEX_PIPELINE_NAME} pipeline"
"A shared library through which a program fills and reads the match tables,
action profiles, counters, meters, registers and hash settings of the switch
pipeline ${TARVEX_PIPELINE_NAME} in its profile ${TARVEX_PIPELINE_PROFILE}. The driver of the switch
comes from elsewhere.")
package(standin libtarvex-standin0 libs "stand-in switch for the ${TARVEX_PIPELINE_NAME} pipeline"
"A switch kept in memory that answers the driver calls of the control-plane
library, for tests and for machines that have no switch.")
package(trace libtarvex-trace0 libs "trace of the driver calls of a ${TARVEX_PIPELINE_NAME} program"
"Stands between the control-plane library and the switch driver of a program
that is started with it, and writes down every call.")
package(agent libtarvex-agent0 libs "shell for the ${TARVEX_PIPELINE_NAME} pipeline within a program"
"Lets a program that controls a switch serve the shell tvsh from within.")
package(development ${TARVEX_LIBRARY_PACKAGE}-dev libdevel
  "development files of the ${TARVEX_PIPELINE_NAME} control-plane interface"
"Headers, links and build-system files for programs that use the library and
the stand-in switch: CMake package tarvex, pkg-config modules tarvex_pd,
tarvex_standin, tarvex_agent and tarvex_trace.")
package(tools tarvex-tools net "shell for switches with the ${TARVEX_PIPELINE_NAME} pipeline"
"The program tvsh reads and writes the tables of the switch by name, from a
prompt or a script. It brings the stand-in switch along.")

# What dpkg-shlibdeps reads of the libraries, and the trigger that has the loader's cache brought up to date. The
# library's symbols are the list that a change of the interface is compared with.
file(WRITE ${control}/triggers "activate-noawait ldconfig\n")
set(packages_of_libraries)
foreach(component IN ITEMS library standin trace agent)
  string(TOUPPER ${component} upper)
  set(name ${CPACK_DEBIAN_${upper}_PACKAGE_NAME})
  list(APPEND packages_of_libraries "${name} (= ${PROJECT_VERSION})")
  string(REGEX REPLACE "0$" "" stem ${name})
  string(REPLACE "-" "_" stem ${stem})
  file(WRITE ${control}/${component}/shlibs "${stem} 0 ${name} (>= ${PROJECT_VERSION})\n")
  set(CPACK_DEBIAN_${upper}_PACKAGE_CONTROL_EXTRA ${control}/triggers ${control}/${component}/shlibs)
endforeach()
list(JOIN packages_of_libraries ", " CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS)
string(APPEND CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS ", libc6-dev")
list(GET packages_of_libraries 0 CPACK_DEBIAN_AGENT_PACKAGE_DEPENDS)
list(FILTER packages_of_libraries EXCLUDE REGEX "agent")
list(JOIN packages_of_libraries ", " CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS)

set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/abi/exported_symbols.txt)
file(STRINGS ${PROJECT_SOURCE_DIR}/abi/exported_symbols.txt symbols REGEX "^[^#]")
list(TRANSFORM symbols PREPEND " ")
list(TRANSFORM symbols APPEND "@Base ${PROJECT_VERSION}")
list(JOIN symbols "\n" symbols)
file(WRITE ${control}/library/symbols
  "lib${TARVEX_LIBRARY}.so.0 ${CPACK_DEBIAN_LIBRARY_PACKAGE_NAME} #MINVER#\n"
  "* Build-Depends-Package: ${TARVEX_LIBRARY_PACKAGE}-dev\n${symbols}\n")
list(APPEND CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${control}/library/symbols)
# Where packages of one build find each other's libraries.
set(CPACK_TARVEX_LIBRARIES
  ${PROJECT_BINARY_DIR}/src ${PROJECT_BINARY_DIR}/platform/standin
  ${PROJECT_BINARY_DIR}/tools/trace ${PROJECT_BINARY_DIR}/tools/agent)

include(CPack)
