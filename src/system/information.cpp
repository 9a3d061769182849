// SPDX-License-Identifier: MIT
// What the device is: its firmware version, model, country, platform and base address.
#include "common/command.h"
#include "common/log.h"
#include "ops/operations.h"
#include "system/country.h"
#include "uci/option.h"

#include <cstdio>
#include <cstring>

using orlo::shown;

namespace {

// The steps below work in its name.
constexpr const char* get_system_information = "api_get_system_information";

char* copy_model() {
    orlo::OptionValue<16> model;
    if (!model.read("system", "@system[0].model")) {
        LOG_TRACE_FOR(get_system_information, "Get System Model Failed\n");
        return strdup("");
    }
    LOG_TRACE_FOR(get_system_information, "model: %s\n", model.c_str());
    return strdup(model.c_str());
}

char* copy_country() {
    const char* country = orlo::read_country_code();
    if (country == nullptr) {
        LOG_TRACE_FOR(get_system_information, "Get Country Code Failed\n");
        return strdup("");
    }
    LOG_TRACE_FOR(get_system_information, "country: %s\n", country);
    return strdup(country);
}

char* copy_platform() {
    constexpr const char* platform = "Marvell";
    LOG_TRACE_FOR(get_system_information, "platform:%s\n", platform);
    return strdup(platform);
}

// The shell is given a real line end to remove, not a backslash and an "n".
char* copy_base_mac() {
    orlo::CommandOutput output("fw_printenv ethaddr | cut -d'=' -f2 | tr -d '\n'");
    char mac[128] = {};
    if (output.started()) {
        output.read_line(mac, sizeof mac);
    }
    output.close();
    LOG_TRACE_FOR(get_system_information, "mac:[%s]\n", mac);
    return strdup(mac);
}

const struct {
    const char* name;
    char* (*copy)();
} properties[] = {
    {"model", copy_model},
    {"country", copy_country},
    {"platform", copy_platform},
    {"base-mac", copy_base_mac},
};

} // namespace

char* api_get_system_information(const char* property) {
    LOG_TRACE("Entering... property:%s\n", shown(property));
    for (const auto& row : properties) {
        if (property != nullptr && strcmp(property, row.name) == 0) {
            return row.copy();
        }
    }
    LOG_TRACE("End... unknown property: %s \n", shown(property));
    return strdup("");
}

char* api_get_fw_version(const char* type) {
    LOG_TRACE("Entering... type:%s\n", shown(type));
    if (type == nullptr || strcmp(type, "version") != 0) {
        LOG_TRACE("End... unknown type: %s \n", shown(type));
        return strdup("Unknown");
    }
    char version[128] = {};
    FILE* file = fopen("/etc/version", "r");
    if (file != nullptr) {
        static_cast<void>(!fgets(version, sizeof version, file));
        fclose(file);
    }
    orlo::cut_line_end(version);
    LOG_TRACE("%s: %s\n", type, version);
    return strdup(version);
}
