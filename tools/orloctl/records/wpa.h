// What the records that have WPA in them share.
#pragma once

#include <string>

#include "records/form.h"

namespace orloctl {

Form wpa_versions(); // a mask; which of them are possible the record says itself
Form wpa_ciphers();
Form wpa_rekeying();

// A passphrase, or a key in hexadecimal digits.
bool is_wpa_key(const std::string& key);

constexpr const char* wpa_key_rule = "must have 8 to 63 characters, or 64 hexadecimal digits";

} // namespace orloctl
