// SPDX-License-Identifier: MIT
// orloctl mesh: this access point's place in the mesh, and the traffic of its mesh links.
#include "commands.h"
#include "library.h"
#include "report.h"
#include "text.h"
#include "watch.h"

namespace orloctl {

namespace {

// ---- The place in the mesh ----

struct MeshPlace {
    const vendor_ops& ops;
    const json_t* report;
};

Value texts_value(const std::vector<std::string>& texts, const char* separator) {
    return {texts.empty() ? "none" : printable(joined(texts, separator)), json_texts(texts)};
}

Value declares_links(const MeshPlace& place) {
    return yes_or_no(place.ops.api_is_mesh_link_capable() == 1);
}

Value declares_acceptor(const MeshPlace& place) {
    return yes_or_no(place.ops.api_is_mesh_link_acceptor_capable() == 1);
}

Value role(const MeshPlace& place) {
    const char* const roles[] = {"root", "branch", "leaf"}; // at their numbers
    const json_t* number = json_object_get(place.report, "role");
    const json_int_t value = json_is_integer(number) ? json_integer_value(number) : -1;
    return value >= 0 && value < 3 ? text_value(roles[value]) : no_value("unknown");
}

Value path(const MeshPlace& place) {
    return texts_value(texts_member(place.report, "path"), " > ");
}

// The root has no parent.
Value parent(const MeshPlace& place) {
    const json_t* parent = json_object_get(place.report, "parent");
    return parent == nullptr ? no_value("none") : text_member(parent, "macaddr");
}

Value parent_score(const MeshPlace& place) {
    const json_t* parent = json_object_get(place.report, "parent");
    return parent == nullptr ? no_value("none") : integer_member(parent, "score");
}

Value children(const MeshPlace& place) {
    return texts_value(texts_member(place.report, "children"), ", ");
}

struct Row {
    const char* title;
    const char* member;
    Value (*value)(const MeshPlace& place);
};

const Row rows[] = {
    {"declares mesh links", "capable", declares_links},
    {"declares acceptor", "acceptor_capable", declares_acceptor},
    {"role", "role", role},
    {"path from the root", "path", path},
    {"parent", "parent", parent},
    {"score of the parent", "parent_score", parent_score},
    {"children", "children", children},
};

std::string status(const CommandLine& line, const vendor_ops& ops) {
    const Json answer =
        report("create_ml_status_report", [&] { return ops.create_ml_status_report(nullptr); });
    const MeshPlace place = {ops, answer.get()};
    Table table;
    Json object = json_object_new();
    for (const Row& row : rows) {
        Value value = row.value(place);
        table.add({row.title, value.shown});
        set(object, row.member, std::move(value.json));
    }
    return line.json ? json_frame(line, object) : table.text();
}

// ---- The traffic of the links ----

constexpr json_int_t reported_per_mbit = 1 << 20; // what the report makes of 1 Mbit/s

// Of the link upward the report has no address.
Value address(const json_t* link) {
    return json_object_get(link, "MAC Address") == nullptr ? no_value("-")
                                                           : text_member(link, "MAC Address");
}

Value speed(const json_t* link) {
    const json_int_t reported = json_integer_value(json_object_get(link, "Link Speed"));
    if (reported <= 0) {
        return no_value("unknown");
    }
    const float mbits = static_cast<float>(reported) / static_cast<float>(reported_per_mbit);
    return {shown_number(mbits) + " Mbit/s", json_number(mbits)};
}

void list_links(Listing& listing, const char* direction, const json_t* links) {
    for (size_t i = 0; i < json_array_size(links); i++) {
        const json_t* link = json_array_get(links, i);
        listing.add(line_of(text_value(direction), address(link), integer_member(link, "Radio ID"),
                            integer_member(link, "VAP ID"), integer_member(link, "Bytes Received"),
                            integer_member(link, "Bytes Transmitted"), speed(link)));
    }
}

std::string statistics(const CommandLine& line, const vendor_ops& ops) {
    const Json answer =
        report("create_ml_statistics_report", [&] { return ops.create_ml_statistics_report(); });
    Listing listing({{"link", "direction"},
                     {"MAC", "mac"},
                     {"radio", "radio"},
                     {"VAP", "vap"},
                     {"rx bytes/s", "rx_bytes_per_second"},
                     {"tx bytes/s", "tx_bytes_per_second"},
                     {"speed", "link_speed_mbps"}});
    list_links(listing, "down", json_object_get(answer.get(), "ML VAP"));
    list_links(listing, "up", json_object_get(answer.get(), "ML STA"));
    return line.json ? json_frame(line, listing.json()) : listing.text();
}

std::vector<std::string> choices() {
    return {"status", "statistics"};
}

Exit run(const CommandLine& line, Output& output) {
    const bool wants_status = chosen_word(line, choices()) == "status";
    const Library library = open_library(line);
    show(line, output, [&] {
        return wants_status ? status(line, library.ops()) : statistics(line, library.ops());
    });
    return exit_done;
}

std::string help() {
    return paragraph(
               "status, also when neither is named: this access point's place in the mesh, which "
               "is root, branch or leaf; the devices on the way from the root, the one that it is "
               "connected to with its score, and those that are connected to it. Whether the "
               "device declares mesh links is a property of its own; where it does not, they can "
               "be set up all the same.") +
           "\n" +
           paragraph(
               "statistics: what goes over each mesh link per second, \"down\" to a device that "
               "is connected here, \"up\" to the one that this is connected to. A link's rates "
               "count from one report to the next in the same process, so the first report has "
               "0: use --watch. A speed of 2048 Mbit/s stands for all above.") +
           "\n" +
           paragraph("What is not known is \"unknown\" (null with --json). Ends with exit code 1, "
                     "and with the library's reason, where there is nothing to report: no mesh VAP "
                     "is enabled, no way to the root is known, there is no link.") +
           "\nOptions:\n" + option_help("mesh");
}

} // namespace

const Command mesh_command = {"mesh",
                              "mesh [status|statistics] [--watch]",
                              "show the place in the mesh, or the traffic of its links",
                              help,
                              run,
                              choices};

} // namespace orloctl
