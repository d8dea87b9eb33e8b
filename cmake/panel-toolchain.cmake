# A panel's own cross-compiler and Qt, as doc/cross-building.md explains. Hand over with -D, or write in
# here, what differs from panel to panel:
#   PANEL_COMPILER   the C++ compiler: a name in the PATH, or a whole path
#   PANEL_QMAKE      the qmake of the panel's Qt, a program of this machine
#   PANEL_SYSROOT    a folder with the panel's /lib and /usr; nothing if the compiler knows its own
#   PANEL_FLAGS      what the panel's other software is compiled with, such as
#                    "-mcpu=arm926ej-s -mfloat-abi=soft"; nothing if the compiler does it by itself
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR arm)
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES PANEL_COMPILER PANEL_QMAKE PANEL_SYSROOT PANEL_FLAGS)

if(NOT PANEL_COMPILER OR NOT PANEL_QMAKE)
  message(FATAL_ERROR "PANEL_COMPILER and PANEL_QMAKE say what to build with; see doc/cross-building.md")
endif()
set(CMAKE_CXX_COMPILER ${PANEL_COMPILER})
set(CMAKE_CXX_FLAGS_INIT "${PANEL_FLAGS}")
set(CMAKE_SYSROOT ${PANEL_SYSROOT})

# Nothing is taken from this machine but programs: an SDK that lacks something is to say so.
execute_process(COMMAND ${PANEL_QMAKE} -query QT_INSTALL_PREFIX
  OUTPUT_VARIABLE panel_qt OUTPUT_STRIP_TRAILING_WHITESPACE)
set(QT_QMAKE_EXECUTABLE ${PANEL_QMAKE} CACHE FILEPATH "qmake of the panel's Qt")
set(CMAKE_FIND_ROOT_PATH ${PANEL_SYSROOT} ${panel_qt})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
