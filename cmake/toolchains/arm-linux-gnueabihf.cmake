# SPDX-License-Identifier: MIT
# Access points with 32-bit ARM processors.
set(triplet arm-linux-gnueabihf)
set(processor arm)
set(emulated arm)
include(${CMAKE_CURRENT_LIST_DIR}/debian.cmake)
