// SPDX-License-Identifier: MIT
// What a report on a VAP's traffic says beside its counters: its SSID, and whether it is up.
#include "common/identity.h"
#include "common/log.h"
#include "common/text.h"
#include "ops/operations.h"
#include "uci/option.h"

#include <cstring>

using orlo::counted_from_one;
using orlo::OptionValue;
using orlo::Text;

char* api_get_vap_ssid(int radio, int vap) {
    LOG_TRACE("Entering... radio=%d vap=%d\n", counted_from_one(radio), vap);
    const Text<32> option("wifi%dvap%d.ssid", radio, vap);
    OptionValue<33> ssid;
    if (!ssid.read("wireless", option)) {
        LOG_TRACE("uci get wireless.%s Failed!\n", option.c_str());
        return nullptr;
    }
    LOG_TRACE("End... ssid=%s\n", ssid.c_str());
    return strdup(ssid.c_str());
}

int api_get_vap_status(int radio, int vap) {
    LOG_TRACE("Entering... radio=%d vap=%d\n", counted_from_one(radio), vap);
    const int status = is_vap_up(radio, vap) != 0 ? 1 : 0;
    LOG_TRACE("End... status=%d\n", status);
    return status;
}
