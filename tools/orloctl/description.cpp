#include "description.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <map>
#include <unistd.h>

#include "exit.h"
#include "fields.h"
#include "text.h"

namespace orloctl {

namespace {

constexpr size_t largest_file = 1 << 20;
constexpr size_t longest_hash = 127; // what the library keeps of one
constexpr Span any_id = {0, 2147483647};
constexpr Span channels_2_4_ghz = {1, 13};
constexpr Span channels_5_ghz = {36, 165};

const Field<RadioProfile> radio_fields[] = {
    {"radio", &RadioProfile::radio, required_number({0, 1}), "0: 2.4 GHz, 1: 5 GHz"},
    {"enabled", &RadioProfile::enabled, anything(), "switches the radio on or off"},
    {"override", &RadioProfile::override_status, one_of({"not-override", "force-disable"}),
     "\"force-disable\" keeps the radio off whatever \"enabled\" says"},
    {"channel", &RadioProfile::channel, numbers_by_radio({0}, channels_2_4_ghz, channels_5_ghz),
     "0: the channel in use, or the first eligible one where that is not eligible"},
    {"second_channel", &RadioProfile::second_channel,
     numbers_by_radio({-1, 0}, std::nullopt, channels_5_ghz),
     "of two-segment operation; -1: off, 0: chosen from the eligible channels"},
    {"power_percent", &RadioProfile::power_percent, numbers({0, 100}),
     "transmit power; 0: leave it alone"},
};

const Field<Profile> profile_fields[] = {
    {"id", &Profile::id, numbers(any_id), "profile id, kept by the process that sets it"},
    {"profile_hash", &Profile::profile_hash, at_most(longest_hash), "fingerprint of the profile"},
    {"config_hash", &Profile::config_hash, at_most(longest_hash),
     "fingerprint of the configuration"},
};

const std::vector<std::string> description_members = {"radios", "profile"};

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

Json parse(const std::string& text, const std::string& source) {
    json_error_t error;
    Json value(
        json_loadb(text.data(), text.size(), JSON_REJECT_DUPLICATES | JSON_DECODE_ANY, &error));
    if (value == nullptr) {
        throw Refusal(source + ":" + std::to_string(error.line) + ":" +
                      std::to_string(error.column) + ": " + error.text);
    }
    return value;
}

std::string radio_path(size_t index) {
    return "radios[" + std::to_string(index) + "]";
}

void check_described_once(const std::vector<RadioProfile>& radios, Problems& problems) {
    std::map<int, size_t> first;
    for (size_t i = 0; i < radios.size(); i++) {
        if (!radios[i].radio) {
            continue;
        }
        const auto [described, is_new] = first.emplace(*radios[i].radio, i);
        if (!is_new) {
            problems.push_back(radio_path(i) + ".radio: " + std::to_string(*radios[i].radio) +
                               " is described already, by " + radio_path(described->second));
        }
    }
}

std::vector<RadioProfile> read_radios(json_t* array, Checking checking, Problems& problems) {
    std::vector<RadioProfile> radios;
    if (array == nullptr || !is_array(array, "radios", problems)) {
        return radios;
    }
    for (size_t i = 0; i < json_array_size(array); i++) {
        const std::string path = radio_path(i);
        radios.push_back(read_record(json_array_get(array, i), path, radio_fields, problems));
        if (checking == Checking::full) {
            check_record(radios[i], path, radio_fields, radios[i].radio, problems);
        }
    }
    if (checking == Checking::full) {
        check_described_once(radios, problems);
    }
    return radios;
}

Profile read_profile(json_t* object, Checking checking, Problems& problems) {
    if (object == nullptr) {
        return {};
    }
    Profile profile = read_record(object, "profile", profile_fields, problems);
    if (checking == Checking::full) {
        check_record(profile, "profile", profile_fields, std::nullopt, problems);
    }
    return profile;
}

} // namespace

std::string read_file(const std::string& path) {
    const bool standard_input = path == "-";
    const std::string source = standard_input ? "standard input" : path;
    const InputFile file(path);
    if (file.descriptor < 0) {
        throw Refusal("cannot read " + source + ": " + strerror(errno));
    }
    std::string text;
    char part[4096];
    ssize_t count = 0;
    while ((count = read(file.descriptor, part, sizeof part)) > 0 && text.size() <= largest_file) {
        text.append(part, static_cast<size_t>(count));
    }
    if (count < 0) {
        throw Refusal("cannot read " + source + ": " + strerror(errno));
    }
    if (text.size() > largest_file) {
        throw Refusal(source + " is larger than a description can be (1 MB)");
    }
    return text;
}

Description read_description(const std::string& text, const std::string& source,
                             Checking checking) {
    const Json root = parse(text, source);
    Problems problems;
    Description description;
    if (is_object(root.get(), "", problems)) {
        check_members(root.get(), "", description_members, problems);
        description.radios = read_radios(json_object_get(root.get(), "radios"), checking, problems);
        description.profile =
            read_profile(json_object_get(root.get(), "profile"), checking, problems);
    }
    if (!problems.empty()) {
        throw Refusal(joined(problems, "\n"));
    }
    return description;
}

std::string description_help() {
    std::string help = "  radios[]\n";
    Table table;
    for (auto& row : record_help(radio_fields)) {
        table.add(std::move(row));
    }
    help += table.text(4) + "  profile\n";
    Table profile;
    for (auto& row : record_help(profile_fields)) {
        profile.add(std::move(row));
    }
    return help + profile.text(4);
}

} // namespace orloctl
