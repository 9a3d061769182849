// A double of the vendor library: every operation writes its name and arguments to the file that
// DOUBLE_JOURNAL names, fills in what it is given to fill in, and succeeds. The operation that
// DOUBLE_FAILS names logs a reason and fails (-1, NULL).
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
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

bool fails(const char* name) {
    const char* named = getenv("DOUBLE_FAILS");
    return named != nullptr && strcmp(named, name) == 0;
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

template <class R>
R answer(const char* name) {
    const bool failed = fails(name);
    if (failed) {
        orlo_agent_debug_log(5, 5, name, 1, "Entering...\n");
        orlo_agent_debug_log(5, 5, name, 2, "info: looking at it\n");
        orlo_agent_debug_log(5, 5, name, 3, "error: %s does not like it.\n", name);
    }
    if constexpr (std::is_same_v<R, char*>) {
        return failed ? nullptr : strdup("a text");
    } else if constexpr (std::is_same_v<R, json_t*>) {
        return failed ? nullptr
                      : json_pack("{s:i, s:[s]}", "hops", 2, "peers", "02:00:00:00:00:01");
    } else if constexpr (std::is_same_v<R, float>) {
        return 20.1F;
    } else if constexpr (std::is_same_v<R, int64_t>) {
        return int64_t{1} << 40;
    } else if constexpr (std::is_same_v<R, int>) {
        printf("%s prints this\n", name); // as device tools do
        fflush(stdout);
        return failed ? -1 : 0;
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
    snprintf(out, size, "%s", package);
    return strncmp(key, "wifi0", 5) == 0 ? 0 : -1;
}

DOUBLE_API int is_radio_enabled(int radio) {
    return radio == 0 ? 1 : 0;
}

DOUBLE_API const char* const config_disabled_option[2] = {"wifi0.disabled", "wifi1.disabled"};
DOUBLE_API const char* const config_force_disable_option[2] = {"wifi0.forceDisable",
                                                               "wifi1.forceDisable"};
