// SPDX-License-Identifier: MIT
// Addresses in mesh reports. A device gives each of its virtual interfaces an address of its own;
// what these addresses have in common stands for the device.
#pragma once

namespace orlo {

struct MeshAddress {
    char text[18];
};

// The device behind an interface: "06:11:22:33:44:57" is "04:11:22:33:44:40". Octets that the text
// lacks count as zero.
MeshAddress normalize_ml_mac(const char* text);

// The same for the interface of a parent, whose first octet is the device's already.
MeshAddress normalize_ml_parent_mac(const char* text);

} // namespace orlo
