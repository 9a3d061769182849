# SPDX-License-Identifier: MIT
# Writes the hostapd configuration of a radio: radio, channel, channel_lines, names (the VAPs that are
# access points), run (the folder of its files).

function set_option(name, value) {
    print name "=" value
}

# set_given NAME SECTION OPTION: sets it where the configuration tells a value.
function set_given(name, section, from) {
    if (option[section, from] != "") {
        set_option(name, option[section, from])
    }
}

function hexadecimal(text,    i, digits) {
    if (!ordinal["A"]) {
        for (i = 1; i < 256; i++) {
            ordinal[sprintf("%c", i)] = i
        }
    }
    for (i = 1; i <= length(text); i++) {
        digits = digits sprintf("%02x", ordinal[substr(text, i, 1)])
    }
    return digits
}

# Rates in 100 kbit/s.
function rates(text,    count, words, i, list) {
    gsub(/,/, " ", text)
    count = split(text, words, " ")
    for (i = 1; i <= count; i++) {
        list = list (i > 1 ? " " : "") words[i] * 10
    }
    return list
}

function write_radio(section) {
    set_option("driver", "nl80211")
    set_option("country_code", "US")
    set_option("hw_mode", radio == 0 ? "g" : "a")
    set_option("channel", channel)
    print channel_lines
    if (option[section, "legacy_rates"] != "") {
        set_option("supported_rates", rates(option[section, "legacy_rates"]))
    }
    set_given("rts_threshold", section, "rts_threshold")
}

function write_wep(section,    i, hexa) {
    hexa = option[section, "weptype"] == "HEX"
    for (i = 1; i <= 4; i++) {
        if (option[section, "wepkey" i] != "") {
            set_option("wep_key" i - 1, hexa ? option[section, "wepkey" i] : \
                "\"" option[section, "wepkey" i] "\"")
        }
    }
    set_option("wep_default_key", option[section, "wepslot"] > 0 ? option[section, "wepslot"] - 1 : 0)
    set_option("auth_algs", option[section, "wepauth"] == "wep-shared" ? 2 : 1)
}

# wpaversion: wpa2, mixed (with WPA), wpa2mixed (with WPA3) or wpa3
function write_wpa(section, management,    version, fast, algorithms) {
    version = option[section, "wpaversion"]
    fast = option[section, "ieee80211r"] == "1"
    set_option("wpa", version == "mixed" ? 3 : 2)
    if (management == "PSK") {
        if (version != "wpa3") {
            algorithms = "WPA-PSK" (option[section, "ieee80211w"] > 0 ? " WPA-PSK-SHA256" : "") \
                (fast ? " FT-PSK" : "")
        }
        if (option[section, "sae"] == "1") {
            algorithms = algorithms " SAE" (fast ? " FT-SAE" : "")
        }
    } else if (option[section, "suite_b"] == "192") {
        algorithms = "WPA-EAP-SUITE-B-192"
    } else {
        algorithms = "WPA-EAP" (option[section, "ieee80211w"] > 0 ? " WPA-EAP-SHA256" : "") \
            (fast ? " FT-EAP" : "")
    }
    set_option("wpa_key_mgmt", algorithms)
    write_ciphers(section)
    set_option("ieee80211w", option[section, "ieee80211w"] + 0)
    set_option("wpa_group_rekey", option[section, "wpa_group_rekey"] + 0)
    if (fast) {
        write_fast_roaming(section)
    }
}

function write_ciphers(section,    ciphers) {
    if (option[section, "suite_b"] == "192") {
        set_option("rsn_pairwise", "GCMP-256")
        set_option("group_mgmt_cipher", "BIP-GMAC-256")
        return
    }
    ciphers = toupper(option[section, "cipher"] == "" ? "ccmp" : option[section, "cipher"])
    gsub(/\+/, " ", ciphers)
    set_option("wpa_pairwise", ciphers)
    set_option("rsn_pairwise", ciphers)
}

function write_passphrase(section,    key) {
    key = option[section, "wpakey"]
    if (option[section, "wpaversion"] != "wpa3") {
        set_option(length(key) == 64 ? "wpa_psk" : "wpa_passphrase", key)
    }
    if (option[section, "sae"] == "1") {
        set_option("sae_password", option[section, "sae_password"])
        set_given("sae_groups", section, "sae_groups")
        set_option("sae_require_mfp", 1)
    }
}

