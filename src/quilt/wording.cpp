// SPDX-License-Identifier: MIT
#include "quilt/wording.h"

namespace orlo {

namespace {

// Lines that print the entry's index in the place of the setting that they name.
constexpr Line index_of(const char* text) {
    return {text, Line::index};
}

} // namespace

// A quilt has no session keys, and no settings that are only logged as not supported.
const SecurityWording quilt_security_wording = {
    "19 20 21 25 26",
    {
        {"info: wpa_personal.key:%s\n"},
        index_of("info: wpa_personal.wpa:0x%x\n"),
        index_of("info: wpa_personal.cipher_suites:0x%x\n"),
        index_of("info: wpa_personal.refresh_rate:%d\n"),
    },
    {
        {"info: wpa_enterprise.wpa:0x%x\n"},
        {"info: wpa_enterprise.cipher_suites:0x%x\n"},
        {"info: wpa_enterprise.pre_authentication:%d\n"},
        {},
        {"info: wpa_enterprise.radius_accounting:%d\n"},
        {"info: wpa_enterprise.dynamic_vlan:%d\n"},
        {},
        {"info: wpa_enterprise.bcast_refresh_rate:%d\n"},
        {},
    },
    {
        {"info: radius_server[%d].ip:%s\n"},
        {"info: radius_server[%d].key:%s\n"},
        {"info: radius_server[%d].auth_port:%d\n"},
        {"info: radius_server[%d].account_port:%d\n"},
        {"info: account port = %d, means disabled.\n"},
        {"info: delete Value successfully\n"},
        {"info: delete wireless.auth_server_second successfully\n"},
        {"info: delete wireless.auth_secret_second successfully\n"},
    },
    {
        index_of("configure mfp by CQ settings %d\n"),
        indexed("Security is not \"wpa-personal\" or \"wpa-enterprise\"ignore "
                "quilt_settings->quilt_radio[%d].mfp:%d\n"),
    },
    "error: Set Value Failed : wireless.%s=%s!\n",
    "error: delete Value Failed\n",
    "error: The wpa key is NULL!\n",
    "error: The wpa version is not support :%d !\n",
    "wlan%d.%d: Mixed cipher is not supported,CCMP is only supported.",
    "error: The refresh_rate is not correct!\n",
    "error: The Radius accounting is not correct!\n",
    "error: The refresh rate is not correct!\n",
    "error: The auth server port is not correct!\n",
    "error: account port(%d) is not correct!\n",
    "error: auth server[%d] is not correct!\n",
};

} // namespace orlo
