// SPDX-License-Identifier: MIT
#include "device/calls.h"

#include "exit.h"
#include "json.h"
#include "operations.h"
#include "orlo/exports.h"
#include "require.h"

#include <cstdlib>
#include <cstring>
#include <memory>

namespace fuzz {

namespace {

const std::string& word(const Call& words, size_t position) {
    static const std::string none;
    return position < words.size() ? words[position] : none;
}

int index(const Call& words, size_t position, int end) {
    return static_cast<int>(strtoul(word(words, position).c_str(), nullptr, 10) %
                            static_cast<unsigned>(end));
}

void list_stations_of_driver(const Call& words) {
    constexpr size_t most = 341;
    const std::unique_ptr<char[]> out(new char[most * sizeof(mwl_assoc_entry)]());
    int length = -1;
    if (mwl_get_assoclist(word(words, 1).c_str(), out.get(), &length) == 0) {
        REQUIRE(length >= 0 && static_cast<size_t>(length) <= most * sizeof(mwl_assoc_entry));
        REQUIRE(static_cast<size_t>(length) % sizeof(mwl_assoc_entry) == 0);
    }
}

void channel_of_driver(const Call& words) {
    uint32_t channel = 0;
    static_cast<void>(mwl_get_channel(word(words, 1).c_str(), &channel));
}

void bssid_of_driver(const Call& words) {
    const std::unique_ptr<unsigned char[]> bssid(new unsigned char[6]);
    static_cast<void>(mwl_get_bssid(word(words, 1).c_str(), bssid.get()));
}

void probe(const Call& words) {
    static_cast<void>(mwl_probe(word(words, 1).c_str()));
    static_cast<void>(wext_probe(word(words, 1).c_str()));
}

void list_clients(const Call& /*words*/) {
    static_cast<void>(prepare_assoc_client_list());
    write_assoc_client_to_file("/tmp/clients");
    write_assoc_client_detail_to_file("/tmp/clients.detail");
    static_cast<void>(sent_assoc_client_to_orloagent());
}

void count_clients(const Call& /*words*/) {
    ORLOClientInfoList* block = get_all_associated_clients_info();
    while (block != nullptr) {
        ORLOClientInfoList* const next = block->next;
        free(block);
        block = next;
    }
}

// What is added to the object is fit for being written.
void scan(int (*add)(json_t* object, const Call& words), const Call& words) {
    const orloctl::Json object(json_object());
    static_cast<void>(add(object.get(), words));
    char* const text = json_dumps(object.get(), 0);
    REQUIRE(text != nullptr);
    free(text);
}

void scan_detected(const Call& words) {
    scan([](json_t* object, const Call&) { return get_cqscan_detected_clients(object); }, words);
}

void scan_associated(const Call& words) {
    scan(
        [](json_t* object, const Call& vap) {
            return get_cqscan_assoc_clients(index(vap, 1, 2), index(vap, 2, 16), object);
        },
        words);
}

void report_states(const Call& words) {
    const int radio = index(words, 1, 2);
    const int vap = index(words, 2, 16);
    static_cast<void>(is_radio_enabled(radio));
    static_cast<void>(is_vap_enabled(radio, vap));
    static_cast<void>(is_vap_up(radio, vap));
    static_cast<void>(is_vap_ml_mode(radio, vap));
    static_cast<void>(is_vap_ml_acceptor_enabled(radio, vap));
    static_cast<void>(uci_is_vap_quilt(radio, vap));
    static_cast<void>(uci_is_vap_area_auth(radio, vap));
}

const struct {
    const char* name;
    void (*call)(const Call& words);
} exported[] = {
    {"mwl_get_assoclist", list_stations_of_driver},
    {"mwl_get_channel", channel_of_driver},
    {"mwl_get_bssid", bssid_of_driver},
    {"mwl_probe", probe},
    {"prepare_assoc_client_list", list_clients},
    {"get_all_associated_clients_info", count_clients},
    {"get_cqscan_detected_clients", scan_detected},
    {"get_cqscan_assoc_clients", scan_associated},
    {"states", report_states},
};

} // namespace

bool make_call(const Call& words) {
    for (const auto& function : exported) {
        if (word(words, 0) == function.name) {
            function.call(words);
            return true;
        }
    }
    for (const orloctl::Operation& operation : orloctl::operations()) {
        if (word(words, 0) != operation.name) {
            continue;
        }
        try {
            std::vector<orloctl::Argument> arguments =
                orloctl::read_arguments(operation, {words.begin() + 1, words.end()}, false);
            static_cast<void>(operation.call(Vendor_Ops, arguments));
        } catch (const orloctl::Refusal&) {
            return false;
        }
        return true;
    }
    return false;
}

} // namespace fuzz
