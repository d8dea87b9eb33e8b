# Cross-building with Debian's compilers. script/arm hands over
#   CROSS_TRIPLET  such as arm-linux-gnueabihf
#   CROSS_QEMU     the program that runs what was built, such as qemu-arm
#   CROSS_ROOT     a folder with Debian's packages of that architecture unpacked
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

# The libraries that Qt itself needs are looked for there while linking.
foreach(kind EXE SHARED MODULE)
  string(APPEND CMAKE_${kind}_LINKER_FLAGS_INIT
    " -Wl,-rpath-link,${CROSS_ROOT}/usr/lib/${CROSS_TRIPLET}:${CROSS_ROOT}/lib/${CROSS_TRIPLET}")
endforeach()

# Tests run through it as if they were programs of this machine.
set(CMAKE_CROSSCOMPILING_EMULATOR ${CROSS_QEMU} -L ${CROSS_ROOT})
