# Fails unless LIBRARY is called SONAME, needs no other libraries than QT_CORE and those of the
# compiler, takes nothing from Qt that is private, and can be taken out of memory again.
cmake_minimum_required(VERSION 3.16)

function(read_library option variable)
  execute_process(COMMAND ${READELF} --wide ${option} ${LIBRARY}
    OUTPUT_VARIABLE text RESULT_VARIABLE failed)
  if(failed)
    message(FATAL_ERROR "${READELF} ${option} could not read ${LIBRARY}")
  endif()
  set(${variable} "${text}" PARENT_SCOPE)
endfunction()

read_library(--dynamic dynamic)
if(NOT dynamic MATCHES "\\(SONAME\\)[^\n]*\\[([^]\n]+)" OR NOT CMAKE_MATCH_1 STREQUAL SONAME)
  message(FATAL_ERROR "the library is called ${CMAKE_MATCH_1}, not ${SONAME}")
endif()
string(REGEX MATCHALL "\\(NEEDED\\)[^\n]*" needed "${dynamic}")
list(TRANSFORM needed REPLACE ".*\\[([^]]+).*" "\\1")
if(NOT "${QT_CORE}" IN_LIST needed)
  message(FATAL_ERROR "needs ${needed}, but not ${QT_CORE}")
endif()
list(REMOVE_ITEM needed ${QT_CORE})
list(FILTER needed EXCLUDE REGEX "^(libstdc\\+\\+|libgcc_s|libm|libc|ld-linux.*)\\.so")
if(needed)
  message(FATAL_ERROR "needs ${needed} as well")
endif()
# Where Qt lies is written into the file while it is in the build tree only; installing takes it out.
if(dynamic MATCHES "NODELETE|TEXTREL")
  message(FATAL_ERROR "marked with ${CMAKE_MATCH_0}")
endif()

# Qt marks what it does not promise to keep with a version of its own.
read_library(--version-info versions)
if(versions MATCHES "PRIVATE" OR (QT_CORE MATCHES "Qt[56]" AND NOT versions MATCHES "Qt_[0-9]"))
  message(FATAL_ERROR "takes from Qt's private interface, or the versions could not be read:\n${versions}")
endif()

# One symbol that is unique in the process would keep the file in memory for ever, and make two
# libraries share it.
read_library(--symbols symbols)
if(NOT symbols MATCHES "intf_getVersion" OR symbols MATCHES "[^\n]* UNIQUE [^\n]*")
  message(FATAL_ERROR "unique in the process:\n${CMAKE_MATCH_0}")
endif()
