// SPDX-License-Identifier: MIT
// The tables of records: each member of each record is described, and lies where C has it.
#include <algorithm>
#include <cstring>
#include <gmock/gmock.h>

#include "description.h"
#include "exit.h"
#include "records/reader.h"
#include "records/registry.h"
#include "records/writer.h"

using namespace orloctl;
using testing::ElementsAre;

namespace {

struct Laid {
    const char* record;
    const char* member;
    size_t offset;
    size_t size; // of a record, which has no member
};

// Where the library's agents have every member.
const Laid layout[] = {
#define ORLO_RECORD(name, size, ...) {#name, "", 0, sizeof(name)},
#define ORLO_FIELD(name, field, ...) {#name, #field, offsetof(name, field), 0},
#include "../abi/layout.def"
#undef ORLO_RECORD
#undef ORLO_FIELD
};

const Record* described(const std::string& name) {
    for (const Record* record : all_records()) {
        if (name == record->name) {
            return record;
        }
    }
    return nullptr;
}

bool suits(const Form& form, Storage storage) {
    const bool is_integer = storage == Storage::int32 || storage == Storage::uint32;
    switch (form.type) {
    case Type::flag:
    case Type::choice:
        return storage == Storage::int32;
    case Type::number:
    case Type::mask:
        return is_integer;
    case Type::flags:
        return storage == Storage::numbers;
    case Type::text:
        return storage == Storage::text || storage == Storage::characters;
    case Type::texts:
        return storage == Storage::texts;
    case Type::record:
    case Type::array:
        return storage == Storage::record;
    case Type::some:
    case Type::optional:
        return storage == Storage::record || storage == Storage::pointer;
    case Type::keyed:
        return storage == Storage::pointer;
    case Type::references:
        return storage == Storage::pointers;
    case Type::list:
        return storage == Storage::list;
    case Type::addresses:
        return storage == Storage::addresses || storage == Storage::clients;
    }
    return false;
}

size_t size_of(const Field& field) {
    const Form& form = field.form;
    switch (field.storage) {
    case Storage::int32:
    case Storage::uint32:
        return sizeof(int32_t);
    case Storage::numbers:
        return sizeof(int32_t) * form.count;
    case Storage::texts:
    case Storage::pointers:
        return sizeof(void*) * form.count;
    case Storage::record:
        return form.record->size * form.count;
    case Storage::text:
    case Storage::pointer:
    case Storage::clients:
        return sizeof(void*);
    case Storage::list:
        return sizeof(AnyList);
    case Storage::addresses:
        return sizeof(mac_list);
    case Storage::characters:
        break;
    }
    return field.size; // any
}

// Distinguishable values for all members, those of a union as far as `selected` selects them.
class Sample {
public:
    Json object(const Record& record, const std::string& selected) {
        Json object = json_object_new();
        for (const Field& field : record.fields) {
            if (field.is(record.switched_by)) {
                set(object, field.name, json_bool(true));
            } else if (field.is(record.selector)) {
                set(object, field.name, json_text(selected));
            } else if (field.form.selected == nullptr || field.form.selected == selected) {
                set(object, field.name, value(field, selected));
            }
        }
        return object;
    }

private:
    Json value(const Field& field, const std::string& selected) {
        const Form& form = field.form;
        count_ += 8; // beyond the named bits of masks
        switch (form.type) {
        case Type::flag:
        case Type::number:
        case Type::choice:
        case Type::mask:
            return json_int(count_);
        case Type::flags:
            return numbers(form.count);
        case Type::text:
            return json_text(text(field, count_));
        case Type::texts:
            return json_texts({text(field, count_), text(field, count_ + 1)});
        case Type::record:
        case Type::optional:
            return object(*form.record, selected);
        case Type::array:
        case Type::some:
            return objects(form, form.count, selected);
        case Type::list:
            return objects(form, 2, selected);
        case Type::keyed:
        case Type::references: {
            const auto last = static_cast<json_int_t>(form.count - 1);
            Json array = objects(form, 2, selected);
            json_object_set_new(json_array_get(array.get(), 0), form.key, json_integer(1));
            json_object_set_new(json_array_get(array.get(), 1), form.key, json_integer(last));
            return array;
        }
        case Type::addresses:
            return json_texts({"a " + std::to_string(count_), "b " + std::to_string(count_)});
        }
        return nullptr;
    }

