// SPDX-License-Identifier: MIT
// Runs the vectors: every file of vectors/ is one scenario, see the README there.
#include "sandbox.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <jansson.h>
#include <memory>
#include <ostream>
#include <vector>

namespace {

namespace fs = std::filesystem;

struct JsonDeleter {
    void operator()(json_t* value) const { json_decref(value); }
};
using JsonPtr = std::unique_ptr<json_t, JsonDeleter>;

/// The bytes of a text: code point U+0000 to U+00FF is the byte of that number.
std::string bytes(const json_t* text) {
    const char* const utf8 = json_string_value(text);
    const size_t size = json_string_length(text);
    std::string result;
    for (size_t i = 0; i < size; i++) {
        auto c = static_cast<unsigned char>(utf8[i]);
        if (c >= 0xc2 && c <= 0xc3) {
            c = static_cast<unsigned char>((c & 3U) << 6U |
                                           (static_cast<unsigned char>(utf8[++i]) & 0x3fU));
        }
        result += static_cast<char>(c);
    }
    return result;
}

/// The opposite, so that results can be compared as JSON.
json_t* to_json(const char* text) {
    if (!text) {
        return json_null();
    }
    std::string utf8;
    for (const char* c = text; *c; c++) {
        const auto byte = static_cast<unsigned char>(*c);
        if (byte < 0x80) {
            utf8 += *c;
        } else {
            utf8 += static_cast<char>(0xc0U | byte >> 6U);
            utf8 += static_cast<char>(0x80U | (byte & 0x3fU));
        }
    }
    return json_stringn(utf8.data(), utf8.size());
}

std::string dump(const json_t* value) {
    char* const text = json_dumps(value, JSON_ENCODE_ANY | JSON_SORT_KEYS | JSON_ENSURE_ASCII);
    std::string result = text ? text : "";
    free(text);
    return result;
}

mode_t octal(const json_t* text) {
    return static_cast<mode_t>(std::stoul(bytes(text), nullptr, 8));
}

std::string octal(mode_t mode) {
    char text[8];
    snprintf(text, sizeof(text), "%04o", mode);
    return text;
}

const char* kind_of(const uci_element* element) {
    if (!element) {
        return nullptr;
    }
    switch (element->type) {
    case UCI_TYPE_PACKAGE:
        return "package";
    case UCI_TYPE_SECTION:
        return "section";
    case UCI_TYPE_OPTION:
        return "option";
    default:
        return "other";
    }
}

json_t* value_of(uci_option& option) {
    if (option.type == UCI_TYPE_STRING) {
        return to_json(option.v.string);
    }
    json_t* const items = json_array();
    uci_element* item = nullptr;
    uci_foreach_element(&option.v.list, item) {
        json_array_append_new(items, to_json(item->name));
    }
    return items;
}

json_t* describe(const uci_ptr& ptr) {
    json_t* const fields = json_object();
    json_object_set_new(fields, "target", json_integer(ptr.target));
    json_object_set_new(fields, "flags", json_integer(ptr.flags));
    json_object_set_new(fields, "p", json_boolean(ptr.p != nullptr));
    json_object_set_new(fields, "s", json_boolean(ptr.s != nullptr));
    json_object_set_new(fields, "o", json_boolean(ptr.o != nullptr));
    json_object_set_new(fields, "last", to_json(kind_of(ptr.last)));
    json_object_set_new(fields, "package", to_json(ptr.package));
    json_object_set_new(fields, "section", to_json(ptr.section));
    json_object_set_new(fields, "option", to_json(ptr.option));
    json_object_set_new(fields, "value", to_json(ptr.value));
    return fields;
}

json_t* describe_changes(uci_package& package) {
    json_t* const changes = json_array();
    uci_element* element = nullptr;
    uci_foreach_element(&package.saved_delta, element) {
        const uci_delta& delta = *uci_to_delta(element);
        json_t* const change = json_object();
        json_object_set_new(change, "cmd", json_integer(delta.cmd));
        json_object_set_new(change, "section", to_json(delta.section));
        json_object_set_new(change, "option", to_json(delta.e.name));
        json_object_set_new(change, "value", to_json(delta.value));
        json_array_append_new(changes, change);
    }
    return changes;
}

json_t* describe_sections(uci_package& package) {
    json_t* const sections = json_array();
    uci_element* element = nullptr;
    uci_foreach_element(&package.sections, element) {
        uci_section& section = *uci_to_section(element);
        json_t* const options = json_array();
        uci_element* inner = nullptr;
        uci_foreach_element(&section.options, inner) {
            json_t* const option = json_object();
            json_object_set_new(option, "name", to_json(inner->name));
            json_object_set_new(option, "value", value_of(*uci_to_option(inner)));
            json_array_append_new(options, option);
        }
        json_t* const entry = json_object();
        json_object_set_new(entry, "type", to_json(section.type));
        json_object_set_new(entry, "name", to_json(section.e.name));
        json_object_set_new(entry, "anonymous", json_boolean(section.anonymous));
        json_object_set_new(entry, "options", options);
        json_array_append_new(sections, entry);
    }
    return sections;
}

/// One step: the calls it makes, and an account of them in the form of "expect".
class Step {
public:
    Step(const Sandbox& sandbox, const json_t* step)
        : sandbox_(sandbox), step_(step), op_(bytes(json_object_get(step, "op"))),
          arg_(bytes(json_object_get(step, "arg"))), seen_(json_pack("{s:[]}", "calls")) {}

