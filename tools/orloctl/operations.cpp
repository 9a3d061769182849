// SPDX-License-Identifier: MIT
#include "operations.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

#include "exit.h"
#include "nearest.h"
#include "records/registry.h"
#include "records/rule.h"
#include "text.h"

namespace orloctl {

namespace {

// The mechanical part of an operation, made by the compiler from its member of the table.
template <auto Member>
struct Caller;

template <class R, class... A, R (*vendor_ops::*Member)(A...)>
struct Caller<Member> {
    static std::vector<Kind> kinds() { return {kind_of<A>()...}; }

    static Result call(const vendor_ops& ops, std::vector<Argument>& arguments) {
        return call(ops, arguments, std::index_sequence_for<A...>());
    }

private:
    template <size_t... I>
    static Result call(const vendor_ops& ops, [[maybe_unused]] std::vector<Argument>& arguments,
                       std::index_sequence<I...>) {
        if constexpr (std::is_void_v<R>) {
            (ops.*Member)(pass<A>(arguments[I])...);
            return std::monostate();
        } else {
            return take((ops.*Member)(pass<A>(arguments[I])...));
        }
    }
};

// One entry of the list as it stands there.
struct Listed {
    int slot;
    Meaning meaning;
    const char* result;
    const char* name;
    const char* parameters; // "(int radio, int channel)"
    const char* summary;
    std::vector<Kind> (*kinds)();
    Result (*call)(const vendor_ops&, std::vector<Argument>&);
};

template <auto Member>
constexpr Listed entry(int slot, Meaning meaning, const char* result, const char* name,
                       const char* parameters, const char* summary) {
    return {slot,
            meaning,
            result,
            name,
            parameters,
            summary,
            &Caller<Member>::kinds,
            &Caller<Member>::call};
}

const Listed listed[] = {
#define ORLO_OP(slot, result, name, parameters, meaning, summary)                                  \
    entry<&vendor_ops::name>(slot, Meaning::meaning, #result, #name, #parameters, summary),
#include "orlo/operations.def"
};

// Splits "(const char *path, int radio)" into types and names.
std::vector<Parameter> named_parameters(const Listed& entry) {
    const std::string list = entry.parameters;
    std::vector<Parameter> parameters;
    size_t start = 1;
    for (const Kind kind : entry.kinds()) {
        const size_t end = list.find_first_of(",)", start);
        const std::string declaration = list.substr(start, end - start);
        const size_t name = declaration.find_last_of("* ") + 1;
        std::string type = declaration.substr(0, name);
        type.erase(type.find_last_not_of(' ') + 1);
        Parameter parameter = {type, declaration.substr(name), kind};
        if (kind == Kind::record) {
            parameter.form = record_argument(entry.name);
            parameter.filled = filled_record(entry.name);
        }
        parameters.push_back(parameter);
        start = list.find_first_not_of(' ', end + 1);
    }
    return parameters;
}

std::string prototype(const Listed& entry) {
    const std::string result = entry.result;
    return result + (result.back() == '*' ? "" : " ") + entry.name + entry.parameters;
}

std::vector<Operation> all_operations() {
    std::vector<Operation> all;
    for (const Listed& entry : listed) {
        all.push_back({entry.slot, entry.name, prototype(entry), entry.result, entry.meaning,
                       entry.summary, named_parameters(entry), shell_command(entry.name),
                       entry.call});
    }
    return all;
}

// Refuses texts with which the operation would run another command than it seems.
void check_shell_texts(const Operation& operation, const std::vector<Argument>& arguments) {
    Problems problems;
    size_t size = 0;
    std::string name;
    for (size_t i = 0; i < arguments.size(); i++) {
        const auto* text = std::get_if<Text>(&arguments[i]);
        if (text == nullptr || !*text) {
            continue;
        }
        name = argument_name(operation.parameters[i], i + 1);
        size += (*text)->size();
        const std::string objection = shell_objection(**text, operation.shell->place);
        if (!objection.empty()) {
            wrong(name, objection, problems);
        }
    }
    if (size > operation.shell->room) {
        wrong(name,
              "the command has room for " + std::to_string(operation.shell->room) +
                  " bytes of text, not for " + std::to_string(size),
              problems);
    }
    if (!problems.empty()) {
        throw Refusal(joined(problems, "\n"));
    }
}

} // namespace

std::string Operation::usage() const {
    std::string words = name;
    for (const Parameter& parameter : parameters) {
        if (parameter.takes_word()) {
            words += " " + upper_case(parameter.name);
        }
    }
    return words;
}

std::vector<std::string> operation_names() {
    std::vector<std::string> names;
    for (const Operation& operation : operations()) {
        names.push_back(operation.name);
    }
    return names;
}

const std::vector<Operation>& operations() {
    static const std::vector<Operation> all = all_operations();
    return all;
}

const Operation& find_operation(const std::string& name_or_slot) {
    const std::vector<Operation>& all = operations();
    size_t slot = 0;
    const char* end = name_or_slot.data() + name_or_slot.size();
    const auto number = std::from_chars(name_or_slot.data(), end, slot);
    if (number.ptr == end && !name_or_slot.empty()) {
        if (number.ec != std::errc() || slot >= all.size()) {
            throw Refusal("slot " + name_or_slot + " does not exist: slots are 0 to " +
                          std::to_string(all.size() - 1));
        }
        return all[slot];
    }
    const auto found = std::find_if(all.begin(), all.end(), [&](const Operation& operation) {
        return operation.name == name_or_slot;
    });
    if (found == all.end()) {
        throw Refusal("unknown operation '" + name_or_slot + "'" +
                      proposal(name_or_slot, operation_names()) + " ('orloctl ops WORD' searches)");
    }
    return *found;
}

std::vector<Argument> read_arguments(const Operation& operation,
                                     const std::vector<std::string>& words, bool checked) {
    size_t wanted = 0;
    for (const Parameter& parameter : operation.parameters) {
        wanted += parameter.takes_word() ? 1 : 0;
    }
    if (words.size() != wanted) {
        throw Refusal(operation.name + " takes " + std::to_string(wanted) +
                      (wanted == 1 ? " argument, " : " arguments, ") +
                      std::to_string(words.size()) + " given; usage: orloctl call " +
                      operation.usage());
    }
    std::vector<Argument> arguments;
    size_t next = 0;
    Place place;
    place.checked = checked;
    for (const Parameter& parameter : operation.parameters) {
        if (!parameter.takes_word()) {
            arguments.push_back(empty_argument(parameter));
            continue;
        }
        const std::string& word = words[next++];
        arguments.push_back(parameter.form == nullptr
                                ? read_argument(parameter, next, word)
                                : read_record_argument(parameter, next, word, place));
        if (parameter.name == "radio" && parameter.kind == Kind::integer) {
            place.radio = std::get<int>(arguments.back());
        }
    }
    if (checked && operation.shell != nullptr) {
        check_shell_texts(operation, arguments);
    }
    return arguments;
}

} // namespace orloctl
