// SPDX-License-Identifier: MIT
// A double of the vendor library: every operation writes its name and arguments to the file that
// DOUBLE_JOURNAL names, fills in what it is given to fill in, and succeeds. The operation that
// DOUBLE_FAILS names logs a reason and fails (-1, NULL; of "NAME=NUMBER" that number). A JSON value
// is that of the text DOUBLE_JSON, where it is set.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <jansson.h>
#include <string>

#include "orlo/debug.h"
#include "orlo/vendor_ops.h"

#define DOUBLE_API extern "C" __attribute__((visibility("default")))

namespace {

void journal(const std::string& line) {
    const char* path = getenv("DOUBLE_JOURNAL");
    FILE* file = path == nullptr ? nullptr : fopen(path, "ae");
    if (file != nullptr) {
        fprintf(file, "%s\n", line.c_str());
        fclose(file);
    }
}

// The number with which an operation fails; 0 when it does not.
int failure(const char* name) {
    const char* named = getenv("DOUBLE_FAILS");
    const size_t length = strlen(name);
    if (named == nullptr || strncmp(named, name, length) != 0) {
        return 0;
    }
    return named[length] == '=' ? atoi(named + length + 1) : named[length] == '\0' ? -1 : 0;
}

std::string named_stations() {
    const char* path = getenv("DOUBLE_STATIONS");
    return path == nullptr ? "" : path;
}

std::string written(int value) {
    return std::to_string(value);
}

std::string written(float value) {
    return std::to_string(value);
}

std::string written(const char* value) {
    return value == nullptr ? "NULL" : "'" + std::string(value) + "'";
}

std::string written(const void* value) {
    return value == nullptr ? "NULL" : "pointer";
}

std::string written(char* value) {
    memset(value, 'x', 127); // as much as any operation writes
    value[127] = '\0';
    return "buffer";
}

std::string written(float* value) {
    value[11] = 20.5F;
    value[10] = 19.25F;
    return "numbers";
}

std::string written(uint16_t* value) {
    *value = 60;
    return "word";
}

std::string written(const radio_settings* value) {
    return value == nullptr ? "NULL" : "{" + written(value->interface_name) + "}";
}

std::string written(hw_specific_settings* value) {
    return value == nullptr ? "NULL" : "{" + written(value->mode) + "}";
}

// As the library does: 802.11 counters stay as they are.
std::string written(radio_statistics* value) {
    for (uint64_t radio = 0; radio < ORLO_RADIOS; radio++) {
        value[radio].rx_packets = 10 + radio;
        value[radio].rx_bytes = 20 + radio;
        value[radio].tx_packets = 30 + radio;
        value[radio].tx_bytes = 40 + radio;
        value[radio].tx_errors = 50 + radio;
        value[radio].rx_errors = 60 + radio;
    }
    return "statistics";
}

std::string written(vap_statistics* value) {
    for (uint64_t i = 0; i < uint64_t{ORLO_RADIOS} * ORLO_VAPS_PER_RADIO; i++) {
        value[i] = {100 + i, 200 + i, 300 + i, 400 + i, 500 + i, 600 + i};
    }
    value[1].rx_bytes = UINT64_MAX;
    return "statistics";
}

// Takes the list of key holders, as the library does.
std::string taken(mac_list& list) {
    std::string addresses;
    while (list.head != nullptr) {
        mac_list_node* node = list.head;
        list.head = node->next;
        addresses += std::string(" ") + node->mac;
        free(node);
    }
    list.tail = nullptr;
    return addresses;
}

std::string written(vap_settings* value) {
    std::string vaps;
    for (int vap = 0; value != nullptr && vap < ORLO_VAPS_PER_RADIO; vap++) {
        if (value[vap].status == 0) {
            continue;
        }
        vaps += " " + std::to_string(vap) + "=" + written(value[vap].ssid) +
                taken(value[vap].fast_roaming.key_holder_list);
    }
    return value == nullptr ? "NULL" : "{" + vaps + " }";
}

// The VAPs at the places of their entries.
std::string written(quilt_settings* value) {
    std::string vaps;
    for (int i = 0; value != nullptr && i < ORLO_VAPS; i++) {
        quilt_vap& vap = value->quilt_radio[i];
        if (vap.enable != 0) {
            vaps += " " + std::to_string(i) + "=" + std::to_string(vap.radio) + "." +
                    std::to_string(vap.vap) + " '" + vap.ssid + "'" +
                    taken(vap.fast_roaming.key_holder_list);
        }
    }
    return value == nullptr ? "NULL" : "{'" + std::string(value->secret) + "'" + vaps + " }";
}

// The list of stations is the file that DOUBLE_STATIONS names.
void write_stations() {
    std::ifstream stations(named_stations(), std::ios::binary);
    if (stations.is_open()) {
        std::ofstream("/tmp/assoc_client_detail", std::ios::binary) << stations.rdbuf();
    }
}

std::string written(const dst_rule* value) {
    return value == nullptr ? "NULL"
                            : "{" + written(value->ordinal) + " " + written(value->weekday) + " " +
                                  written(value->month) + " " + written(value->hour) + ":" +
                                  written(value->minute) + "}";
}

std::string written(const snmp_settings* value) {
    return value == nullptr
               ? "NULL"
               : "{" + written(value->status) + " v" + written(value->version) + " radios " +
                     written(value->radio_status[0]) + " " + written(value->radio_status[1]) + "}";
}

std::string written(const mac_auth_radius_server* value) {
    return value == nullptr
               ? "NULL"
               : "{" + written(static_cast<int>(value->index)) + " " + written(value->ip) + "}";
}

std::string written(const knownClient_setup* value) {
    std::string clients = value == nullptr ? "" : written(value->action);
    const known_client_node* node = value == nullptr ? nullptr : value->mac_list;
    for (; node != nullptr; node = node->next) {
        clients += std::string(" ") + node->mac;
    }
    return value == nullptr ? "NULL" : "{" + clients + "}";
}

std::string written(const cp_settings* value) {
    std::string garden;
    for (size_t i = 0; value != nullptr && i < 50 && value->walled_garden[i] != nullptr; i++) {
        garden += std::string(" ") + value->walled_garden[i];
    }
    return value == nullptr
               ? "NULL"
               : "{" + written(value->enable) + " " + written(value->auth_mode) + garden + "}";
}

std::string written(const wds_settings* value) {
    std::string links;
    for (size_t i = 0; value != nullptr && i < 2; i++) {
        links +=
            (i == 0 ? "" : " ") + written(value[i].radio_intf) + " " + written(value[i].wds_mode);
    }
    return value == nullptr ? "NULL" : "{" + links + "}";
}

std::string written(const mesh_link_vap_settings* value) {
    return value == nullptr
               ? "NULL"
               : "{" + written(value->vap) + " " + written(value->ssid) + " acceptor " +
                     written(value->acceptor) + " connector " + written(value->connector) + "}";
}

template <class R>
R answer(const char* name) {
    const bool failed = failure(name) != 0;
    if (!failed && strcmp(name, "api_generate_assoc_client_file") == 0) {
        write_stations();
    }
    if (failed) {
        orlo_agent_debug_log(5, 5, name, 1, "Entering...\n");
        orlo_agent_debug_log(5, 5, name, 2, "info: looking at it\n");
        orlo_agent_debug_log(5, 5, name, 3, "error: %s does not like it.\n", name);
    }
    if constexpr (std::is_same_v<R, char*>) {
        return failed ? nullptr : strdup("a text");
    } else if constexpr (std::is_same_v<R, json_t*>) {
        const char* text = getenv("DOUBLE_JSON");
        return failed ? nullptr
               : text != nullptr
                   ? json_loads(text, JSON_DECODE_ANY, nullptr)
                   : json_pack("{s:i, s:[s]}", "hops", 2, "peers", "02:00:00:00:00:01");
    } else if constexpr (std::is_same_v<R, float>) {
        return 20.1F;
    } else if constexpr (std::is_same_v<R, int64_t>) {
        return int64_t{1} << 40;
    } else if constexpr (std::is_same_v<R, int>) {
        printf("%s prints this\n", name); // as device tools do
        fflush(stdout);
        return failure(name);
    }
}

template <class Name, class Signature>
struct Double;

template <class Name, class R, class... A>
struct Double<Name, R (*)(A...)> {
    static R call(A... arguments) {
        std::string line = Name::text;
        ((line += " " + written(arguments)), ...);
        journal(line);
        return answer<R>(Name::text);
    }
};

#define ORLO_OP(slot, result, name, parameters, meaning, summary)                                  \
    struct Name_##name {                                                                           \
        static constexpr const char* text = #name;                                                 \
    };
