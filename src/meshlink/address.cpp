// SPDX-License-Identifier: MIT
#include "meshlink/address.h"

#include "meshlink/log.h"

#include <cstdio>

namespace orlo {

namespace {

constexpr unsigned char locally_administered = 0x02;
constexpr unsigned char device_bits = 0xe0; // of the last octet; the rest tells interfaces apart

struct Octets {
    unsigned char at[6] = {};
};

Octets octets_of(const char* text) {
    Octets octets;
    unsigned char(&o)[6] = octets.at;
    // What cannot be read stays zero, however many that are.
    static_cast<void>(
        sscanf(text, "%hhx:%hhx:%hhx:%hhx:%hhx:%hhx", &o[0], &o[1], &o[2], &o[3], &o[4], &o[5]));
    return octets;
}

MeshAddress address_of(const Octets& octets) {
    const unsigned char(&o)[6] = octets.at;
    MeshAddress address = {};
    snprintf(address.text, sizeof address.text, "%02hhx:%02hhx:%02hhx:%02hhx:%02hhx:%02hhx", o[0],
             o[1], o[2], o[3], o[4], o[5]);
    return address;
}

} // namespace

MeshAddress normalize_ml_mac(const char* text) {
    MESH_ENTER();
    Octets octets = octets_of(text);
    octets.at[0] &= static_cast<unsigned char>(~locally_administered);
    octets.at[5] &= device_bits;
    return address_of(octets);
}

MeshAddress normalize_ml_parent_mac(const char* text) {
    MESH_ENTER();
    Octets octets = octets_of(text);
    octets.at[5] &= device_bits;
    return address_of(octets);
}

} // namespace orlo
