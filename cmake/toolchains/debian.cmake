# SPDX-License-Identifier: MIT
# Cross-building with Debian's compilers. The including file sets `triplet`, `processor` and `emulated`
# (as qemu calls the processor). Libraries
# of the target, with their headers, lie below ORLO_SYSROOT; packaging/cross/build puts them there.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR ${processor})
set(CMAKE_C_COMPILER ${triplet}-gcc)
set(CMAKE_CXX_COMPILER ${triplet}-g++)
set(CMAKE_LIBRARY_ARCHITECTURE ${triplet})

set(CMAKE_FIND_ROOT_PATH ${ORLO_SYSROOT} /usr/${triplet})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(libraries ${ORLO_SYSROOT}/usr/lib/${triplet})
if(ORLO_SYSROOT) # not within a check of the compiler, which shares the environment
    set(ENV{PKG_CONFIG_LIBDIR} ${libraries}/pkgconfig:${ORLO_SYSROOT}/usr/share/pkgconfig)
    set(ENV{PKG_CONFIG_SYSROOT_DIR} ${ORLO_SYSROOT})
endif()
set(CMAKE_EXE_LINKER_FLAGS_INIT
    "-Wl,-rpath-link,${libraries} -Wl,-rpath-link,${ORLO_SYSROOT}/lib/${triplet}")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "${CMAKE_EXE_LINKER_FLAGS_INIT}")

# What is built runs here all the same.
find_program(ORLO_EMULATOR qemu-${emulated}-static)
if(ORLO_EMULATOR)
    set(CMAKE_CROSSCOMPILING_EMULATOR ${ORLO_EMULATOR} -L /usr/${triplet}
        -E LD_LIBRARY_PATH=${libraries}:${ORLO_SYSROOT}/lib/${triplet})
endif()