    // As long as an inline text can be.
    static std::string text(const Field& field, int number) {
        const std::string text = "text " + std::to_string(number);
        return field.storage == Storage::characters ? text.substr(0, field.size) : text;
    }

    Json numbers(size_t count) {
        Json array = json_array_new();
        for (size_t i = 0; i < count; i++) {
            append(array, json_int(count_++));
        }
        return array;
    }

    Json objects(const Form& form, size_t count, const std::string& selected) {
        Json array = json_array_new();
        for (size_t i = 0; i < count; i++) {
            append(array, object(*form.record, selected));
        }
        return array;
    }

    int count_ = 0;
};

class ReadRecord {
public:
    ReadRecord(const Record& record, json_t* json, bool checked = false)
        : memory_(arena_.take(record.size)) {
        Place place;
        place.checked = checked;
        read_record(json, record, memory_, place, arena_, problems);
    }

    const void* memory() const { return memory_; }

    Problems problems;

private:
    Arena arena_;
    void* memory_;
};

} // namespace

TEST(Records, every_member_of_a_described_record_is_described_or_unused) {
    for (const Laid& laid : layout) {
        const Record* record = described(laid.record);
        const std::string member = laid.member;
        if (record == nullptr) {
            continue;
        }
        const size_t dot = member.find('.');
        if (dot != std::string::npos) {
            const Field* outer = record->find(member.substr(0, dot));
            ASSERT_NE(outer, nullptr) << laid.record << " " << member;
            const Field* inner = outer->form.record->find(member.substr(dot + 1));
            ASSERT_NE(inner, nullptr) << laid.record << " " << member;
            EXPECT_EQ(outer->offset + inner->offset, laid.offset) << laid.record << " " << member;
            continue;
        }
        if (member.empty()) {
            EXPECT_EQ(record->size, laid.size) << laid.record;
        } else if (member.rfind("unused", 0) == 0) {
            EXPECT_EQ(record->find(member), nullptr) << laid.record << " " << member;
        } else {
            const Field* field = record->find(member);
            ASSERT_NE(field, nullptr) << laid.record << " " << member;
            EXPECT_EQ(field->offset, laid.offset) << laid.record << " " << member;
        }
    }
}

TEST(Records, the_librarys_records_for_radios_vaps_and_the_device_are_among_them) {
    for (const char* name : {"radio_settings",
                             "hw_specific_settings",
                             "vap_settings",
                             "wep",
                             "wpa_personal",
                             "wpa_enterprise",
                             "dot1x",
                             "radius_server",
                             "fast_roaming",
                             "fast_roaming_ft",
                             "mac_auth_radius_server",
                             "knownClient_setup",
                             "cp_settings",
                             "cp_auth_server",
                             "wds_settings",
                             "mesh_link_vap_settings",
                             "quilt_settings",
                             "quilt_vap",
                             "quilt_wpa_personal",
                             "quilt_wpa_enterprise",
                             "dst_rule",
                             "snmp_settings",
                             "snmp_trap_host"}) {
        EXPECT_NE(described(name), nullptr) << name;
        EXPECT_TRUE(std::any_of(std::begin(layout), std::end(layout), [&](const Laid& laid) {
            return laid.size != 0 && std::string(name) == laid.record;
        })) << name;
    }
}

