# Cross-building for 32-bit ARM with hardware floating point, with Debian's compiler.
set(CMAKE_SYSTEM_PROCESSOR armv7l)
set(triplet arm-linux-gnueabihf)
set(emulator qemu-arm-static)
set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE armhf)
include("${CMAKE_CURRENT_LIST_DIR}/sysroot.cmake")
