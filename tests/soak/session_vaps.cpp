// SPDX-License-Identifier: MIT
// The session's calls that decide what VAPs are.
#include "soak/session.h"

#include <algorithm>
#include <cstdio>

namespace orlo::test {

namespace {

constexpr int vap_count = 16;

std::string system_address(int radio, int vap) {
    char text[32];
    snprintf(text, sizeof text, "02:00:00:00:%02x:%02x", static_cast<unsigned>(radio),
             static_cast<unsigned>(vap));
    return text;
}

} // namespace

void Session::open_vap(int vap) {
    expected_.stage(vap_option(vap, "security"), "none");
    expected_.stage(vap_option(vap, "encryption"), "none");
    expected_.stage(vap_option(vap, "key"), "");
    for (const char* option : {"sae", "sae_groups", "sae_password"}) {
        expected_.stage(vap_option(vap, option), "");
    }
}

// `version` is 2, 3, or 6: WPA2, WPA3 or both.
void Session::personal_vap(int vap, int version, const std::string& key,
                           const std::string& groups) {
    const bool has_sae = version != 2;
    expected_.stage(vap_option(vap, "security"), "wpa-psk");
    expected_.stage(vap_option(vap, "key"), key);
    expected_.stage(vap_option(vap, "wpakey"), key);
    expected_.stage(vap_option(vap, "wpaversion"), version == 2   ? "wpa2"
                                                   : version == 3 ? "wpa3"
                                                                  : "wpa2mixed");
    expected_.stage(vap_option(vap, "encryption"), version == 3 ? "ccmp" : "psk2+ccmp");
    expected_.stage(vap_option(vap, "cipher"), "ccmp");
    expected_.stage(vap_option(vap, "wpa_group_rekey"), "3600");
    // Frame protection: WPA3 alone needs it, both together offer it, WPA2 is not asked for it here.
    expected_.stage(vap_option(vap, "ieee80211w"), version == 2 ? "0" : version == 3 ? "2" : "1");
    expected_.stage(vap_option(vap, "sae"), has_sae ? "1" : "");
    expected_.stage(vap_option(vap, "sae_groups"), has_sae ? groups : "");
    expected_.stage(vap_option(vap, "sae_password"), has_sae ? key : "");
}

// The members of an enabled VAP's record that ordinary and quilt VAPs share.
std::string Session::vap_record(int vap) {
    const std::string ssid = "net " + std::to_string(number(0, 999));
    const int vlan = number(1, 4094);
    const int dtim = number(1, 10);
    const bool hidden = flag();
    expected_.stage(vap_option(vap, "disabled"), "0");
    expected_.stage(vap_option(vap, "ssid"), ssid);
    expected_.stage(vap_option(vap, "vlan_id"), vlan);
    expected_.stage(vap_option(vap, "dtim_period"), dtim);
    expected_.stage(vap_option(vap, "hidden"), hidden ? "1" : "0");
    return R"("vap": )" + std::to_string(vap) + R"(, "ssid": ")" + ssid + R"(", "vlan_id": )" +
           std::to_string(vlan) + R"(, "dtim_period": )" + std::to_string(dtim) +
           R"(, "bcast_ssid": )" + (hidden ? "false" : "true");
}

Session::Words Session::vaps() {
    const std::string radio = radio_number();
    std::string records;
    bool steers = false;
    for (int vap = 0; vap < vap_count; vap++) {
        expected_.stage(vap_option(vap, "mode"), "ap");
        if (number(0, 4) > 0) {
            expected_.stage(vap_option(vap, "disabled"), "1");
            continue;
        }
        steers = flag();
        records += records.empty() ? "{" : ", {";
        records += vap_record(vap);
        records += steers ? R"(, "band_steer": true)" : "";
        expected_.stage(vap_option(vap, "bssid"), system_address(radio_, vap));
        expected_.stage(radio_option("band_steer"), steers ? "1" : "0");
        if (flag()) {
            open_vap(vap);
        } else {
            const int version = number(0, 2);
            const char* const names[] = {R"("WPA2")", R"("WPA3")", R"("WPA2", "WPA3")"};
            const int masks[] = {2, 3, 6};
            const std::string key = "passphrase " + std::to_string(number(0, 999));
            records += R"(, "wireless_security": "wpa-personal", "wpa_personal": {"wpa": [)" +
                       std::string(names[version]) + R"(], "key": ")" + key + "\"}";
            personal_vap(vap, masks[version], key, "19 20 21");
        }
        records += "}";
    }
    answer_ = "0";
    return {radio, "[" + records + "]"};
}

