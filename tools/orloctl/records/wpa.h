// SPDX-License-Identifier: MIT
// What the records that have WPA in them share.
#pragma once

#include <string>

#include "orlo/records.h"
#include "records/field.h"
#include "records/form.h"

namespace orloctl {

Form wpa_versions(); // a mask; which of them are possible the record says itself
Form wpa_personal_versions();
Form wpa_enterprise_versions();
Form wpa_ciphers();
Form wpa_rekeying();

// A passphrase, or a key in hexadecimal digits.
bool is_wpa_key(const std::string& key);

template <class Security>
bool has_wpa3_cipher(const Security& security, const Place& /*place*/) {
    return (security.wpa & ORLO_WPA3) == 0 || security.cipher_suites == ORLO_CIPHER_CCMP;
}

constexpr const char* wpa3_cipher_rule = "WPA3 needs \"CCMP\" alone";
constexpr const char* wpa_key_rule = "must have 8 to 63 characters, or 64 hexadecimal digits";

} // namespace orloctl
