// SPDX-License-Identifier: MIT
#include "nearest.h"

#include <algorithm>
#include <utility>

#include "text.h"

namespace orloctl {

namespace {

constexpr size_t longest = 64; // no name is longer
constexpr size_t most = 3;

// How many letters must be put in, left out or replaced to come from one name to the other.
size_t distance(const std::string& a, const std::string& b) {
    std::vector<size_t> row(b.size() + 1);
    for (size_t j = 0; j <= b.size(); j++) {
        row[j] = j;
    }
    for (size_t i = 1; i <= a.size(); i++) {
        size_t diagonal = row[0];
        row[0] = i;
        for (size_t j = 1; j <= b.size(); j++) {
            const size_t replaced = diagonal + (a[i - 1] == b[j - 1] ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({replaced, row[j] + 1, row[j - 1] + 1});
        }
    }
    return row[b.size()];
}

// A letter in three may be wrong, three at most.
size_t farthest(const std::string& word) {
    return std::min<size_t>(3, word.size() / 3);
}

} // namespace

std::vector<std::string> nearest(const std::string& word, const std::vector<std::string>& names) {
    std::vector<std::pair<size_t, std::string>> near;
    if (word.size() <= longest) {
        for (const std::string& name : names) {
            const size_t away = distance(lower_case(word), lower_case(name));
            if (away <= farthest(word)) {
                near.emplace_back(away, name);
            }
        }
    }
    std::stable_sort(near.begin(), near.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<std::string> result;
    for (size_t i = 0; i < near.size() && i < most && near[i].first == near[0].first; i++) {
        result.push_back(near[i].second);
    }
    return result;
}

std::string proposal(const std::string& word, const std::vector<std::string>& names) {
    const std::vector<std::string> near = nearest(word, names);
    return near.empty() ? "" : "; did you mean " + alternatives(near) + "?";
}

std::string advice(const std::string& word, const std::vector<std::string>& names,
                   const std::string& listed) {
    const std::string near = proposal(word, names);
    return near.empty() ? "; " + listed : near + " (" + listed + ")";
}

} // namespace orloctl
