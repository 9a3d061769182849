# SPDX-License-Identifier: MIT
# Prints what is to be up: "radio RADIO CHANNEL WIDTH" for each radio that has VAPs, behind it its VAPs
# as "ap NAME ADDRESS VLAN" or "station NAME ADDRESS VLAN".

# Where no channel is told, the first that may be used.
function channel_of(radio,    channel, eligible) {
    channel = option["wifi" radio, "channel"]
    if (channel !~ /^[0-9]+$/) {
        split(option["wifi" radio, "eg_ch"], eligible, " ")
        channel = eligible[1]
    }
    return channel
}

function print_vaps(radio,    vap, section, told) {
    for (vap = 0; vap < 16; vap++) {
        section = section_of(radio, vap)
        if (!is_enabled(section) || mode_of(section) == "") {
            continue
        }
        if (!told++) {
            print "radio", radio, channel_of(radio), option["wifi" radio, "htmode"]
        }
        print mode_of(section), "wdev" radio "ap" vap, option[section, "vapmac"], \
            option[section, "vlan_id"]
    }
}

END {
    for (radio = 0; radio < 2; radio++) {
        if (is_enabled("wifi" radio)) {
            print_vaps(radio)
        }
    }
}
