// SPDX-License-Identifier: MIT
// The VAP that carries the mesh links.
#pragma once

namespace orlo {

// The section name of the first enabled mesh VAP of an enabled radio, and, where asked for, its
// radio and VAP index; NULL when there is none.
const char* get_ml_vap_uci_interface_name(int* radio, int* vap);

// Whether there is one.
bool is_ml_enable();

// A VAP's interface as its access-point daemon knows it: "" for VAPs that it does not serve.
const char* hostapd_interface(int radio, int vap);

} // namespace orlo
