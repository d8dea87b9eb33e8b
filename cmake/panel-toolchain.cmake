# Toolchain file for a panel's own cross-compiler and Qt; see doc/cross-building.md. Set these variables with
# -D, or edit them here:
#   PANEL_COMPILER   the C++ compiler: a name in the PATH, or a full path
#   PANEL_QMAKE      the qmake of the panel's Qt, which runs on this machine
#   PANEL_SYSROOT    a directory with the panel's /lib and /usr; empty if the compiler has its own
#   PANEL_FLAGS      the flags of the panel's other software, such as
#                    "-mcpu=arm926ej-s -mfloat-abi=soft"; empty if these are the compiler's defaults
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR arm)
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES PANEL_COMPILER PANEL_QMAKE PANEL_SYSROOT PANEL_FLAGS)

if(NOT PANEL_COMPILER OR NOT PANEL_QMAKE)
  message(FATAL_ERROR "set PANEL_COMPILER and PANEL_QMAKE; see doc/cross-building.md")
endif()
set(CMAKE_CXX_COMPILER ${PANEL_COMPILER})
set(CMAKE_CXX_FLAGS_INIT "${PANEL_FLAGS}")
set(CMAKE_SYSROOT ${PANEL_SYSROOT})

# Take only programs from this machine, so that anything missing in the SDK is noticed.
execute_process(COMMAND ${PANEL_QMAKE} -query QT_INSTALL_PREFIX
  OUTPUT_VARIABLE panel_qt OUTPUT_STRIP_TRAILING_WHITESPACE)
set(QT_QMAKE_EXECUTABLE ${PANEL_QMAKE} CACHE FILEPATH "qmake of the panel's Qt")
set(CMAKE_FIND_ROOT_PATH ${PANEL_SYSROOT} ${panel_qt})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
