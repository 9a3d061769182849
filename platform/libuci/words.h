// SPDX-License-Identifier: MIT
// Lines and words of configuration files and of staged changes.
//
//   plain       a\ b  #       a backslash takes the next character as it is
//   'single'    every byte as it is, up to the next single quote
//   "double"    as it is, but a backslash takes the next character as it is
//
// Pieces without white space between them make one word. '#' ends the line wherever it is not
// quoted, ';' ends a command. A backslash before the line end joins the next line. Words are cut
// out of the text in place: they are never longer than what they were written as.
#pragma once

#include "scan.h"
#include "text.h"

#include <cstddef>
#include <string_view>

namespace uci {

/// A word; it lies in the text and is followed by a NUL byte.
struct Word {
    char* text = nullptr;
    size_t size = 0;
    unsigned classes = 0; // known to hold for all its characters, see CharClass

    [[nodiscard]] bool empty() const { return size == 0; }
    [[nodiscard]] std::string_view view() const { return {text, size}; }
    [[nodiscard]] bool is_all(CharClass wanted) const {
        return (classes & wanted) != 0 || all_are(view(), wanted);
    }
};

enum class WordKind {
    kWord,
    kNone,      // the line is over
    kSemicolon, // the command is over, the line is not
    kOpenQuote, // the text ended within quotes
};

class Words {
public:
    /// @param text  is followed by kPadding NUL bytes and is changed.
    Words(char* text, size_t size) : begin_(text), pos_(text), end_(text + size) {}

    /// Goes to the first word of the next line that has one. False at the end of the text.
    bool next_line();

    /// Takes a keyword, which stands unquoted at this place and is followed by a blank. False when
    /// something else does.
    bool take(std::string_view keyword) {
        const size_t size = keyword.size();
        if (static_cast<size_t>(end_ - pos_) <= size || keyword != std::string_view(pos_, size) ||
            (pos_[size] != ' ' && pos_[size] != '\t')) {
            return false;
        }
        pos_ += size;
        return true;
    }

    /// Takes a whole line that reads "KEYWORD NAME 'VALUE'", as the store itself writes its lines.
    /// False, and nothing is taken, when the line is written in any other way.
    /// @param beginning  of the line: the keyword and the white space around it
    bool take_written(std::string_view beginning, Word& name, Word& value) {
        char* const text = pos_ + beginning.size();
        if (static_cast<size_t>(end_ - pos_) < beginning.size() ||
            memcmp(pos_, beginning.data(), beginning.size()) != 0) {
            return false;
        }
        // Two quotes are all that may stand out, up to the line end. Looking for them in one step,
        // and at the name apart from that, lets the processor begin with the next line early.
        const uint32_t quotes = stops_in(text) | stops_in(text + kScanStep) << kScanStep;
        const uint32_t closing = without_lowest(quotes);
        if (!closing) {
            return false;
        }
        char* const opening = text + lowest(quotes);
        char* const value_end = text + lowest(closing);
        const size_t name_size = lowest(quotes) - 1;
        if (lowest(quotes) < 2 || name_size > kScanStep || opening[-1] != ' ' || *opening != '\'' ||
            *value_end != '\'' || value_end[1] != '\n' ||
            (names_in(text) | ~0U << name_size) != ~0U) {
            return false;
        }
        opening[-1] = '\0';
        *value_end = '\0';
        name = {text, name_size, kName};
        value = {opening + 1, static_cast<size_t>(value_end - opening) - 1, 0};
        pos_ = value_end + 2;
        return true;
    }

    /// The next word of the line. Anything but kWord leaves an empty word.
    WordKind next(Word& word);

    /// Goes on behind a semicolon; false when the text ends there.
    bool next_command();

    /// For texts of one word per line: nothing but the line end followed the last word. Goes to
    /// the next line in any case.
    bool finish_line();

    /// What has not been read.
    [[nodiscard]] char* rest() const { return pos_; }

    /// Goes on elsewhere, at the beginning of a line.
    void go_to(char* line) { pos_ = line; }

    [[nodiscard]] bool at_end() const { return pos_ == end_; }

    /// Where the scanner is, for error messages.
    [[nodiscard]] size_t offset() const { return static_cast<size_t>(pos_ - begin_); }

private:
    bool read(Word& word);
    bool read_pieces(Word& word, char* plain_end);
    void finish(Word& word, bool plain);
    bool read_quoted(char*& out);
    void read_escaped(char*& out);
    void skip_line();

    char* begin_;
    char* pos_;
    char* end_;
    bool line_over_ = false; // the line of the last word is used up
};

} // namespace uci
