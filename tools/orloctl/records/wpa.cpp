// SPDX-License-Identifier: MIT
#include "records/wpa.h"

#include <algorithm>
#include <cctype>

#include "orlo/records.h"

namespace orloctl {

namespace {

constexpr int64_t longest_rekey = 86400; // a day
constexpr int64_t hourly = 3600;

} // namespace

Form wpa_versions() {
    return forms::mask({{"WPA", ORLO_WPA1}, {"WPA2", ORLO_WPA2}, {"WPA3", ORLO_WPA3}});
}

Form wpa_personal_versions() {
    return wpa_versions().one_of(
        {ORLO_WPA2, ORLO_WPA1 | ORLO_WPA2, ORLO_WPA3, ORLO_WPA2 | ORLO_WPA3});
}

Form wpa_enterprise_versions() {
    return wpa_versions().one_of({ORLO_WPA2, ORLO_WPA1 | ORLO_WPA2, ORLO_WPA3});
}

Form wpa_ciphers() {
    return forms::mask({{"TKIP", ORLO_CIPHER_TKIP}, {"CCMP", ORLO_CIPHER_CCMP}})
        .one_of({ORLO_CIPHER_TKIP, ORLO_CIPHER_CCMP, ORLO_CIPHER_TKIP | ORLO_CIPHER_CCMP})
        .or_else(ORLO_CIPHER_CCMP);
}

Form wpa_rekeying() {
    return forms::number().in(0, longest_rekey).in_unit("seconds").or_else(hourly);
}

bool is_wpa_key(const std::string& key) {
    if (key.size() == 64) {
        return std::all_of(key.begin(), key.end(),
                           [](unsigned char c) { return isxdigit(c) != 0; });
    }
    return key.size() >= 8 && key.size() <= 63;
}

} // namespace orloctl
