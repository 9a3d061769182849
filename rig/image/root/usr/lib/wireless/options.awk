# Reads the output of "uci show wireless": option[SECTION, NAME] is a value, a list's words are
# separated by blanks.

{
    dot = index($0, ".")
    equals = index($0, "=")
    path = substr($0, dot + 1, equals - dot - 1)
    value = substr($0, equals + 1)
    if (!dot || !equals || !index(path, ".")) {
        next
    }
    section = path
    sub(/\..*/, "", section)
    sub(/^[^.]*\./, "", path)
    option[section, path] = unquote(value)
}

# 'a' 'b' becomes a b; '\'' within a word is a quote.
function unquote(text,    plain) {
    gsub(/'\\''/, "\001", text)
    gsub(/' '/, " ", text)
    gsub(/'/, "", text)
    gsub(/\001/, "'", text)
    return text
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
