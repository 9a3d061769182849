// SPDX-License-Identifier: MIT
#include "description.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

#include "exit.h"
#include "records/reader.h"
#include "records/registry.h"
#include "text.h"

namespace orloctl {

namespace {

// Standard input stays open: device tools inherit it.
struct InputFile {
    explicit InputFile(const std::string& path)
        : descriptor(path == "-" ? STDIN_FILENO : open(path.c_str(), O_RDONLY | O_CLOEXEC)) {}
    ~InputFile() {
        if (descriptor > STDIN_FILENO) {
            close(descriptor);
        }
    }
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    int descriptor; // negative when the file cannot be opened
};

} // namespace

std::string read_file(const std::string& path, const FileKind& kind) {
    const size_t largest = kind.megabytes << 20;
    const bool standard_input = path == "-";
    const std::string source = standard_input ? "standard input" : path;
    const InputFile file(path);
    if (file.descriptor < 0) {
        throw Refusal("cannot read " + source + ": " + strerror(errno));
    }
    std::string text;
    char part[4096];
    ssize_t count = 0;
    while ((count = read(file.descriptor, part, sizeof part)) > 0 && text.size() <= largest) {
        text.append(part, static_cast<size_t>(count));
    }
    if (count < 0) {
        throw Refusal("cannot read " + source + ": " + strerror(errno));
    }
    if (text.size() > largest) {
        throw Refusal(source + " is larger than " + kind.name + " can be (" +
                      std::to_string(kind.megabytes) + " MB)");
    }
    return text;
}

Json parse_json(const std::string& text, const std::string& source) {
    json_error_t error;
    Json value(
        json_loadb(text.data(), text.size(), JSON_REJECT_DUPLICATES | JSON_DECODE_ANY, &error));
    if (value == nullptr) {
        throw Refusal(source + ":" + std::to_string(error.line) + ":" +
                      std::to_string(error.column) + ": " + error.text);
    }
    return value;
}

Description read_description(const std::string& text, const std::string& source, bool checked) {
    const Json json = parse_json(text, source);
    Description description;
    Problems problems;
    Place place;
    place.checked = checked;
    place.in_description = true;
    read_record(json.get(), access_point_record, description.root_, place, description.arena_,
                problems);
    if (!problems.empty()) {
        throw Refusal(joined(problems, "\n"));
    }
    return description;
}

} // namespace orloctl
