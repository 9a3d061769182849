// SPDX-License-Identifier: MIT
#include "records/schema.h"

#include "records/rule.h"

namespace orloctl {

namespace {

Json type_schema(const char* type) {
    Json schema = json_object_new();
    set(schema, "type", json_text(type));
    return schema;
}

Json any_of(std::vector<Json> choices) {
    if (choices.size() == 1) {
        return std::move(choices[0]);
    }
    Json array = json_array_new();
    for (Json& choice : choices) {
        append(array, std::move(choice));
    }
    Json schema = json_object_new();
    set(schema, "anyOf", std::move(array));
    return schema;
}

Json reference(const Record& record) {
    Json schema = json_object_new();
    set(schema, "$ref", json_text(std::string("#/$defs/") + record.name));
    set(schema, "unevaluatedProperties", json_bool(false));
    return schema;
}

Json array_schema(Json items) {
    Json schema = type_schema("array");
    set(schema, "items", std::move(items));
    return schema;
}

Json at_most(size_t count, Json array) {
    set(array, "maxItems", json_int(static_cast<long long>(count)));
    return array;
}

Json integers(const Span& span) {
    Json schema = type_schema("integer");
    set(schema, "minimum", json_int(span.first));
    set(schema, "maximum", json_int(span.last));
    return schema;
}

// The radios' rules side by side: a schema does not know the radio.
std::vector<const Accepted*> accepted_anywhere(const Form& form) {
    return form.differs_by_radio
               ? std::vector<const Accepted*>{&form.accepted[0], &form.accepted[1]}
               : std::vector<const Accepted*>{&form.accepted[0]};
}

std::vector<Json> number_choices(const Form& form) {
    std::vector<Json> choices;
    Json numbers = json_array_new();
    for (const Accepted* accepted : accepted_anywhere(form)) {
        for (const int64_t number : accepted->numbers) {
            append(numbers, json_int(number));
        }
        if (accepted->span) {
            choices.push_back(integers(*accepted->span));
        }
    }
    if (choices.empty() && json_array_size(numbers.get()) == 0) {
        choices.push_back(type_schema("integer"));
        return choices;
    }
    if (form.has_not_given) {
        append(numbers, json_int(form.fallback));
    }
    if (json_array_size(numbers.get()) > 0) {
        Json schema = json_object_new();
        set(schema, "enum", std::move(numbers));
        choices.push_back(std::move(schema));
    }
    return choices;
}

Json name_schema(const Form& form) {
    Json names = json_array_new();
    for (const Name& name : form.names) {
        append(names, json_text(name.name));
    }
    Json schema = json_object_new();
    set(schema, "enum", std::move(names));
    return schema;
}

// Numbers, or what stands for them.
Json number_schema(const Form& form, Json other) {
    std::vector<Json> choices = number_choices(form);
    choices.push_back(std::move(other));
    return any_of(std::move(choices));
}

Json flags_schema(const Form& form) {
    std::vector<Json> choices = number_choices(form);
    choices.push_back(type_schema("boolean"));
    if (form.has_not_given) {
        choices.push_back(type_schema("null"));
    }
    if (!form.names.empty()) {
        choices.push_back(name_schema(form));
    }
    return at_most(form.count, array_schema(any_of(std::move(choices))));
}

Json text_schema(const Field& field) {
    const Form& form = field.form;
    Json words = json_array_new();
    for (const Accepted* accepted : accepted_anywhere(form)) {
        for (const char* word : accepted->words) {
            append(words, json_text(word));
        }
    }
    Json text = type_schema("string");
    if (json_array_size(words.get()) > 0) {
        set(text, "enum", std::move(words));
    }
    // In bytes; a schema counts characters, which are not more.
    const size_t longest = field.storage == Storage::characters ? field.size : form.longest;
    if (longest > 0) {
        set(text, "maxLength", json_int(static_cast<long long>(longest)));
    }
    std::vector<Json> choices;
    choices.push_back(std::move(text));
    if (!form.is_required) {
        choices.push_back(type_schema("null"));
    }
    if (form.separator != nullptr) {
        Json element = json_object_new();
        set(element, "type", json_texts({"number", "string"}));
        choices.push_back(array_schema(std::move(element)));
    }
    return any_of(std::move(choices));
}

// A text in an array of texts.
Json element_schema(const Form& form) {
    Json text = type_schema("string");
    if (form.shortest > 0) {
        set(text, "minLength", json_int(static_cast<long long>(form.shortest)));
    }
    if (form.is_mac) {
        set(text, "pattern", json_text("^([0-9A-Fa-f]{2}:){5}[0-9A-Fa-f]{2}$"));
    }
    return text;
}

Json keyed_schema(const Form& form) {
    Json properties = json_object_new();
    set(properties, form.key, integers({0, static_cast<int64_t>(form.count) - 1}));
    Json element = reference(*form.record);
    set(element, "properties", std::move(properties));
    set(element, "required", json_texts({form.key}));
    return array_schema(std::move(element));
}

Json value_schema(const Field& field) {
    const Form& form = field.form;
    switch (form.type) {
    case Type::flag:
        return number_schema(form, type_schema("boolean"));
    case Type::number:
        return any_of(number_choices(form));
    case Type::choice:
        return number_schema(form, name_schema(form));
    case Type::mask:
        return number_schema(form, array_schema(name_schema(form)));
    case Type::flags:
        return flags_schema(form);
    case Type::text:
        return text_schema(field);
    case Type::texts:
        return at_most(form.count, array_schema(element_schema(form)));
    case Type::record:
    case Type::optional:
        return reference(*form.record);
    case Type::array:
    case Type::some:
        return at_most(form.count, array_schema(reference(*form.record)));
    case Type::list:
        return array_schema(reference(*form.record));
    case Type::keyed:
        return keyed_schema(form);
    case Type::references:
        return at_most(form.count, array_schema(reference(*form.record)));
    case Type::addresses:
        return array_schema(element_schema(form));
    }
    return json_object_new();
}

Json described(const Field& field) {
    Json schema = value_schema(field);
    set(schema, "description", json_text(field.meaning));
    const std::string fallback = shown_default(field.form);
    if (field.form.type == Type::flag && !fallback.empty()) {
        set(schema, "default", json_bool(fallback == "true"));
    } else if (field.form.type == Type::number && !fallback.empty()) {
        set(schema, "default", json_int(field.form.fallback));
    }
    return schema;
}

// A member of the union is there only with the text that selects it.
Json union_schema(const Record& record) {
    Json schemas = json_object_new();
    for (const Field& field : record.fields) {
        if (field.form.selected == nullptr) {
            continue;
        }
        Json word = json_object_new();
        set(word, "const", json_text(field.form.selected));
        Json properties = json_object_new();
        set(properties, record.selector, std::move(word));
        Json schema = json_object_new();
        set(schema, "properties", std::move(properties));
        set(schema, "required", json_texts({record.selector}));
        set(schemas, field.name, std::move(schema));
    }
    return schemas;
}

// What is required; behind a switch, as long as that is on.
void set_required(const Json& schema, const Record& record) {
    std::vector<std::string> names;
    for (const Field& field : record.fields) {
        const bool is_known = field.form.fallback_text[0] != nullptr; // by the radio
        if (field.form.is_required && !is_known) {
            names.emplace_back(field.name);
        }
    }
    if (names.empty()) {
        return;
    }
    if (record.switched_by == nullptr) {
        set(schema, "required", json_texts(names));
        return;
    }
    const bool on_by_default = record.find(record.switched_by)->form.fallback == 1;
    Json values = json_array_new();
    append(values, json_bool(!on_by_default));
    append(values, json_int(on_by_default ? 0 : 1));
    Json value = json_object_new();
    set(value, "enum", std::move(values));
    Json properties = json_object_new();
    set(properties, record.switched_by, std::move(value));
    Json given = json_object_new();
    set(given, "properties", std::move(properties));
    set(given, "required", json_texts({record.switched_by}));
    Json required = json_object_new();
    set(required, "required", json_texts(names));
    set(schema, "if", std::move(given));
    set(schema, on_by_default ? "else" : "then", std::move(required));
}

Json definition(const Record& record) {
    Json properties = json_object_new();
    for (const Field& field : record.fields) {
        set(properties, field.name, described(field));
    }
    Json schema = type_schema("object");
    set(schema, "description", json_text(record.meaning));
    set(schema, "properties", std::move(properties));
    set_required(schema, record);
    if (record.selector != nullptr) {
        set(schema, "dependentSchemas", union_schema(record));
    }
    std::string comment;
    for (const Condition& condition : record.conditions) {
        comment += (comment.empty() ? "" : "; ") + std::string(condition.member) + ": " +
                   condition.sentence;
    }
    if (!comment.empty()) {
        set(schema, "$comment", json_text(comment));
    }
    return schema;
}

void collect(const Record& record, const Json& definitions) {
    if (json_object_get(definitions.get(), record.name) != nullptr) {
        return;
    }
    set(definitions, record.name, definition(record));
    for (const Field& field : record.fields) {
        if (field.form.record != nullptr) {
            collect(*field.form.record, definitions);
        }
    }
}

} // namespace

Json record_schema(const Record& record) {
    Json definitions = json_object_new();
    collect(record, definitions);
    Json schema = json_object_new();
    set(schema, "$schema", json_text("https://json-schema.org/draft/2020-12/schema"));
    set(schema, "title", json_text(record.name));
    set(schema, "$ref", json_text(std::string("#/$defs/") + record.name));
    set(schema, "unevaluatedProperties", json_bool(false));
    set(schema, "$defs", std::move(definitions));
    return schema;
}

} // namespace orloctl
