# Writes the configuration of a child of a link over the air: radio, name.
END {
    section = section_of(radio, substr(name, index(name, "ap") + 2))
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
