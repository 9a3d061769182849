// SPDX-License-Identifier: MIT
#include "device/input.h"

#include <sstream>

namespace fuzz {

namespace {

const std::string mark = "%% ";
constexpr size_t most_calls = 64;

// Where the next line that begins an answer stands.
size_t find_mark(const std::string& text, size_t from) {
    if (text.compare(from, mark.size(), mark) == 0) {
        return from;
    }
    const size_t line_end = text.find("\n" + mark, from);
    return line_end == std::string::npos ? text.size() : line_end + 1;
}

} // namespace

Input::Input(const uint8_t* data, size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    const size_t first_answer = find_mark(text, 0);
    std::istringstream lines(text.substr(0, first_answer));
    for (std::string line; calls_.size() < most_calls && std::getline(lines, line);) {
        std::istringstream words(line);
        Call call;
        for (std::string word; words >> word;) {
            call.push_back(word);
        }
        calls_.push_back(call);
    }
    for (size_t at = first_answer; at < text.size();) {
        const size_t title = at + mark.size();
        const size_t title_end = std::min(text.find('\n', title), text.size());
        const size_t body = std::min(title_end + 1, text.size());
        const size_t end = find_mark(text, body);
        answers_.push_back({text.substr(title, title_end - title), text.substr(body, end - body)});
        at = end;
    }
}

const std::string* Input::answer(const std::string& question) {
    Answer* next = nullptr;
    for (Answer& answer : answers_) {
        const bool fits = question.find(answer.title) != std::string::npos;
        if (fits && (next == nullptr || answer.used < next->used)) {
            next = &answer;
        }
    }
    if (next == nullptr) {
        return nullptr;
    }
    next->used++;
    return &next->text;
}

std::string Input::without_line_end(const std::string& answer) {
    const bool has_one = !answer.empty() && answer.back() == '\n';
    return answer.substr(0, answer.size() - (has_one ? 1 : 0));
}

std::string Input::with_answer(const std::string& title, const std::string& text) const {
    std::string out;
    for (const Call& call : calls_) {
        for (const std::string& word : call) {
            out += word + " ";
        }
        out += "\n";
    }
    out += mark + title + "\n" + text;
    for (const Answer& answer : answers_) {
        if (answer.title != title) {
            out += (out.back() == '\n' ? "" : "\n") + mark + answer.title + "\n" + answer.text;
        }
    }
    return out;
}

} // namespace fuzz
