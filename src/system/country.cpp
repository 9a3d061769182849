// SPDX-License-Identifier: MIT
// The regulatory country, and whether the user may change it.
#include "system/country.h"

#include "common/command.h"
#include "common/pending_services.h"
#include "ops/operations.h"
#include "uci/staging.h"

#include <cstdio>
#include <strings.h>

using orlo::shown;
using orlo::stage;

namespace {

constexpr size_t country_code_size = 10;

// As last applied or read. A code that is read may fill all of its bytes; the last one ends it.
char country_code[country_code_size + 1];

int country_configurable = 0;

} // namespace

namespace orlo {

const char* read_country_code() {
    const bool is_read =
        uciGetValue("system", "country.countrycode", country_code, country_code_size) == 0;
    return is_read ? country_code : nullptr;
}

} // namespace orlo

int api_apply_country_code(const char* country) {
    LOG_TRACE("Entering... country:%s \n", shown(country));
    if (!stage("system", "country.countrycode", country)) {
        LOG_TRACE("Set countrycode Failed\n");
        return -1;
    }
    snprintf(country_code, country_code_size, "%s", country);
    orlo::mark_changed(orlo::service_network);
    LOG_TRACE("End...\n");
    return 0;
}

// Without such a variable the last answer stays.
int api_get_country_configurable() {
    LOG_TRACE("Entering... \n");
    orlo::CommandOutput output(
        "/usr/sbin/fw_printenv | grep user_config_country_code | cut -d'=' -f2");
    if (!output.started()) {
        LOG_TRACE("Error opening pipe!\n");
        return -1;
    }
    char line[128] = {};
    if (output.read_line(line, sizeof line)) {
        orlo::cut_line_end(line);
        country_configurable = strncasecmp(line, "yes", 3) == 0 ? 1 : 0;
    }
    output.close();
    LOG_TRACE("End... return: %d\n", country_configurable);
    return country_configurable;
}

int api_set_country_configurable(int allowed) {
    LOG_TRACE("Entering... allowed=%d\n", allowed);
    country_configurable = allowed;
    orlo::run_unchecked(allowed != 0 ? "/usr/sbin/fw_setenv user_config_country_code yes"
                                     : "/usr/sbin/fw_setenv user_config_country_code no");
    LOG_TRACE("End...");
    return 0;
}
