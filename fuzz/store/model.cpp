// SPDX-License-Identifier: MIT
#include "store/model.h"

#include <cstring>

namespace fuzz {

namespace {

// A text of its own line, whatever it holds.
std::string quoted(const char* text) {
    std::string out = "\"";
    for (const char* c = text; *c != '\0'; c++) {
        if (*c == '\n') {
            out += "\\n";
        } else {
            out += *c == '"' || *c == '\\' ? "\\" : "";
            out += *c;
        }
    }
    out += '"';
    return out;
}

void append_option(std::string& out, const uci_option& option) {
    if (option.type == UCI_TYPE_STRING) {
        out += std::string("  option ") + option.e.name + " " + quoted(option.v.string) + "\n";
        return;
    }
    const uci_element* item = nullptr;
    uci_foreach_element(&option.v.list, item) {
        out += std::string("  list ") + option.e.name + " " + quoted(item->name) + "\n";
    }
}

} // namespace

std::string model(const uci_package& package, Names names) {
    std::string out;
    uci_element* section = nullptr;
    uci_foreach_element(&package.sections, section) {
        const uci_section& s = *uci_to_section(section);
        const bool named = names == Names::all || !s.anonymous;
        out += "section " + quoted(s.type) + " " + (named ? s.e.name : "(anonymous)") + "\n";
        uci_element* option = nullptr;
        uci_foreach_element(&s.options, option) {
            append_option(out, *uci_to_option(option));
        }
    }
    return out;
}

bool types_can_be_written(const uci_package& package) {
    uci_element* section = nullptr;
    uci_foreach_element(&package.sections, section) {
        if (strpbrk(uci_to_section(section)->type, "#'\"\\;") != nullptr) {
            return false;
        }
    }
    return true;
}

std::string staged_changes(const uci_package& package) {
    std::string out;
    uci_element* element = nullptr;
    uci_foreach_element(&package.saved_delta, element) {
        const uci_delta& change = *uci_to_delta(element);
        out += std::to_string(change.cmd) + " " + change.section + "." +
               (change.e.name == nullptr ? "" : change.e.name) + "=" +
               (change.value == nullptr ? "(none)" : quoted(change.value)) + "\n";
    }
    return out;
}

} // namespace fuzz