#include "orlo/operations.def"

} // namespace

DOUBLE_API const vendor_ops Vendor_Ops = {
#define ORLO_OP(slot, result, name, parameters, meaning, summary)                                  \
    &Double<Name_##name, decltype(vendor_ops::name)>::call,
#include "orlo/operations.def"
};

DOUBLE_API int uciRevertValue(const char* package, const char* key) {
    journal("uciRevertValue " + written(package) + " " + written(key));
    return 0;
}

// Only radio 0 has readable options.
DOUBLE_API int uciGetValue(const char* package, const char* key, char* out, size_t size) {
    const struct {
        const char* key;
        const char* value;
    } options[] = {
        {"wifi0vap0.ssid", "two\nlines"},
        {"wifi0vap0.vlan_id", "20"},
        {"wifi0vap0.security", "wpa-ent"},
        {"wifi0vap0.wpaversion", "mixed"},
        {"wifi0vap1.security", "wpa-psk"},
        {"wifi0vap1.wpaversion", "wpa2mixed"},
        {"wifi0vap0.hidden", "0"},
        {"wifi0vap1.hidden", "1"},
        {"wifi0vap1.vlan_id", "4094"},
        {"wifi0vap1.ssid", "Caf\xC3\xA9 1234567890 1234567890 1234"},
        {"wifi0vap2.security", "none"},
        {"wifi0vap3.security", "wep"},
        {"wifi0vap4.security", "something"},
    };
    if (strstr(key, "vap") == nullptr) {
        snprintf(out, size, "%s", package);
        return strncmp(key, "wifi0", 5) == 0 ? 0 : -1;
    }
    for (const auto& option : options) {
        if (strcmp(option.key, key) == 0) {
            snprintf(out, size, "%s", option.value);
            return 0;
        }
    }
    return -1;
}

DOUBLE_API const char* get_uci_ifname(int radio, int vap) {
    static char name[32];
    snprintf(name, sizeof name, "wifi%dvap%d", radio, vap);
    return name;
}

// The first two VAPs of radio 0, of which the second is down.
DOUBLE_API int is_vap_enabled(int radio, int vap) {
    return radio == 0 && vap < 2 ? 1 : 0;
}

DOUBLE_API int is_vap_up(int radio, int vap) {
    return radio == 0 && vap == 0 ? 1 : 0;
}

DOUBLE_API int is_radio_enabled(int radio) {
    return radio == 0 ? 1 : 0;
}

DOUBLE_API const char* const config_disabled_option[2] = {"wifi0.disabled", "wifi1.disabled"};
DOUBLE_API const char* const config_force_disable_option[2] = {"wifi0.forceDisable",
                                                               "wifi1.forceDisable"};
