# Toolchain file for Debian's cross-compilers. script/arm sets
#   CROSS_TRIPLET  such as arm-linux-gnueabihf
#   CROSS_QEMU     the emulator that runs the built programs, such as qemu-arm
#   CROSS_ROOT     a directory with Debian's packages for that architecture
set(CMAKE_SYSTEM_NAME Linux)
string(REGEX REPLACE "-.*" "" CMAKE_SYSTEM_PROCESSOR ${CROSS_TRIPLET})
set(CMAKE_CXX_COMPILER ${CROSS_TRIPLET}-g++)
set(CMAKE_STRIP ${CROSS_TRIPLET}-strip)
set(CMAKE_LIBRARY_ARCHITECTURE ${CROSS_TRIPLET})
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES CROSS_TRIPLET CROSS_QEMU CROSS_ROOT)

set(CMAKE_FIND_ROOT_PATH ${CROSS_ROOT})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# The linker finds the dependencies of Qt there.
foreach(kind EXE SHARED MODULE)
  string(APPEND CMAKE_${kind}_LINKER_FLAGS_INIT
    " -Wl,-rpath-link,${CROSS_ROOT}/usr/lib/${CROSS_TRIPLET}:${CROSS_ROOT}/lib/${CROSS_TRIPLET}")
endforeach()

# Runs the tests as if they were native programs.
set(CMAKE_CROSSCOMPILING_EMULATOR ${CROSS_QEMU} -L ${CROSS_ROOT})
