// SPDX-License-Identifier: MIT
// Changes inputs whose answer "json" is a record in ways that the record's table knows of; the rest
// of the time, and everything else, byte by byte.
#include "device/input.h"
#include "exit.h"
#include "operations.h"
#include "records/registry.h"
#include "records/wild.h"

#include <algorithm>
#include <cstdlib>
#include <optional>

using orloctl::Form;
using orloctl::Json;

namespace {

// What the call reads from JSON.
std::optional<Form> form_of(const fuzz::Call& call) {
    if (call.empty()) {
        return std::nullopt;
    }
    if (call[0] == "description") {
        return orloctl::forms::record(orloctl::access_point_record);
    }
    if (call[0] == "record" && call.size() > 1) {
        for (const orloctl::Record* record : orloctl::all_records()) {
            if (call[1] == record->name) {
                return orloctl::forms::record(*record);
            }
        }
    }
    const Form* const form = orloctl::record_argument(call[0]);
    return form == nullptr ? std::nullopt : std::optional<Form>(*form);
}

} // namespace

extern "C" size_t LLVMFuzzerMutate(uint8_t* data, size_t size, size_t most);

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t most, unsigned seed) {
    fuzz::Wild wild(seed);
    fuzz::Input input(data, size);
    const std::optional<Form> form =
        form_of(input.calls().empty() ? fuzz::Call() : input.calls()[0]);
    if (!form || wild.one_in(8)) {
        return LLVMFuzzerMutate(data, size, most);
    }
    const std::string* const text = input.answer("json");
    Json json(text == nullptr ? nullptr
                              : json_loadb(text->data(), text->size(), JSON_DECODE_ANY, nullptr));
    do {
        json = wild.disturb(std::move(json), *form);
    } while (wild.one_in(2));
    char* const written = json_dumps(json.get(), JSON_ENCODE_ANY | JSON_INDENT(1));
    if (written == nullptr) {
        return LLVMFuzzerMutate(data, size, most);
    }
    const std::string made = input.with_answer("json", written);
    free(written);
    if (made.size() > most) {
        return LLVMFuzzerMutate(data, size, most);
    }
    std::copy(made.begin(), made.end(), data);
    return made.size();
}
