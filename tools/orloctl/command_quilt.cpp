// SPDX-License-Identifier: MIT
// orloctl quilt: the channel quilt of this access point, and the stations that it hears.
#include <cstdlib>
#include <ctime>
#include <sys/stat.h>
#include <unistd.h>

#include "commands.h"
#include "description.h"
#include "library.h"
#include "report.h"
#include "text.h"
#include "watch.h"

namespace orloctl {

namespace {

// ---- The quilt ----

constexpr FileKind status_file = {"a quilt status", 16};

// A name for a file that is not there yet, in a folder of its own; both are gone in the end.
class NewFile {
public:
    NewFile() {
        if (mkdtemp(folder_.data()) == nullptr) {
            throw Failure("cannot make a folder in /tmp");
        }
    }
    ~NewFile() {
        unlink(path().c_str());
        rmdir(folder_.c_str());
    }
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    std::string path() const { return folder_ + "/status"; }
    bool is_written() const {
        struct stat file = {};
        return stat(path().c_str(), &file) == 0;
    }

private:
    std::string folder_ = "/tmp/orloctl-XXXXXX";
};

// The agent writes what it likes, JSON as a rule; another text is shown as it is.
Value written_status(const std::string& text) {
    Json value(json_loadb(text.data(), text.size(), JSON_DECODE_ANY, nullptr));
    if (value == nullptr) {
        return {printable(text), json_text(text)};
    }
    std::string shown = json_document(value);
    shown.pop_back(); // its line end
    return {shown, std::move(value)};
}

Value agents_status(const vendor_ops& ops) {
    const NewFile file;
    const int result = ops.api_get_CQ_status(0, file.path().c_str());
    return result == 0 && file.is_written() ? written_status(read_file(file.path(), status_file))
                                            : no_value("not available");
}

template <int (*vendor_ops::*question)()>
Value answer(const vendor_ops& ops) {
    return yes_or_no((ops.*question)() == 1);
}

struct Row {
    const char* title;
    const char* member;
    Value (*value)(const vendor_ops& ops);
};

const Row rows[] = {
    {"supported", "supported", answer<&vendor_ops::api_is_quilt_capable>},
    {"has VAPs", "has_vaps", answer<&vendor_ops::api_is_any_vap_quilt>},
    {"scan is on", "scan_enabled", answer<&vendor_ops::api_is_cqscan_enabled>},
    {"responder installed", "responder_installed", answer<&vendor_ops::api_is_responser_present>},
};

std::string status(const CommandLine& line, const vendor_ops& ops) {
    Table table;
    Json object = json_object_new();
    for (const Row& row : rows) {
        Value value = row.value(ops);
        table.add({row.title, value.shown});
        set(object, row.member, std::move(value.json));
    }
    Value written = agents_status(ops);
    set(object, "status", std::move(written.json));
    return line.json ? json_frame(line, object)
                     : table.text() + "\nthe agent's status: " + written.shown + "\n";
}

// ---- The stations that it hears ----

Value signal(const json_t* station) {
    Value value = integer_member(station, "RSSI");
    const char* const unit = json_is_integer(value.json.get()) ? " dBm" : "";
    return {value.shown + unit, std::move(value.json)};
}

Value channel(const json_t* station) {
    Value value = integer_member(station, "Channel");
    return value.shown == "0" ? no_value("unknown") : std::move(value);
}

// People get the time of the device's clock.
Value detected(const json_t* station) {
    Value value = integer_member(station, "Detected Time");
    const auto seconds =
        static_cast<time_t>(json_integer_value(json_object_get(station, "Detected Time")));
    struct tm local = {};
    char text[64] = "";
    if (localtime_r(&seconds, &local) != nullptr) {
        strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &local);
    }
    const bool known = json_is_integer(value.json.get()) && text[0] != '\0';
    return {known ? text : value.shown, std::move(value.json)};
}

std::string scan(const CommandLine& line, const vendor_ops& ops) {
    if (ops.api_is_quilt_capable() != 1) {
        throw Failure("this device supports no quilt");
    }
    const Json stations = report("api_get_cqscan", [&] { return ops.api_get_cqscan(nullptr); });
    Listing listing({{"MAC", "mac"},
                     {"signal", "signal_dbm"},
                     {"channel", "channel"},
                     {"detected", "detected"}});
    for (size_t i = 0; i < json_array_size(stations.get()); i++) {
        const json_t* station = json_array_get(stations.get(), i);
        listing.add(line_of(text_member(station, "STA MAC Address"), signal(station),
                            channel(station), detected(station)));
    }
    if (line.json) {
        return json_frame(line, listing.json());
    }
    return listing.is_empty() ? "no station is heard\n" : listing.text();
}

std::vector<std::string> choices() {
    return {"status", "scan"};
}

Exit run(const CommandLine& line, Output& output) {
    const bool wants_status = chosen_word(line, choices()) == "status";
    const Library library = open_library(line);
    show(line, output,
         [&] { return wants_status ? status(line, library.ops()) : scan(line, library.ops()); });
    return exit_done;
}

std::string help() {
    return paragraph("status, also when neither is named: whether the device supports the channel "
                     "quilt, has VAPs in it, scans for its stations and has the responder, and "
                     "the status that the agent keeps of it, as JSON. That one is \"not "
                     "available\" (null with --json) where no VAP is in the quilt or no agent "
                     "answers.") +
           "\n" +
           paragraph("scan: the stations that the radios hear or that VAPs of the quilt serve, "
                     "each once, whether or not the scan is switched on. A channel that is not "
                     "known is \"unknown\" (null with --json); \"detected\" is the time of the "
                     "scan (seconds since 1970 with --json). Ends with exit code 1 where the "
                     "device supports no quilt.") +
           "\nOptions:\n" + option_help("quilt");
}

} // namespace

const Command quilt_command = {"quilt",
                               "quilt [status|scan] [--watch]",
                               "show the channel quilt, or the stations that it hears",
                               help,
                               run,
                               choices};

} // namespace orloctl
