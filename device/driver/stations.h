// SPDX-License-Identifier: MIT
// The stations of a VAP, as lines of a file and as the driver's table of 96 bytes each.
#pragma once

#include <cstddef>
#include <string_view>

namespace orlo::device {

constexpr size_t station_size = 96;

/// What the driver puts where it has nothing to tell, so that a reader of it shows.
constexpr unsigned char filler = 0xEE;

/// Fills the table with the entries of an interface's stations, as many as fit. Returns their
/// number; -1 when the file holds a line that is none.
int read_stations(std::string_view interface, unsigned char* table, size_t size);

/// Writes a number of the driver: little-endian.
void put_number(unsigned char* to, unsigned number);

} // namespace orlo::device
