// SPDX-License-Identifier: MIT
// The driver's private command "setcmd": a request as text, with the addresses of a buffer that the
// driver reads and one that it fills.
#pragma once

namespace orlo {

constexpr unsigned probe_operation = 1;
constexpr unsigned stations_operation = 2;

// 0; -1 when the driver refuses it; -2 when it has no such command.
int mwl_setcmd_request(const char* ifname, unsigned operation, const void* in, unsigned in_length,
                       void* out, unsigned out_length);

} // namespace orlo
