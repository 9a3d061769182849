// SPDX-License-Identifier: MIT
// Records: changes as the lines of the save directory write them.
//
//   p.s.o='value'   set an option              p.s='type'     create a section, change its type
//   -p.s.o          remove an option           -p.s           remove a section
//   -p.s.o='1'      remove a list element      +p.s='type'    create an anonymous section
//   |p.s.o='value'  append to a list           ~p.s.o='value' remove from a list
//   @p.s.o='name'   rename an option           @p.s='name'    rename a section
//   ^p.s='0'        move a section
//
// A record is one word in the sense of words.h, so a value may span lines.
#pragma once

#include "buffer.h"
#include "locked_file.h"
#include "reference.h"
#include "uci.h"
#include "words.h"

namespace uci {

struct Record {
    uci_command command = UCI_CMD_CHANGE;
    Reference to;
};

enum class RecordKind {
    kRecord,
    kUnreadable, // something else: junk, a comment, an empty line
    kEnd,
};

/// Reads the records of a text, which is changed and becomes the names and values.
class RecordReader {
public:
    /// @param begin  of the first record to be read
    explicit RecordReader(const Text& text, size_t begin = 0) : words_(text.data, text.size) {
        words_.go_to(text.data + begin);
    }

    RecordKind next(Record& record);

    /// Where the last record ended.
    [[nodiscard]] size_t end() const { return words_.offset(); }

    /// Where the last record began.
    [[nodiscard]] size_t offset() const { return offset_; }

    /// The text ended within quotes, so that the last record is none.
    [[nodiscard]] bool open_quotes() const { return open_quotes_; }

private:
    bool take_written(Record& record);

    Words words_;
    size_t offset_ = 0;
    bool open_quotes_ = false;
};

/// Writes a record with its line end.
/// @param option, value  nullptr when absent
void write_record(Buffer& out, uci_command command, const char* package, const char* section,
                  const char* option, const char* value);

} // namespace uci
