# Debian's cross compiler for ARM64. What it builds runs under qemu.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_C_COMPILER aarch64-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)

# A Debian for ARM64, which what depends on libraries needs: scripts/arm64_sysroot.sh makes one. The plug-in needs none.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES OMBRIX_ARM64_SYSROOT)
if(OMBRIX_ARM64_SYSROOT)
    set(CMAKE_SYSROOT ${OMBRIX_ARM64_SYSROOT})
    set(CMAKE_FIND_ROOT_PATH ${CMAKE_SYSROOT})
    set(CMAKE_LIBRARY_ARCHITECTURE aarch64-linux-gnu)
    set(ENV{PKG_CONFIG_SYSROOT_DIR} ${CMAKE_SYSROOT})
    set(ENV{PKG_CONFIG_LIBDIR} ${CMAKE_SYSROOT}/usr/lib/aarch64-linux-gnu/pkgconfig:${CMAKE_SYSROOT}/usr/share/pkgconfig)
else()
    set(CMAKE_FIND_ROOT_PATH /usr/aarch64-linux-gnu)
endif()
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-aarch64 -L ${CMAKE_FIND_ROOT_PATH})
# Which of several libraries serves is chosen when packages are set up, as they are not here.
set(OMBRIX_EMULATED_PATH /usr/lib/aarch64-linux-gnu/blas:/usr/lib/aarch64-linux-gnu/lapack)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
