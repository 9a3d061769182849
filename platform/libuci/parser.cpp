// SPDX-License-Identifier: MIT
#include "parser.h"

#include "list.h"
#include "text.h"
#include "words.h"

#include <cstring>

namespace uci {

namespace {

/// Tells most of the names that have not been there before, so that no search is needed for them.
class SeenNames {
public:
    /// True when the name may have been there before.
    bool add(std::string_view name) {
        const uint64_t h = hash(0, name) >> 52;
        uint64_t& word = bits_[h / 64];
        const uint64_t before = word;
        word |= uint64_t{1} << h % 64;
        return word == before;
    }

    void forget_all() { memset(bits_, 0, sizeof(bits_)); }

    /// Any name may have been there before.
    void doubt_all() { memset(bits_, 0xff, sizeof(bits_)); }

private:
    uint64_t bits_[64] = {};
};

class Parser {
public:
    Parser(Package& package, char* text, size_t size) : package_(package), words_(text, size) {}

    int parse(ParseError& error) {
        int code = parse_written_lines();
        while (code == UCI_OK && words_.next_line()) {
            bool more = true;
            while (code == UCI_OK && more) {
                code = parse_command();
                more = code == UCI_OK && semicolon_ && words_.next_command();
            }
            code = code == UCI_OK ? parse_written_lines() : code;
        }
        error = {reason_, command_at_};
        return code;
    }

private:
    enum class Need { kRequired, kOptional };

    int fail(const char* reason) {
        reason_ = reason;
        return UCI_ERR_PARSE;
    }

    /// The lines that follow each other in the form that the store writes: nearly all there are.
    int parse_written_lines() {
        Word name;
        Word value;
        int code = UCI_OK;
        while (code == UCI_OK && section_) {
            if (words_.take_written("\toption ", name, value)) {
                code = set_option(name, value.text);
            } else if (words_.take_written("\tlist ", name, value)) {
                code = append_to_list(name, value.text);
            } else {
                break;
            }
        }
        return code;
    }

    int parse_command() {
        command_at_ = words_.offset();
        if (words_.take("option") || words_.take("o")) {
            return parse_option(&Parser::set_option);
        }
        if (words_.take("list") || words_.take("l")) {
            return parse_option(&Parser::append_to_list);
        }
        if (words_.take("config") || words_.take("c")) {
            return parse_section();
        }
        if (words_.take("package") || words_.take("p")) {
            return parse_package_line();
        }
        return fail("unknown command");
    }

    /// One word; an optional one that is missing, or whose place a semicolon takes, is empty.
    int read_word(Word& word, Need need) {
        if (words_.next(word) == WordKind::kOpenQuote) {
            return fail("quotes are not closed");
        }
        return need == Need::kRequired && word.empty() ? fail("too few words") : UCI_OK;
    }

    int read_end() {
        Word extra;
        const WordKind kind = words_.next(extra);
        semicolon_ = kind == WordKind::kSemicolon;
        return kind == WordKind::kNone || semicolon_ ? UCI_OK : fail("too many words");
    }

    /// A name and perhaps a second word.
    int read_words(Word& first, Word& second) {
        int code = read_word(first, Need::kRequired);
        if (code == UCI_OK) {
            code = read_word(second, Need::kOptional);
        }
        return code == UCI_OK ? read_end() : code;
    }

    int parse_package_line() {
        Word name;
        int code = read_word(name, Need::kRequired);
        if (code == UCI_OK) {
            code = read_end();
        }
        for (const char c : name.view()) {
            if (code == UCI_OK && c != '-' && !is(c, kName)) {
                return fail("bad name of a package");
            }
        }
        return code;
    }

    int parse_section() {
        Word type;
        Word name;
        const int code = read_words(type, name);
        if (code != UCI_OK) {
            return code;
        }
        if (!type.is_all(kGraph)) {
            return fail("bad type of a section");
        }
        if (name.empty()) {
            return begin_section(type, nullptr);
        }
        if (!name.is_all(kName)) {
            return fail("bad name of a section");
        }
        uci_section* const known =
            seen_sections_.add(name.view()) ? find_section(package_, name.view()) : nullptr;
        if (!known) {
            return begin_section(type, name.text);
        }
        section_ = known;
        seen_options_.doubt_all();
        return type.view() == known->type ? UCI_OK : fail("the section has another type above");
    }

    int begin_section(const Word& type, char* name) {
        section_ = add_section(package_, type.text, name);
        seen_options_.forget_all();
        if (section_ && !name) {
            seen_sections_.add(section_->e.name);
        }
        return section_ ? UCI_OK : UCI_ERR_MEM;
    }

    int parse_option(int (Parser::*store)(const Word& name, char* value)) {
        Word name;
        Word value;
        const int code = read_words(name, value);
        if (code != UCI_OK) {
            return code;
        }
        if (!section_) {
            return fail("an option before the first section");
        }
        if (!name.is_all(kName)) {
            return fail("bad name of an option");
        }
        return (this->*store)(name, value.text);
    }

    uci_option* obtain(const Word& name) {
        return seen_options_.add(name.view()) ? obtain_option(package_, *section_, name.view())
                                              : add_option(package_, *section_, name.view());
    }

    int set_option(const Word& name, char* value) {
        if (!*value) {
            return UCI_OK;
        }
        uci_option* const option = obtain(name);
        if (!option) {
            return UCI_ERR_MEM;
        }
        set_string(*option, value);
        return UCI_OK;
    }

    int append_to_list(const Word& name, char* value) {
        uci_option* const option = obtain(name);
        return option && append_item(package_, *option, value) ? UCI_OK : UCI_ERR_MEM;
    }

    Package& package_;
    Words words_;
    uci_section* section_ = nullptr;
    SeenNames seen_sections_;
    SeenNames seen_options_; // of the section
    bool semicolon_ = false; // the last command ended with one
    size_t command_at_ = 0;
    const char* reason_ = nullptr;
};

} // namespace

int parse_package(Package& package, char* text, size_t size, ParseError& error) {
    if (const void* const nul = memchr(text, '\0', size)) {
        error = {"a NUL byte", static_cast<size_t>(static_cast<const char*>(nul) - text)};
        return UCI_ERR_PARSE;
    }
    return Parser(package, text, size).parse(error);
}

} // namespace uci