Session::Words Session::quilt() {
    const std::string radio = radio_number();
    const int vap = number(0, vap_count - 1);
    const int vlan = number(0, 4096);
    const int threshold = number(0, 91);
    const bool scan = flag();
    const std::string secret = "secret " + std::to_string(number(0, 999));
    const std::string package = "quilt.config_quilt.";
    expected_.stage(package + "vlan_id", vlan);
    expected_.stage(package + "secret", secret);
    expected_.stage(package + "bcn_rssi_th", threshold);
    expected_.stage(package + "cqscan", scan ? "1" : "0");
    expected_.stage(radio_option("max_client"), "320");
    expected_.stage(radio_option("band_steer"), "0");
    expected_.stage(vap_option(vap, "mode"), "quilt");
    expected_.stage(vap_option(vap, "macfilter"), "0");
    expected_.stage(vap_option(vap, "bssid"), "02:00:00:00:00:aa");
    std::string entry = R"("radio": )" + radio + R"(, "bssid": "02:00:00:00:00:aa", )";
    entry += vap_record(vap);
    if (flag()) {
        open_vap(vap);
    } else {
        personal_vap(vap, 3, "quilt key", "19 20 21 25 26");
        entry += R"(, "wireless_security": "wpa-personal",
                    "wpa_personal": {"wpa": ["WPA3"], "key": "quilt key"})";
    }
    answer_ = "0";
    return {R"({"mgmt_vlan": )" + std::to_string(vlan) + R"(, "secret": ")" + secret +
            R"(", "beacon_rssi_threshold": )" + std::to_string(threshold) + R"(, "cqscan": )" +
            (scan ? "1" : "0") + R"(, "quilt_radio": [{)" + entry + "}]}"};
}

Session::Words Session::mesh_vap() {
    const std::string radio = radio_number();
    const int vap = number(0, 1);
    const bool accepts = flag();
    const std::string key = "mesh key " + std::to_string(number(0, 999));
    const struct {
        const char* option;
        std::string value;
    } options[] = {
        {"disabled", "0"},
        {"mode", "qx_mesh"},
        {"ssid", "Mesh"},
        {"connector", "1"},
        {"acceptor", accepts ? "1" : "0"},
        {"security", "wpa-psk"},
        {"encryption", "psk2+ccmp"},
        {"wpaversion", "wpa2"},
        {"cipher", "ccmp"},
        {"key", key},
        {"wpakey", key},
        {"macfilter", "0"},
        {"vlan_id", "1"},
        {"hidden", "1"},
        {"dtim_period", "1"},
        {"wpa_group_rekey", "0"},
        {"ieee80211w", "0"},
    };
    // Of an earlier security the SAE options stay; whether there was one is not known here.
    expected_.forget(vap_option(vap, "sae"));
    for (const auto& entry : options) {
        expected_.stage(vap_option(vap, entry.option), entry.value);
    }
    for (int other = 2; other < vap_count; other++) {
        expected_.stage(vap_option(other, "disabled"), "1");
    }
    answer_ = "0";
    return {radio, R"({"vap": )" + std::to_string(vap) + R"(, "acceptor": )" +
                       (accepts ? "true" : "false") +
                       R"(, "connector": true, "ssid": "Mesh", "key": ")" + key + "\"}"};
}

Session::Words Session::wds() {
    for (radio_ = 1; radio_ >= 0; radio_--) {
        expected_.stage(vap_option(0, "mode"), "ap");
        expected_.stage(vap_option(0, "wds"), "");
    }
    const std::string radio = radio_number();
    const bool child = flag();
    const std::string ssid = "link " + std::to_string(number(0, 999));
    expected_.stage(vap_option(0, "wds"), "1");
    expected_.stage(vap_option(0, "ssid"), ssid);
    expected_.stage(vap_option(0, "mode"), child ? "sta" : "ap");
    expected_.stage(vap_option(0, "security"), "none");
    expected_.stage(vap_option(0, "encryption"), "none");
    expected_.stage(vap_option(0, "key"), "");
    for (int vap = 1; vap < vap_count; vap++) {
        expected_.stage(vap_option(vap, "disabled"), "1");
    }
    answer_ = "0";
    return {R"([{"radio_intf": "wlan)" + radio + R"(", "security": "none", "wds_mode": ")" +
            (child ? "child" : "parent") + R"(", "ssid": ")" + ssid + "\"}]"};
}

void Session::add_vap_calls() {
    calls_["api_apply_vap"] = [&] { return vaps(); };
    calls_["api_apply_channel_quilt"] = [&] { return quilt(); };
    calls_["api_apply_mesh_link_vap"] = [&] { return mesh_vap(); };
    calls_["api_apply_wds"] = [&] { return wds(); };
    calls_["api_apply_mac_filter_mode"] = [&]() -> Words {
        const std::string radio = radio_number();
        const int vap = number(0, vap_count - 1);
        const int mode = number(0, 4);
        expected_.stage(vap_option(vap, "macfilter"), mode);
        answer_ = "0";
        return {radio, std::to_string(vap), std::to_string(mode)};
    };
    calls_["api_apply_known_clients"] = [&]() -> Words {
        const bool allows = flag();
        std::string stored;
        std::string written;
        for (int i = number(0, 5); i > 0; i--) {
            const std::string address = system_address(number(16, 255), i);
            stored += (stored.empty() ? "" : " ") + address;
            written += (written.empty() ? "\"" : ", \"") + address + "\"";
        }
        expected_.stage("wireless.macaddrlist.action", allows ? "allow" : "deny");
        expected_.stage("wireless.macaddrlist.maclist", stored);
        answer_ = "0";
        return {R"({"action": ")" + std::string(allows ? "white" : "black") +
                R"(", "mac_list": [)" + written + "]}"};
    };
}

} // namespace orlo::test
