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
    if (!to.plain_section || (!to.value && record.command != UCI_CMD_REMOVE)) {
        return false;
    }
    switch (record.command) {
    case UCI_CMD_LIST_ADD:
    case UCI_CMD_LIST_DEL:
        return to.has_option();
    case UCI_CMD_REORDER:
        return !to.has_option();
    case UCI_CMD_RENAME:
        return is_name(to.value);
    default:
        return true;
    }
}

size_t prefix_size(uci_command command) {
    return command == UCI_CMD_CHANGE ? 0 : 1;
}

/// PACKAGE.SECTION[.OPTION] without any characters that a plain name does not have.
bool split_names(char* text, const char* end, Reference& to) {
    to.section = {};
    to.option = {};
    char* name = text;
    for (std::string_view* const part : {&to.package, &to.section, &to.option}) {
        char* const name_end = skip_name(name);
        *part = {name, static_cast<size_t>(name_end - name)};
        if (name_end == name || name_end == end || *name_end != '.') {
            to.plain_section = to.has_section();
            return name_end == end && name_end != name;
        }
        name = name_end + 1;
    }
    return false;
}

void terminate(const std::string_view& name) {
    if (name.data()) {
        const_cast<char*>(name.data())[name.size()] = '\0';
    }
}

} // namespace

// A quote before and one behind the value are all that may stand out, up to the line end. Looking
// for them in one step, and at the names apart from that, lets the processor begin with the next
// record early.
bool RecordReader::take_written(Record& record) {
    char* const text = words_.rest();
    const uint64_t stops = stops_in_64(text);
    if (!stops) {
        return false;
    }
    char* names_end = text + lowest(stops);
    char* line_end = names_end;
    char* value = nullptr;
    if (*names_end == '\'') {
        const uint64_t closing = without_lowest(stops);
        if (!closing || names_end == text || *--names_end != '=') {
            return false;
        }
        value = names_end + 2;
        line_end = text + lowest(closing) + 1;
    }
    if (*line_end != '\n' || (value && line_end[-1] != '\'')) {
        return false;
    }
    record.command = command_of(*text);
    record.to.value = value;
    if (record.command == UCI_CMD_RENAME) {
        return false; // the new name has to be looked at too, which needs its end
    }
    if (!split_names(text + prefix_size(record.command), names_end, record.to) ||
        !is_complete(record)) {
        return false;
    }
    terminate(record.to.package);
    terminate(record.to.section);
    terminate(record.to.option);
    if (value) {
        line_end[-1] = '\0';
    }
    words_.go_to(line_end + 1);
    return true;
}

RecordKind RecordReader::next(Record& record) {
    offset_ = words_.offset();
    if (words_.at_end()) {
        return RecordKind::kEnd;
    }
    open_quotes_ = false;
    if (take_written(record)) {
        return RecordKind::kRecord;
    }
    Word word;
    const WordKind kind = words_.next(word);
    const bool alone = words_.finish_line();
    open_quotes_ = kind == WordKind::kOpenQuote;
    if (kind != WordKind::kWord || !alone || word.empty()) {
        return RecordKind::kUnreadable;
    }
    record.command = command_of(*word.text);
    const size_t prefix = prefix_size(record.command);
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
