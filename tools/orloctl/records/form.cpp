#include "records/form.h"

#include <utility>

namespace orloctl {

namespace {

Form of_type(Type type) {
    Form form = {};
    form.type = type;
    return form;
}

Form of_record(Type type, const Record& record) {
    Form form = of_type(type);
    form.record = &record;
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

Form mask(std::vector<Bit> bits) {
    Form form = of_type(Type::mask);
    form.bits = std::move(bits);
    return form;
}

Form text() {
    return of_type(Type::text);
}

Form record(const Record& of) {
    return of_record(Type::record, of);
}

Form array(const Record& of, size_t count) {
    Form form = of_record(Type::array, of);
    form.count = count;
    return form;
}

Form optional(const Record& of) {
    return of_record(Type::optional, of);
}

Form list(const Record& of, const char* key) {
    Form form = of_record(Type::list, of);
    form.key = key;
    return form;
}

Form keyed(const Record& of, size_t count, const char* key) {
    Form form = of_record(Type::keyed, of);
    form.count = count;
    form.key = key;
    return form;
}

Form addresses() {
    return of_type(Type::addresses);
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
