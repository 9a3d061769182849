// SPDX-License-Identifier: MIT
#include "output.h"

#include <map>

namespace cli {

namespace {

using Quoting = std::string (*)(const std::string&);

std::string bare(const std::string& text) {
    return text;
}

std::string value_of(uci_option& option, const Format& format, Quoting quoting) {
    if (option.type == UCI_TYPE_STRING) {
        return quoting(option.v.string);
    }
    std::string values;
    uci_element* item = nullptr;
    uci_foreach_element(&option.v.list, item) {
        values += (values.empty() ? "" : format.delimiter) + quoting(item->name);
    }
    return values;
}

/// "package.section", for a section whose position among those of its type is known.
std::string path_of(const uci_section& section, int index, const Format& format) {
    const std::string package = section.package->e.name;
    if (!section.anonymous || !format.extended) {
        return package + "." + section.e.name;
    }
    return package + ".@" + section.type + "[" + std::to_string(index) + "]";
}

std::string path_of(const uci_section& section, const Format& format) {
    int index = 0;
    uci_element* element = nullptr;
    uci_foreach_element(&section.package->sections, element) {
        if (element == &section.e) {
            break;
        }
        index += std::string(uci_to_section(element)->type) == section.type ? 1 : 0;
    }
    return path_of(section, index, format);
}

void show_option(std::ostream& out, const std::string& section, uci_option& option,
                 const Format& format) {
    out << section << '.' << option.e.name << '=' << value_of(option, format, quoted) << '\n';
}

void show_section(std::ostream& out, const std::string& path, uci_section& section,
                  const Format& format) {
    out << path << '=' << section.type << '\n';
    uci_element* element = nullptr;
    uci_foreach_element(&section.options, element) {
        show_option(out, path, *uci_to_option(element), format);
    }
}

} // namespace

std::string quoted(const std::string& text) {
    std::string result = "'";
    for (const char c : text) {
        if (c == '\'') {
            result += "'\\''";
        } else {
            result += c;
        }
    }
    return result + "'";
}

void print_value(std::ostream& out, uci_option& option, const Format& format) {
    out << value_of(option, format, bare) << '\n';
}

void show_option(std::ostream& out, uci_option& option, const Format& format) {
    show_option(out, path_of(*option.section, format), option, format);
}

void show_section(std::ostream& out, uci_section& section, const Format& format) {
    show_section(out, path_of(section, format), section, format);
}

void show_package(std::ostream& out, uci_package& package, const Format& format) {
    std::map<std::string, int> seen; // sections of each type
    uci_element* element = nullptr;
    uci_foreach_element(&package.sections, element) {
        uci_section& section = *uci_to_section(element);
        show_section(out, path_of(section, seen[section.type]++, format), section, format);
    }
}

void show_change(std::ostream& out, const uci_package& package, const uci_delta& change) {
    const char* prefix = "";
    const char* assignment = "=";
    switch (change.cmd) {
    case UCI_CMD_REMOVE:
        prefix = "-";
        break;
    case UCI_CMD_RENAME:
        prefix = "@";
        break;
    case UCI_CMD_REORDER:
        prefix = "^";
        break;
    case UCI_CMD_LIST_ADD:
        assignment = "+=";
        break;
    case UCI_CMD_LIST_DEL:
        assignment = "-=";
        break;
    default:
        break;
    }
    out << prefix << package.e.name << '.' << change.section;
    if (change.e.name) {
        out << '.' << change.e.name;
    }
    if (change.value) {
        out << assignment << quoted(change.value);
    }
    out << '\n';
}

} // namespace cli
