# Cross-building for 64-bit ARM, with Debian's compiler.
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(triplet aarch64-linux-gnu)
set(emulator qemu-aarch64-static)
set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE arm64)
include("${CMAKE_CURRENT_LIST_DIR}/sysroot.cmake")
