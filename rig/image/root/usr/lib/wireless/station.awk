# SPDX-License-Identifier: MIT
# Writes the configuration of a child of a link over the air: name (its VAP, wdevRapV).
END {
    split(substr(name, 5), numbers, "ap")
    section = section_of(numbers[1], numbers[2])
    print "network={"
    print "ssid=\"" option[section, "ssid"] "\""
    print "scan_ssid=1"
    if (option[section, "security"] == "wpa-psk") {
        print "key_mgmt=WPA-PSK"
        print "psk=\"" option[section, "wpakey"] "\""
        print "ieee80211w=" option[section, "ieee80211w"] + 0
    } else {
        print "key_mgmt=NONE"
    }
    print "}"
}
