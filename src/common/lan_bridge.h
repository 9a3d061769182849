// SPDX-License-Identifier: MIT
// The bridge that carries the access point's own address.
#pragma once

#include <cstddef>

namespace orlo {

constexpr size_t bridge_answer_size = 128;

// The bridge's IPv4 address or mask, as ifconfig shows it. Where it shows none the text is the
// command that asked for it: buffer and answer are one.
void read_bridge_address(char (&text)[bridge_answer_size]);
void read_bridge_mask(char (&text)[bridge_answer_size]);

} // namespace orlo
