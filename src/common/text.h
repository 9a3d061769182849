// Texts in fixed buffers, and the few text helpers that operations share.
#pragma once

#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <cstdio>

namespace orlo {

// A formatted text of at most N - 1 characters: cut as snprintf cuts, always terminated.
//
//     Text<32> key("wifi%dvap%d.ssid", radio, vap);
template <size_t N>
class Text {
public:
    __attribute__((format(printf, 2, 3))) explicit Text(const char* format, ...) {
        va_list arguments;
        va_start(arguments, format);
        vsnprintf(text_, N, format, arguments);
        va_end(arguments);
    }

    operator const char*() const { return text_; }

    // For the arguments of a format, which convert nothing.
    const char* c_str() const { return text_; }

private:
    char text_[N];
};

// A text inside a record of the agent, whose array may be full.
template <size_t N>
Text<N + 1> read_inline(const char (&text)[N]) {
    return Text<N + 1>("%.*s", static_cast<int>(N), text);
}

// "a4:5e:60:01:02:03". By hand: a full access point has thousands of clients to write down.
class MacText {
public:
    explicit MacText(const uint8_t (&mac)[6]) {
        char* end = text_;
        for (const uint8_t byte : mac) {
            *end++ = "0123456789abcdef"[byte >> 4];
            *end++ = "0123456789abcdef"[byte & 15];
            *end++ = ':';
        }
        end[-1] = '\0';
    }

    const char* c_str() const { return text_; }

private:
    char text_[6 * 3];
};

// Replaces every `needle` in `text`, in place, until none is left; the buffer must have room for
// the grown text. A result of 1024 bytes or more, an empty needle, or a replacement that holds the
// needle itself leaves the text as it stands.
void replace_all_substrings(char* text, const char* needle, const char* replacement);

// 1 when the text is an IPv4 address in dotted form, else 0.
int is_valid_ipv4_text(const char* text);

} // namespace orlo
