// SPDX-License-Identifier: MIT
#include "records.h"

#include "text.h"

namespace uci {

namespace {

uci_command command_of(char c) {
    if (is(c, kName)) {
        return UCI_CMD_CHANGE; // by far the most frequent one
    }
    for (const uci_command command : {UCI_CMD_ADD, UCI_CMD_REMOVE, UCI_CMD_RENAME, UCI_CMD_REORDER,
                                      UCI_CMD_LIST_ADD, UCI_CMD_LIST_DEL}) {
        if (c == uci_command_char[command]) {
            return command;
        }
    }
    return UCI_CMD_CHANGE;
}

/// The parts that each command needs and allows.
bool is_complete(const Record& record) {
    const Reference& to = record.to;
    if (!to.section || !to.plain_section || (!to.value && record.command != UCI_CMD_REMOVE)) {
        return false;
    }
    switch (record.command) {
    case UCI_CMD_LIST_ADD:
    case UCI_CMD_LIST_DEL:
        return to.option != nullptr;
    case UCI_CMD_REORDER:
        return to.option == nullptr;
    case UCI_CMD_RENAME:
        return is_name(to.value);
    default:
        return true;
    }
}

} // namespace

RecordKind RecordReader::next(Record& record) {
    offset_ = words_.offset();
    if (words_.at_end()) {
        return RecordKind::kEnd;
    }
    Word word;
    const WordKind kind = words_.next(word);
    const bool alone = words_.finish_line();
    open_quotes_ = kind == WordKind::kOpenQuote;
    if (kind != WordKind::kWord || !alone || word.empty()) {
        return RecordKind::kUnreadable;
    }
    record.command = command_of(*word.text);
    const size_t prefix = record.command == UCI_CMD_CHANGE ? 0 : 1;
    const bool valid = split_reference(word.text + prefix, word.size - prefix, record.to);
    return valid && is_complete(record) ? RecordKind::kRecord : RecordKind::kUnreadable;
}

void write_record(Buffer& out, uci_command command, const char* package, const char* section,
                  const char* option, const char* value) {
    if (command != UCI_CMD_CHANGE) {
        out << uci_command_char[command];
    }
    out << package << '.' << section;
    if (option) {
        out << '.' << option;
    }
    if (value) {
        (out << '=').quote(value);
    }
    out << '\n';
}

} // namespace uci