function write_servers(section) {
    set_option("ieee8021x", 1)
    set_option("own_ip_addr", "127.0.0.1")
    write_server(section, "auth", "", 1812)
    write_server(section, "auth", "_second", 1812)
    if (option[section, "acct_en"] == "1") {
        write_server(section, "acct", "", 1813)
        write_server(section, "acct", "_second", 1813)
    }
}

# Accounting goes to the same servers.
function write_server(section, kind, which, usual_port,    port) {
    if (option[section, "auth_server" which] == "") {
        return
    }
    port = option[section, kind "_port"]
    set_option(kind "_server_addr", option[section, "auth_server" which])
    set_option(kind "_server_port", port > 0 ? port : usual_port)
    set_option(kind "_server_shared_secret", option[section, "auth_secret" which])
}

function plain_address(address) {
    gsub(/:/, "", address)
    return address
}

function write_fast_roaming(section,    count, holders, i) {
    set_option("nas_identifier", plain_address(option[section, "bssid"]))
    set_option("mobility_domain", option[section, "mobility_domain"])
    set_option("ft_over_ds", option[section, "ft_over_ds"] + 0)
    set_given("ft_r0_key_lifetime", section, "r0_key_lifetime")
    set_given("reassociation_deadline", section, "reassociation_deadline")
    set_option("ft_psk_generate_local", 1)
    count = split(option[section, "key_holder_list"], holders, " ")
    for (i = 1; i <= count; i++) {
        set_option("r0kh", holders[i] " " plain_address(holders[i]) " " option[section, "aes_key"])
        set_option("r1kh", holders[i] " " holders[i] " " option[section, "aes_key"])
    }
}

# macfilter 1: the list of known stations lets in, or keeps out
function write_filter(section, name,    file, action, count, addresses, i) {
    if (option[section, "macfilter"] != "1") {
        return
    }
    action = option["macaddrlist", "action"]
    file = run "/" name ".stations"
    printf "" >file
    count = split(option["macaddrlist", "maclist"], addresses, " ")
    for (i = 1; i <= count; i++) {
        print addresses[i] >file
    }
    close(file)
    set_option("macaddr_acl", action == "allow" ? 1 : 0)
    set_option(action == "allow" ? "accept_mac_file" : "deny_mac_file", file)
}

function write_vap(section, name,    security) {
    set_option("ssid2", hexadecimal(option[section, "ssid"]))
    set_option("ctrl_interface", run "/hostapd")
    set_option("bridge", "br-vlan" option[section, "vlan_id"])
    set_option("ignore_broadcast_ssid", option[section, "hidden"] == "1" ? 1 : 0)
    set_given("dtim_period", section, "dtim_period")
    set_given("ap_max_inactivity", "wifi" radio, "agingtime")
    set_given("max_num_sta", "wifi" radio, "max_client")
    set_option("wmm_enabled", 1)
    if (option[section, "wds"] == "1" || option[section, "mode"] == "qx_mesh") {
        set_option("wds_sta", 1)
    }
    if (option[section, "ieee80211k"] == "1") {
        set_option("rrm_neighbor_report", 1)
        set_option("rrm_beacon_report", 1)
    }
    if (option[section, "ieee80211v"] == "1") {
        set_option("bss_transition", 1)
    }
    write_filter(section, name)
    security = option[section, "security"]
    if (security == "wep") {
        write_wep(section)
    } else if (security == "wpa-psk") {
        write_wpa(section, "PSK")
        write_passphrase(section)
    } else if (security == "wpa-ent") {
        write_wpa(section, "EAP")
        write_servers(section)
    }
}

END {
    count = split(names, vaps, " ")
    for (i = 1; i <= count; i++) {
        name = vaps[i]
        section = section_of(radio, substr(name, index(name, "ap") + 2))
        if (i == 1) {
            set_option("interface", name)
            write_radio("wifi" radio)
        } else {
            set_option("bss", name)
            set_option("bssid", option[section, "vapmac"])
        }
        write_vap(section, name)
    }
}
