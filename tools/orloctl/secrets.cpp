// SPDX-License-Identifier: MIT
#include "secrets.h"

#include <algorithm>
#include <vector>

#include "text.h"

namespace orloctl {

namespace {

constexpr const char* hidden = "********";

// A shorter value is hidden where its name tells, but not looked for in texts, of which it would
// leave little.
constexpr size_t shortest_sought = 5;

constexpr const char* no_secret = "public"; // the community that everybody knows

bool ends_with(const std::string& text, const std::string& end) {
    return text.size() >= end.size() &&
           text.compare(text.size() - end.size(), end.size(), end) == 0;
}

std::string without_digits(std::string name) {
    name.erase(std::find_if(name.begin(), name.end(), [](char c) { return c >= '0' && c <= '9'; }),
               name.end());
    return name;
}

void replace_all(std::string& text, const std::string& value) {
    for (size_t at = text.find(value); at != std::string::npos;
         at = text.find(value, at + std::string(hidden).size())) {
        text.replace(at, value.size(), hidden);
    }
}

} // namespace

// "key", "key1", "wpakey", "aes_key", "auth_secret", "auth_secret_second", "sae_password",
// "community", "passphrase"; but neither "key_holder_list" nor "wpa_group_rekey".
bool Secrets::is_secret(const std::string& name) {
    const std::string last = lower_case(name.substr(name.rfind('.') + 1));
    if (last.find("secret") != std::string::npos || last.find("passw") != std::string::npos ||
        last.find("passphrase") != std::string::npos) {
        return true;
    }
    const std::string base = without_digits(last);
    return (ends_with(base, "key") && !ends_with(base, "rekey")) || ends_with(base, "community");
}

void Secrets::learn(const std::string& name, const std::string& value) {
    if (is_secret(name) && value.size() >= shortest_sought && value != no_secret) {
        values_.insert(value);
    }
}

void Secrets::learn(const json_t* value, const std::string& name) {
    if (json_is_string(value)) {
        learn(name, json_string_value(value));
    }
    size_t index = 0;
    json_t* member = nullptr;
    json_array_foreach(value, index, member) {
        learn(member, name);
    }
    const char* member_name = nullptr;
    json_object_foreach(const_cast<json_t*>(value), member_name, member) {
        learn(member, member_name);
    }
}

std::string Secrets::value(const std::string& name, const std::string& value) const {
    const bool hides = !shown_ && is_secret(name) && !value.empty() && value != no_secret;
    return hides ? hidden : text(value);
}

// The longest first: one secret may be a part of another.
std::string Secrets::text(std::string text) const {
    if (shown_) {
        return text;
    }
    std::vector<std::string> longest_first(values_.begin(), values_.end());
    std::stable_sort(longest_first.begin(), longest_first.end(),
                     [](const auto& a, const auto& b) { return a.size() > b.size(); });
    for (const std::string& value : longest_first) {
        replace_all(text, value);
    }
    return text;
}

} // namespace orloctl
