// SPDX-License-Identifier: MIT
#include "writer.h"

#include "list.h"

namespace uci {

namespace {

void write_option(Buffer& out, uci_option& option) {
    if (option.type == UCI_TYPE_STRING) {
        (out << "\toption " << option.e.name << ' ').quote(option.v.string) << '\n';
        return;
    }
    for (const uci_element& item : Elements(option.v.list)) {
        (out << "\tlist " << option.e.name << ' ').quote(item.name) << '\n';
    }
}

} // namespace

void write_package(Buffer& out, const Package& package) {
    for (uci_element& element : Elements(const_cast<uci_list&>(package.sections))) {
        uci_section& section = *uci_to_section(&element);
        out << "\nconfig " << section.type;
        if (!section.anonymous) {
            (out << ' ').quote(section.e.name);
        }
        out << '\n';
        for (uci_element& option : Elements(section.options)) {
            write_option(out, *uci_to_option(&option));
        }
    }
    out << '\n';
}

} // namespace uci
