# SPDX-License-Identifier: MIT
# Reads the output of "uci show wireless": option[SECTION, NAME] is a value, a list's words are
# separated by blanks.

{
    equals = index($0, "=")
    path = substr($0, 1, equals - 1)
    if (split(path, name, ".") == 3) {
        option[name[2], name[3]] = unquote(substr($0, equals + 1))
    }
}

# 'a' 'b' becomes a b; '\'' within a word is a quote.
function unquote(text,    inner) {
    inner = substr(text, 2, length(text) - 2)
    if (!index(inner, "'")) {
        return inner
    }
    gsub(/'\\''/, "\001", inner)
    gsub(/' '/, " ", inner)
    gsub(/\001/, "'", inner)
    return inner
}

function section_of(radio, vap) {
    return "wifi" radio "vap" vap
}

function is_enabled(section) {
    return (section, "disabled") in option && option[section, "disabled"] != "1"
}

# ap, station or nothing. A child of a link over the air connects as a station; of a mesh's VAPs those
# that accept links are access points, the others stations.
function mode_of(section,    mode) {
    mode = option[section, "mode"]
    if (mode == "sta") {
        return "station"
    }
    if (mode == "qx_mesh") {
        return option[section, "acceptor"] == "1" ? "ap" : \
            option[section, "connector"] == "1" ? "station" : ""
    }
    return "ap"
}
