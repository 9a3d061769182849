// SPDX-License-Identifier: MIT
// How the uci command writes things down: package.section.option='value'.
#pragma once

#include "uci.h"

#include <ostream>
#include <string>

namespace cli {

struct Format {
    bool extended = true;        // anonymous sections as @type[index], not by their generated name
    std::string delimiter = " "; // between list elements
};

/// Between single quotes, as a shell takes it; a quote within becomes '\''.
std::string quoted(const std::string& text);

/// The bare value of an option; list elements one after the other.
void print_value(std::ostream& out, uci_option& option, const Format& format);

void show_option(std::ostream& out, uci_option& option, const Format& format);
void show_section(std::ostream& out, uci_section& section, const Format& format);
void show_package(std::ostream& out, uci_package& package, const Format& format);

/// One staged change of a package, as a line.
void show_change(std::ostream& out, const uci_package& package, const uci_delta& change);

} // namespace cli
