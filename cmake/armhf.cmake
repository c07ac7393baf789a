# Toolchain file: builds for the panel's processor, ARM with hardware floating point, and runs what was built under
# qemu. PANELKIT_SYSROOT names the folder with the panel's libraries and headers; the default is what scripts/sysroot
# unpacks.

get_filename_component(panelkit_default_sysroot "${CMAKE_CURRENT_LIST_DIR}/../build/armhf-sysroot" ABSOLUTE)
set(PANELKIT_SYSROOT "${panelkit_default_sysroot}" CACHE PATH "Folder with the panel's libraries and headers")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES PANELKIT_SYSROOT)

set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR arm)
set(CMAKE_LIBRARY_ARCHITECTURE arm-linux-gnueabihf)
set(CMAKE_C_COMPILER arm-linux-gnueabihf-gcc)
set(CMAKE_CXX_COMPILER arm-linux-gnueabihf-g++)
set(CMAKE_SYSROOT "${PANELKIT_SYSROOT}")
set(CMAKE_CROSSCOMPILING_EMULATOR "qemu-arm-static;-L;${PANELKIT_SYSROOT}")

# Programs are this machine's, everything else the panel's.
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_DIR} "")
set(ENV{PKG_CONFIG_SYSROOT_DIR} "${PANELKIT_SYSROOT}")
set(ENV{PKG_CONFIG_LIBDIR}
  "${PANELKIT_SYSROOT}/usr/lib/${CMAKE_LIBRARY_ARCHITECTURE}/pkgconfig:${PANELKIT_SYSROOT}/usr/share/pkgconfig")
