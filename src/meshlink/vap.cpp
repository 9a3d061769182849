// SPDX-License-Identifier: MIT
#include "meshlink/vap.h"

#include "common/identity.h"
#include "meshlink/log.h"

namespace orlo {

const char* get_ml_vap_uci_interface_name(int* radio, int* vap) {
    MESH_ENTER();
    for (int r = 0; r < radio_count; r++) {
        if (is_radio_enabled(r) == 0) {
            continue;
        }
        for (int v = 0; v < vaps_per_radio; v++) {
            if (is_vap_enabled(r, v) == 0 || is_vap_ml_mode(r, v) == 0) {
                continue;
            }
            if (radio != nullptr) {
                *radio = r;
            }
            if (vap != nullptr) {
                *vap = v;
            }
            return get_uci_ifname(r, v);
        }
    }
    return nullptr;
}

bool is_ml_enable() {
    MESH_ENTER();
    return get_ml_vap_uci_interface_name(nullptr, nullptr) != nullptr;
}

const char* hostapd_interface(int radio, int vap) {
    // clang-format off
    const char* const names[radio_count][vaps_per_radio] = {
        {"ath0", "ath01", "ath02", "ath03", "ath04", "ath05", "ath06", "ath07",
         "", "", "", "", "", "", "", ""},
        {"ath1", "ath11", "ath12", "ath13", "ath14", "ath15", "ath16", "ath17",
         "", "", "", "", "", "", "", ""},
    };
    // clang-format on
    return is_vap(radio, vap) ? names[radio][vap] : "";
}

} // namespace orlo
