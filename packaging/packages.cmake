# Settings of the Debian packages, which `cpack -G DEB` or script/package builds.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT "${CORVANE_MAINTAINER}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")  # each package has its own, as its first line
set(CPACK_PACKAGING_INSTALL_PREFIX "${CMAKE_INSTALL_PREFIX}")
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL ${components})
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEB_COMPONENT_INSTALL ON)

set(debian "${CMAKE_CURRENT_SOURCE_DIR}/debian")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
if(CMAKE_CROSSCOMPILING)
  # dpkg doesn't know which packages the libraries of a sysroot belong to.
  message(STATUS "The Debian packages will not depend on those of the libraries they use")
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS OFF)
else()
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
endif()
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(same_version "(= ${PROJECT_VERSION})")

set(CPACK_DEBIAN_DAEMON_PACKAGE_NAME corvane)
set(CPACK_DEBIAN_DAEMON_PACKAGE_SECTION utils)
set(CPACK_COMPONENT_DAEMON_DESCRIPTION "Bluetooth and sound-output daemon for plugins
corvaned takes the Bluetooth and sound events of its platform, 42 kinds, and
hands each of them to every plugin that asked for it, to one task at a time
and in order. Plugins are libraries in /usr/share/corvane/plugins.
.
This package contains the daemon and its service.")
set(CPACK_DEBIAN_DAEMON_PACKAGE_DEPENDS
    "systemd | systemd-standalone-sysusers | systemd-sysusers")
set(CPACK_DEBIAN_DAEMON_PACKAGE_CONTROL_EXTRA
    "${debian}/postinst" "${debian}/prerm" "${debian}/postrm")

set(CPACK_DEBIAN_HOST-PLATFORM_PACKAGE_NAME corvane-host-platform)
set(CPACK_DEBIAN_HOST-PLATFORM_PACKAGE_SECTION libs)
set(CPACK_COMPONENT_HOST-PLATFORM_DESCRIPTION "Television platform libraries for ordinary machines
The five libraries through which corvaned sees its platform, with their
settings: log, system information, Bluetooth from BlueZ, and the default
output of a PulseAudio or PipeWire server. Events can be injected, too.
.
On a television its own libraries are in their place.")
set(CPACK_DEBIAN_HOST-PLATFORM_PACKAGE_RECOMMENDS bluez)
set(CPACK_DEBIAN_HOST-PLATFORM_PACKAGE_CONTROL_EXTRA
    "${debian}/conffiles" "${debian}/triggers")

set(CPACK_DEBIAN_DEV_PACKAGE_NAME corvane-dev)
set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
set(CPACK_COMPONENT_DEV_DESCRIPTION "Development files for plugins of the corvane daemon
The header of the plugin interface, sample plugins and the documentation;
on ordinary machines also the headers of the platform and the corvane
command, which helps to write plugins and makes events without a device.")
set(CPACK_DEBIAN_DEV_PACKAGE_RECOMMENDS "g++, cmake, pkgconf | pkg-config, libgtest-dev, libgmock-dev, libefl-all-dev")

if(CORVANE_PLATFORM STREQUAL "host")
  string(APPEND CPACK_DEBIAN_DAEMON_PACKAGE_DEPENDS ", corvane-host-platform ${same_version}")
  set(CPACK_DEBIAN_DEV_PACKAGE_DEPENDS
      "corvane ${same_version}, corvane-host-platform ${same_version}")
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${CMAKE_LIBRARY_OUTPUT_DIRECTORY}")
else()
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PLATFORM_LIBRARY_DIRS})
  set(CPACK_DEBIAN_DEV_PACKAGE_DEPENDS "corvane ${same_version}")
endif()

include(CPack)
