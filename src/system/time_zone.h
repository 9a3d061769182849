// SPDX-License-Identifier: MIT
// The time zone as the C library wants it: "CET-1CEST,M3.5.0,M10.5.0/3".
#pragma once

#include <cstddef>

namespace orlo {

constexpr size_t posix_zone_size = 128;

// Has the device's script make the POSIX text from the configured zone and daylight-saving rule,
// staged changes included; without an answer it is "". 0, or -1 when the script cannot be started.
int generate_timezone(char* out, size_t size);

// Makes the text the time zone of the device, at once.
void write_timezone_file(const char* text);

} // namespace orlo