TEST(Records, each_form_suits_the_member_and_fills_it) {
    for (const Record* record : all_records()) {
        for (const Field& field : record->fields) {
            EXPECT_TRUE(suits(field.form, field.storage)) << record->name << "." << field.name;
            EXPECT_LE(field.offset + field.size, record->size) << record->name << "." << field.name;
            EXPECT_EQ(field.size, size_of(field)) << record->name << "." << field.name;
            EXPECT_STRNE(field.meaning, "") << record->name << "." << field.name;
        }
    }
}

TEST(Records, no_two_members_share_their_place_but_those_of_a_union) {
    for (const Record* record : all_records()) {
        for (const Field& one : record->fields) {
            for (const Field& other : record->fields) {
                const bool apart = one.offset + one.size <= other.offset ||
                                   other.offset + other.size <= one.offset;
                const bool both_selected =
                    one.form.selected != nullptr && other.form.selected != nullptr;
                EXPECT_TRUE(&one == &other || apart || both_selected)
                    << record->name << "." << one.name << " and " << other.name;
            }
        }
    }
}

TEST(Records, roles_and_conditions_name_members_that_are_there) {
    for (const Record* record : all_records()) {
        for (const char* role : {record->switched_by, record->selector, record->radio_in}) {
            EXPECT_TRUE(role == nullptr || record->find(role) != nullptr) << record->name;
        }
        for (const Condition& condition : record->conditions) {
            const std::string member = condition.member;
            EXPECT_NE(record->find(member.substr(0, member.find('['))), nullptr) << member;
        }
    }
}

TEST(Records, what_is_read_is_written_again_for_every_member) {
    for (const Record* record : all_records()) {
        for (const char* selected :
             {"wep", "wpa-personal", "wpa-enterprise", "dynamic-wep", "none", "wpa"}) {
            const Json json = Sample().object(*record, selected);
            const ReadRecord read(*record, json.get());
            EXPECT_THAT(read.problems, ElementsAre()) << record->name;
            const Json again = write_record(*record, read.memory());
            EXPECT_TRUE(json_equal(json.get(), again.get()))
                << record->name << "\n"
                << json_document(json) << json_document(again);
        }
    }
}

TEST(Records, flags_masks_and_lists_are_written_in_their_readable_form) {
    const Json json(json_loads(R"({"wpa": ["WPA2", "WPA3"], "cipher_suites": ["CCMP"],
                                   "refresh_rate": 0, "key": "12345678"})",
                               0, nullptr));
    const ReadRecord read(wpa_personal_record, json.get(), true);
    EXPECT_THAT(read.problems, ElementsAre());
    EXPECT_EQ(static_cast<const wpa_personal*>(read.memory())->wpa, 6U);
    EXPECT_TRUE(json_equal(json.get(), write_record(wpa_personal_record, read.memory()).get()));
}

TEST(Records, an_inline_text_may_fill_its_array) {
    const std::string full(128, '6');
    Json json = json_object_new();
    set(json, "eligible_channels", json_text(full));
    const ReadRecord read(hw_specific_settings_record, json.get());
    const auto* settings = static_cast<const hw_specific_settings*>(read.memory());
    EXPECT_EQ(memcmp(settings->eligible_channels, full.data(), full.size()), 0);
    EXPECT_EQ(settings->channel_bandwidth, 0U);
    const Json again = write_record(hw_specific_settings_record, read.memory());
    EXPECT_EQ(json_string_value(json_object_get(again.get(), "eligible_channels")), full);

    set(json, "eligible_channels", json_text(full + "6"));
    EXPECT_THAT(ReadRecord(hw_specific_settings_record, json.get()).problems,
                ElementsAre("eligible_channels: a text of 129 bytes is longer than 128"));
}

TEST(Records, an_unknown_name_is_refused_with_the_known_ones) {
    try {
        find_record("vap");
        FAIL();
    } catch (const Refusal& refused) {
        EXPECT_THAT(refused.what(), testing::StartsWith("unknown record 'vap', known are "
                                                        "access_point, system, radio, profile, "));
    }
}
