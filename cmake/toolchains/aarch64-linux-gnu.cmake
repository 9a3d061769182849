# SPDX-License-Identifier: MIT
# Access points with 64-bit ARM processors.
set(triplet aarch64-linux-gnu)
set(processor aarch64)
set(emulated aarch64)
include(${CMAKE_CURRENT_LIST_DIR}/debian.cmake)
