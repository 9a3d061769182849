// SPDX-License-Identifier: MIT
// Waiting until the VAPs that the configuration enables are up.
#include "common/identity.h"
#include "common/log.h"
#include "ops/operations.h"

#include <unistd.h>

namespace {

constexpr int retries = 4;
constexpr unsigned retry_seconds = 30;

// Which VAPs are expected to come up.
using VapMap = unsigned char[orlo::radio_count][orlo::vaps_per_radio];

// A mesh-link VAP that accepts no links has nothing to wait for.
bool is_configured(int radio, int vap) {
    if (is_radio_enabled(radio) != 1 || is_vap_enabled(radio, vap) != 1) {
        return false;
    }
    return is_vap_ml_mode(radio, vap) != 1 || is_vap_ml_acceptor_enabled(radio, vap) == 1;
}

// 1 when no VAP is configured, else 0.
int get_vap_status_configured(VapMap& map) {
    int none = 1;
    for (int radio = 0; radio < orlo::radio_count; radio++) {
        for (int vap = 0; vap < orlo::vaps_per_radio; vap++) {
            if (is_configured(radio, vap)) {
                LOG_TRACE("wifi%dvap%d: enabled\n", radio, vap);
                map[radio][vap] = 1;
                none = 0;
            } else {
                LOG_TRACE("wifi%dvap%d: disabled\n", radio, vap);
                map[radio][vap] = 0;
            }
        }
    }
    return none;
}

// 1 when every configured VAP is up, else 0.
int is_all_interface_established(const VapMap& map) {
    LOG_TRACE("Enter\n");
    for (int radio = 0; radio < orlo::radio_count; radio++) {
        for (int vap = 0; vap < orlo::vaps_per_radio; vap++) {
            if (map[radio][vap] == 1 && is_vap_up(radio, vap) != 1) {
                LOG_TRACE("wifi%dvap%d: vap is not established.\n", radio, vap);
                return 0;
            }
        }
    }
    return 1;
}

} // namespace

int api_is_vap_established_check() {
    LOG_TRACE("Entering...\n");
    VapMap map = {};
    if (get_vap_status_configured(map) == 1) {
        LOG_TRACE("info: currently all radios are disabled.\n");
        return 0;
    }
    for (int left = retries; is_all_interface_established(map) != 1; left--) {
        if (left == 0) {
            LOG_TRACE("Establish vap interfaces takes too long, maybe something go wrong?\n");
            return -1;
        }
        LOG_TRACE("all VAPs are not established yet, sleep %d for next round\n",
                  static_cast<int>(retry_seconds));
        sleep(retry_seconds);
    }
    LOG_TRACE("info: all vap interfaces are established.\n");
    return 0;
}
