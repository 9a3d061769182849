# Prints the VAPs of a radio that are to be up, "MODE NAME" a line; with what=vlans the VLANs of its
# access points.
END {
    if (!is_enabled("wifi" radio)) {
        exit
    }
    for (vap = 0; vap < 16; vap++) {
        section = section_of(radio, vap)
        if (!is_enabled(section) || mode_of(section) == "") {
            continue
        }
        if (what == "vlans") {
            print option[section, "vlan_id"]
        } else {
            print mode_of(section), "wdev" radio "ap" vap
        }
    }
}
