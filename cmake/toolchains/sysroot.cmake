# What the toolchain files share: headers, libraries, CMake packages and pkg-config files come from
# CORVANE_SYSROOT only, and programs of the other architecture run in CMAKE_CROSSCOMPILING_EMULATOR.
set(CORVANE_SYSROOT "" CACHE PATH "The device's root directory, or the part of it to build with")
if(NOT IS_DIRECTORY "${CORVANE_SYSROOT}")
  message(FATAL_ERROR "CORVANE_SYSROOT is \"${CORVANE_SYSROOT}\"; it must be a directory")
endif()
# The compiler's checks read this file, too.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES CORVANE_SYSROOT)

set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_C_COMPILER ${triplet}-gcc)
set(CMAKE_CXX_COMPILER ${triplet}-g++)
set(CMAKE_SYSROOT "${CORVANE_SYSROOT}")
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_SYSROOT_DIR} "${CORVANE_SYSROOT}")
set(usr "${CORVANE_SYSROOT}/usr")
set(ENV{PKG_CONFIG_LIBDIR}
    "${usr}/lib/${triplet}/pkgconfig:${usr}/lib/pkgconfig:${usr}/share/pkgconfig")
set(CMAKE_CROSSCOMPILING_EMULATOR "${emulator};-L;${CORVANE_SYSROOT}" CACHE STRING
    "Runs the programs that are built")