    /// What happened.
    JsonPtr run() {
        if (op_ == "put_config" || op_ == "put_delta") {
            write_file(place(), bytes(json_object_get(step_, "text")));
            return std::move(seen_);
        }
        if (op_ == "rm_config" || op_ == "rm_delta") {
            fs::remove(place());
            return std::move(seen_);
        }
        ctx_ = sandbox_.open();
        if (op_ == "list_configs") {
            list();
        } else if (arg_.empty() && (op_ == "commit" || op_ == "revert")) {
            for (const std::string& name : list()) {
                if (act(name) != UCI_OK) {
                    break;
                }
            }
        } else {
            act(arg_);
        }
        return std::move(seen_);
    }

private:
    [[nodiscard]] std::string place() const {
        const bool config = op_.find("config") != std::string::npos;
        return (config ? sandbox_.config : sandbox_.staged) + "/" + arg_;
    }

    int record(const char* function, int result) {
        json_array_append_new(json_object_get(seen_.get(), "calls"),
                              json_pack("[si]", function, result));
        return result;
    }

    std::vector<std::string> list() {
        char** names = nullptr;
        std::vector<std::string> result;
        if (record("uci_list_configs", uci_list_configs(ctx_.get(), &names)) == UCI_OK) {
            for (char** name = names; *name; name++) {
                result.emplace_back(*name);
            }
            free(names);
            json_t* const texts = json_array();
            for (const std::string& name : result) {
                json_array_append_new(texts, to_json(name.c_str()));
            }
            json_object_set_new(seen_.get(), "configs", texts);
        }
        return result;
    }

    int act(std::string text) {
        uci_ptr ptr{};
        const int code =
            record("uci_lookup_ptr", uci_lookup_ptr(ctx_.get(), &ptr, text.data(), true));
        if (code != UCI_OK) {
            return code;
        }
        json_object_set_new(seen_.get(), "ptr", describe(ptr));
        if (op_ == "commit") {
            return commit_package(ptr);
        }
        if (op_ == "revert") {
            return record("uci_revert", uci_revert(ctx_.get(), &ptr));
        }
        look(ptr);
        return edit(ptr);
    }

    int commit_package(uci_ptr& ptr) {
        const char* name = nullptr;
        json_t* text = nullptr;
        json_object_foreach(json_object_get(step_, "between"), name, text) {
            write_file(sandbox_.config + "/" + name, bytes(text));
        }
        const int code = record("uci_commit", uci_commit(ctx_.get(), &ptr.p, false));
        if (code == UCI_OK && !arg_.empty()) {
            record("uci_unload", uci_unload(ctx_.get(), ptr.p));
        }
        return code;
    }

    void look(const uci_ptr& ptr) {
        if (op_ == "changes") {
            json_object_set_new(seen_.get(), "changes", describe_changes(*ptr.p));
        } else if (op_ == "load") {
            json_object_set_new(seen_.get(), "sections", describe_sections(*ptr.p));
        } else if (op_ == "get" && (ptr.flags & uci_ptr::UCI_LOOKUP_COMPLETE)) {
            if (ptr.o) {
                json_object_set_new(seen_.get(), "value", value_of(*ptr.o));
            } else if (ptr.s) {
                json_object_set_new(seen_.get(), "type", to_json(ptr.s->type));
            }
        }
    }

    int edit(uci_ptr& ptr) {
        static const struct {
            const char* op;
            const char* function;
            int (*act)(uci_context*, uci_ptr*);
        } kEdits[] = {{"set", "uci_set", uci_set},
                      {"add_list", "uci_add_list", uci_add_list},
                      {"del_list", "uci_del_list", uci_del_list},
                      {"delete", "uci_delete", uci_delete}};
        for (const auto& entry : kEdits) {
            if (op_ != entry.op) {
                continue;
            }
            const int code = record(entry.function, entry.act(ctx_.get(), &ptr));
            return code == UCI_OK ? record("uci_save", uci_save(ctx_.get(), ptr.p)) : code;
        }
        return UCI_OK;
    }

    const Sandbox& sandbox_;
    const json_t* step_;
    std::string op_;
    std::string arg_;
    JsonPtr seen_;
    ContextPtr ctx_;
};

class StoreVector : public testing::TestWithParam<std::string> {
protected:
    StoreVector() {
        json_error_t error{};
        const std::string path = std::string(UCI_VECTORS) + "/" + GetParam() + ".json";
        vector_.reset(json_load_file(path.c_str(), 0, &error));
        if (!vector_) {
            throw std::runtime_error(path + ": " + error.text);
        }
    }

    [[nodiscard]] const json_t* at(const char* key) const {
        return json_object_get(vector_.get(), key);
    }

