// SPDX-License-Identifier: MIT
#include "records/form.h"

#include <utility>

namespace orloctl {

namespace {

Form of_type(Type type) {
    Form form = {};
    form.type = type;
    return form;
}

Form of_record(Type type, const Record& record, size_t count = 1, const char* key = nullptr) {
    Form form = of_type(type);
    form.record = &record;
    form.count = count;
    form.key = key;
    return form;
}

Form of_names(Type type, std::vector<Name> names) {
    Form form = of_type(type);
    form.names = std::move(names);
    return form;
}

} // namespace

Form Form::in(int64_t first, int64_t last) const {
    Form form = *this;
    for (Accepted& each : form.accepted) {
        each.span = Span{first, last};
    }
    return form;
}

Form Form::one_of(std::vector<int64_t> numbers) const {
    Form form = *this;
    form.accepted[0].numbers = numbers;
    form.accepted[1].numbers = std::move(numbers);
    return form;
}

Form Form::words(std::vector<const char*> words) const {
    Form form = *this;
    form.accepted[0].words = words;
    form.accepted[1].words = std::move(words);
    return form;
}

Form Form::bytes(size_t most) const {
    Form form = *this;
    form.longest = most;
    return form;
}

Form Form::not_empty() const {
    Form form = *this;
    form.shortest = 1;
    return form;
}

Form Form::joined_by(const char* text) const {
    Form form = *this;
    form.separator = text;
    return form;
}

Form Form::reaches(Shell place) const {
    Form form = *this;
    form.shell = place;
    return form;
}

Form Form::like_mac() const {
    Form form = *this;
    form.is_mac = true;
    return form;
}

Form Form::in_unit(const char* name) const {
    Form form = *this;
    form.unit = name;
    return form;
}

Form Form::required() const {
    Form form = *this;
    form.is_required = true;
    return form;
}

Form Form::or_else(int64_t number) const {
    Form form = *this;
    form.fallback = number;
    return form;
}

Form Form::or_else(const char* text) const {
    Form form = *this;
    form.fallback_text = {text, text};
    return form;
}

Form Form::or_not_given(int64_t number) const {
    Form form = or_else(number);
    form.has_not_given = true;
    return form;
}

Form Form::selected_by(const char* word) const {
    Form form = *this;
    form.selected = word;
    return form;
}

namespace forms {

Form flag() {
    return of_type(Type::flag).one_of({0, 1});
}

Form number() {
    return of_type(Type::number);
}

Form choice(std::vector<Name> names) {
    std::vector<int64_t> numbers;
    numbers.reserve(names.size());
    for (const Name& name : names) {
        numbers.push_back(name.value);
    }
    return of_names(Type::choice, std::move(names)).one_of(std::move(numbers));
}

Form mask(std::vector<Name> bits) {
    return of_names(Type::mask, std::move(bits));
}

Form flags(size_t count) {
    return flags(count, {});
}

Form flags(size_t count, std::vector<Name> positions) {
    Form form = of_names(Type::flags, std::move(positions)).one_of({0, 1});
    form.count = count;
    return form;
}

Form text() {
    return of_type(Type::text);
}

Form texts(size_t count) {
    Form form = of_type(Type::texts);
    form.count = count;
    return form;
}

Form record(const Record& of) {
    return of_record(Type::record, of);
}

Form array(const Record& of, size_t count) {
    return of_record(Type::array, of, count);
}

Form some(const Record& of, size_t count) {
    return of_record(Type::some, of, count);
}

Form optional(const Record& of) {
    return of_record(Type::optional, of);
}

Form list(const Record& of, const char* key) {
    return of_record(Type::list, of, 1, key);
}

Form keyed(const Record& of, size_t count, const char* key) {
    return of_record(Type::keyed, of, count, key);
}

Form references(const Record& of, size_t count, const char* key) {
    return of_record(Type::references, of, count, key);
}

Form addresses() {
    return of_type(Type::addresses).not_empty();
}

Form by_radio(const Form& radio_0, const Form& radio_1) {
    Form form = radio_0;
    form.accepted[1] = radio_1.accepted[1];
    form.fallback_text[1] = radio_1.fallback_text[1];
    form.differs_by_radio = true;
    return form;
}

} // namespace forms

} // namespace orloctl
