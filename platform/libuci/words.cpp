// SPDX-License-Identifier: MIT
#include "words.h"

#include <cstring>

namespace uci {

namespace {

/// Moves a piece of a word to where the word ends so far.
void append(char*& out, const char* piece, const char* end) {
    const auto size = static_cast<size_t>(end - piece);
    if (out != piece) {
        memmove(out, piece, size);
    }
    out += size;
}

bool is_blank(char c) {
    return c == ' ' || c == '\t';
}

} // namespace

void Words::skip_line() {
    auto* const line_end = static_cast<char*>(memchr(pos_, '\n', static_cast<size_t>(end_ - pos_)));
    pos_ = line_end ? line_end + 1 : end_;
    line_over_ = true;
}

bool Words::next_line() {
    line_over_ = false;
    for (;;) {
        while (is(*pos_, kSpace)) {
            pos_++;
        }
        if (*pos_ != '#') {
            return pos_ != end_;
        }
        skip_line();
        line_over_ = false;
    }
}

bool Words::next_command() {
    while (is_blank(*pos_)) {
        pos_++;
    }
    if (*pos_ == '#') {
        return next_line();
    }
    return pos_ != end_;
}

WordKind Words::next(Word& word) {
    static char none[] = "";
    word = {none, 0, 0};
    if (line_over_) {
        return WordKind::kNone;
    }
    unsigned bits = classes_of(*pos_);
    while (bits & kGap) {
        bits = classes_of(*++pos_);
    }
    if (!(bits & kSpecial)) {
        return read(word) ? WordKind::kWord : WordKind::kOpenQuote;
    }
    if (*pos_ == '\n' || *pos_ == '#' || pos_ == end_) {
        skip_line();
        return WordKind::kNone;
    }
    if (*pos_ == ';') {
        pos_++;
        return WordKind::kSemicolon;
    }
    return read(word) ? WordKind::kWord : WordKind::kOpenQuote;
}

bool Words::finish_line() {
    const bool over = line_over_;
    if (!over) {
        skip_line();
    }
    line_over_ = false;
    return over;
}

bool Words::read(Word& word) {
    // Nearly all words are plain, or one single-quoted piece: those need not be put together.
    char* end = pos_;
    if (*end == '\'') {
        auto* const close =
            static_cast<char*>(memchr(end + 1, '\'', static_cast<size_t>(end_ - end - 1)));
        if (!close || !is(close[1], kSpace)) {
            return read_pieces(word, end);
        }
        word = {end + 1, static_cast<size_t>(close - end - 1), 0};
        pos_ = close + 1;
        finish(word, false);
        return true;
    }
    unsigned common = ~0U;
    for (unsigned bits = classes_of(*end); !(bits & kSpecial); bits = classes_of(*++end)) {
        common &= bits;
    }
    if (is(*end, kPiece) && end != end_) {
        return read_pieces(word, end);
    }
    word = {pos_, static_cast<size_t>(end - pos_), common};
    pos_ = end;
    finish(word, true);
    return true;
}

bool Words::read_pieces(Word& word, char* plain_end) {
    char* start = pos_;
    char* out = plain_end;
    pos_ = plain_end;
    for (;;) {
        char* const piece = pos_;
        while (!is(*pos_, kSpecial) || (*pos_ == '\0' && pos_ != end_)) {
            pos_++;
        }
        append(out, piece, pos_);
        if (*pos_ == '\'' || *pos_ == '"') {
            if (out == start) {
                start = out = pos_ + 1; // nothing yet: what is within the quotes can stay in place
            }
            if (!read_quoted(out)) {
                return false;
            }
        } else if (*pos_ == '\\') {
            read_escaped(out);
        } else {
            break;
        }
    }
    word = {start, static_cast<size_t>(out - start), 0};
    finish(word, out == pos_);
    return true;
}

// The NUL that ends the word may take the place of the byte that ended it, so that byte comes
// first. A plain word before a semicolon swallows the rest of the line.
void Words::finish(Word& word, bool plain) {
    if (*pos_ == '\n') {
        pos_++;
        line_over_ = true;
    } else if (*pos_ == '#' || pos_ == end_ || (*pos_ == ';' && plain)) {
        skip_line();
    } else if (*pos_ != ';') {
        pos_++;
    }
    word.text[word.size] = '\0';
}

bool Words::read_quoted(char*& out) {
    const char quote = *pos_++;
    while (quote == '"') {
        char* const piece = pos_;
        while (pos_ != end_ && *pos_ != '"' && *pos_ != '\\') {
            pos_++;
        }
        append(out, piece, pos_);
        if (pos_ == end_ || *pos_ == '"') {
            break;
        }
        read_escaped(out);
    }
    if (quote == '\'') {
        auto* const piece = pos_;
        auto* const close =
            static_cast<char*>(memchr(pos_, quote, static_cast<size_t>(end_ - pos_)));
        pos_ = close ? close : end_;
        append(out, piece, pos_);
    }
    if (pos_ == end_) {
        line_over_ = true;
        return false;
    }
    pos_++;
    return true;
}

void Words::read_escaped(char*& out) {
    pos_++;
    if (*pos_ == '\r' && pos_ + 1 < end_ && pos_[1] == '\n') {
        pos_ += 2;
    } else if (*pos_ == '\n') {
        pos_++;
    } else if (pos_ != end_) {
        *out++ = *pos_++;
    }
}

} // namespace uci
