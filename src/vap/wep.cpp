// SPDX-License-Identifier: MIT
// WEP, which only the first VAP of a radio may have.
#include "uci/staging.h"
#include "vap/security.h"

#include <cstring>

namespace orlo {

Outcome SecurityTranslator::wep(const ::wep& settings) {
    if (vap_ != 0) {
        LOG_TRACE_FOR(speaker_.operation, "Can not set WEP in vap%d!\n", vap_);
        return Outcome::refused;
    }
    return outcome_of(write_wep_authentication(settings) && write_wep_keys(settings));
}

bool SecurityTranslator::write_wep_authentication(const ::wep& settings) {
    speaker_.say(indexed("vap_settings[%d].wireless_security:%s\n"), "wep");
    speaker_.say(indexed("vap_settings[%d].wep.open:%d\n"), settings.open);
    speaker_.say(indexed("vap_settings[%d].wep.shared:%d\n"), settings.shared);
    if (!write("security", "wep")) {
        return false;
    }
    if (settings.open == 0 && settings.shared == 0) {
        return refuse("Unknown WEP Setting!\n");
    }
    const char* const authentication = settings.open != 0 ? "wep-open" : "wep-shared";
    return write("encryption", authentication) && write("wepauth", authentication);
}

bool SecurityTranslator::write_wep_keys(const ::wep& settings) {
    speaker_.say(indexed("vap_settings[%d].wep.index:%d\n"), settings.index);
    if (!write_number("key", settings.index) || !write_number("wepslot", settings.index)) {
        return false;
    }
    speaker_.say(indexed("vap_settings[%d].wep.length:%d\n"), settings.length);
    if (!write_number("weplength", settings.length == 64 ? 64 : 128)) {
        return false;
    }
    speaker_.say(indexed("vap_settings[%d].wep.type:%s\n"), shown(settings.type));
    const bool hexadecimal = settings.type != nullptr && strncmp(settings.type, "hex", 3) == 0;
    return write("weptype", hexadecimal ? "HEX" : "ASCII") &&
           write_wep_key(1, "vap_settings[%d].wep.key1:%s\n", settings.key1, hexadecimal) &&
           write_wep_key(2, "vap_settings[%d].wep.key2:%s\n", settings.key2, hexadecimal) &&
           write_wep_key(3, "vap_settings[%d].wep.key3:%s\n", settings.key3, hexadecimal) &&
           write_wep_key(4, "vap_settings[%d].wep.key4:%s\n", settings.key4, hexadecimal);
}

bool SecurityTranslator::write_wep_key(int number, const char* text, const char* key,
                                       bool hexadecimal) {
    speaker_.say(indexed(text), shown(key));
    if (key == nullptr) {
        return true;
    }
    // No key that the store can take is longer than its lookup text.
    const Text<512> prefixed("s:%s", key);
    return write(Text<16>("key%d", number), hexadecimal ? key : prefixed.c_str()) &&
           write(Text<16>("wepkey%d", number), key);
}

} // namespace orlo