    /// A path of the vector, below the sandbox.
    [[nodiscard]] std::string inside(const std::string& path) const { return sandbox_.root + path; }

    void prepare() {
        const char* name = nullptr;
        json_t* value = nullptr;
        if (json_is_true(at("no_confdir"))) {
            fs::remove(sandbox_.config);
        }
        json_object_foreach(const_cast<json_t*>(at("config")), name, value) {
            write_file(sandbox_.config + "/" + name, bytes(value));
        }
        if (json_is_true(at("savedir_is_file"))) {
            write_file(sandbox_.staged, "");
        } else if (json_is_object(at("delta"))) {
            fs::create_directory(sandbox_.staged);
        }
        json_object_foreach(const_cast<json_t*>(at("delta")), name, value) {
            write_file(sandbox_.staged + "/" + name, bytes(value));
        }
        prepare_special();
    }

    void prepare_special() {
        const char* name = nullptr;
        json_t* value = nullptr;
        size_t i = 0;
        json_array_foreach(at("config_dirs"), i, value) {
            fs::create_directory(sandbox_.config + "/" + bytes(value));
        }
        json_object_foreach(const_cast<json_t*>(at("other")), name, value) {
            fs::create_directories(fs::path(inside(name)).parent_path());
            write_file(inside(name), bytes(value));
        }
        json_object_foreach(const_cast<json_t*>(at("links")), name, value) {
            fs::create_symlink(inside(bytes(value)), sandbox_.config + "/" + name);
        }
        json_object_foreach(const_cast<json_t*>(at("config_modes")), name, value) {
            ASSERT_EQ(chmod((sandbox_.config + "/" + name).c_str(), octal(value)), 0);
        }
        if (at("confdir_mode")) {
            ASSERT_EQ(chmod(sandbox_.config.c_str(), octal(at("confdir_mode"))), 0);
        }
    }

    static void expect_files(const std::string& directory, const json_t* texts,
                             const json_t* modes) {
        std::map<std::string, std::string> wanted;
        const char* name = nullptr;
        json_t* value = nullptr;
        json_object_foreach(const_cast<json_t*>(texts), name, value) {
            wanted[name] = bytes(value);
        }
        EXPECT_EQ(files_of(directory), wanted);
        json_object_foreach(const_cast<json_t*>(modes), name, value) {
            EXPECT_EQ(octal(mode_of(directory + "/" + name)), bytes(value)) << name;
        }
    }

    void expect_final(const json_t* wanted) const {
        const char* name = nullptr;
        json_t* value = nullptr;
        expect_files(sandbox_.config, json_object_get(wanted, "config"),
                     json_object_get(wanted, "config_modes"));
        expect_files(sandbox_.staged, json_object_get(wanted, "delta"),
                     json_object_get(wanted, "delta_modes"));
        const json_t* const mode = json_object_get(wanted, "delta_dir");
        EXPECT_EQ(fs::is_directory(sandbox_.staged), json_is_string(mode));
        if (json_is_string(mode)) {
            EXPECT_EQ(octal(mode_of(sandbox_.staged)), bytes(mode));
        }
        json_object_foreach(json_object_get(wanted, "links"), name, value) {
            const fs::path link = sandbox_.config + "/" + name;
            ASSERT_TRUE(fs::is_symlink(link));
            EXPECT_EQ(fs::read_symlink(link).string(), inside(bytes(value)));
        }
        json_object_foreach(json_object_get(wanted, "other"), name, value) {
            EXPECT_EQ(read_file(inside(name)), bytes(value)) << name;
        }
    }

    Sandbox sandbox_;
    JsonPtr vector_;
};

TEST_P(StoreVector, leads_to_the_results_and_files_it_names) {
    ASSERT_NO_FATAL_FAILURE(prepare());
    size_t i = 0;
    json_t* step = nullptr;
    json_array_foreach(at("steps"), i, step) {
        const std::string what = dump(json_object_get(step, "op")) + " " +
                                 dump(json_object_get(step, "arg")).substr(0, 200);
        const JsonPtr seen = Step(sandbox_, step).run();
        const char* key = nullptr;
        json_t* wanted = nullptr;
        json_object_foreach(json_object_get(step, "expect"), key, wanted) {
            EXPECT_EQ(dump(json_object_get(seen.get(), key)), dump(wanted))
                << "step " << i << ", " << what << ", " << key;
        }
        for (const char* const optional : {"value", "type"}) {
            if (!json_object_get(json_object_get(step, "expect"), optional)) {
                EXPECT_EQ(json_object_get(seen.get(), optional), nullptr)
                    << "step " << i << ", " << what << ", " << optional;
            }
        }
    }
    expect_final(at("final"));
}

std::vector<std::string> vector_names() {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(UCI_VECTORS)) {
        if (entry.path().extension() == ".json") {
            names.push_back(entry.path().stem());
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

INSTANTIATE_TEST_SUITE_P(all, StoreVector, testing::ValuesIn(vector_names()),
                         [](const testing::TestParamInfo<std::string>& info) {
                             std::string name = info.param;
                             std::replace(name.begin(), name.end(), '-', '_');
                             return name;
                         });

} // namespace
