// SPDX-License-Identifier: MIT
#include "vap/basic.h"

#include "common/flag.h"
#include "orlo/records.h"
#include "uci/option.h"
#include "uci/staging.h"

namespace orlo {

namespace {

int stage_or_discard(const char* operation, const char* key, const char* value) {
    if (!stage("wireless", key, value)) {
        return LOG_AND_DISCARD_FOR(operation, "Set Value Failed : wireless.%s=%s!\n", key,
                                   shown(value));
    }
    return 0;
}

int stage_or_fail(const char* operation, const char* key, const char* value) {
    if (!stage("wireless", key, value)) {
        LOG_TRACE_FOR(operation, "Failed to set %s=%s\n", key, value);
        return -1;
    }
    return 0;
}

} // namespace

int set_vap_mode(uint32_t radio, uint32_t vap, const char* mode) {
    LOG_TRACE("radio:%d vap:%d mode:%s\n", radio, vap, shown(mode));
    if (!stage("wireless", Text<128>("wifi%dvap%d.mode", radio, vap), mode)) {
        discard_staged();
        LOG_TRACE("error: set AP mode failed\n");
        return -1;
    }
    return 0;
}

int set_vap_status(uint32_t radio, uint32_t vap, int32_t status) {
    LOG_TRACE("radio:%d vap:%d status:%d\n", radio, vap, status);
    if (!is_flag(status)) {
        return LOG_AND_DISCARD("Status is not correct :%d!\n", status);
    }
    return stage_or_discard(__func__, Text<128>("wifi%dvap%d.disabled", radio, vap),
                            inverted_flag_text(status));
}

int set_vap_ssid(uint32_t radio, uint32_t vap, const char* ssid) {
    LOG_TRACE("radio:%d vap:%d ssid:%s\n", radio, vap, shown(ssid));
    if (ssid == nullptr) {
        return LOG_AND_DISCARD("The ssid is NULL!\n");
    }
    return stage_or_discard(__func__, Text<128>("wifi%dvap%d.ssid", radio, vap), ssid);
}

int set_vap_bcast_ssid(uint32_t radio, uint32_t vap, int32_t bcast_ssid) {
    if (!is_flag(bcast_ssid)) {
        return LOG_AND_DISCARD("bcast_ssid is not correct :%d!\n", bcast_ssid);
    }
    LOG_TRACE("radio:%d vap%d bcast_ssid:%d\n", radio, vap, bcast_ssid);
    return stage_or_discard(__func__, Text<128>("wifi%dvap%d.hidden", radio, vap),
                            inverted_flag_text(bcast_ssid));
}

int set_vap_vlan(uint32_t radio, uint32_t vap, int32_t vlan_id) {
    LOG_TRACE("radio:%d vap:%d vlan_id:%d\n", radio, vap, vlan_id);
    if (vlan_id < 1 || vlan_id > 4094) {
        return LOG_AND_DISCARD("vlan_id is not correct :%d!\n", vlan_id);
    }
    const Text<128> key("wifi%dvap%d.vlan_id", radio, vap);
    LOG_TRACE("vlan_name:%s\n", key.c_str());
    return stage_or_discard(__func__, key, Text<16>("%d", vlan_id));
}

int set_vap_bssid(uint32_t radio, uint32_t vap) {
    LOG_TRACE("radio:%d vap:%d \n", radio, vap);
    const Text<128> assigned("wifi%dvap%d.vapmac", radio, vap);
    OptionValue<18> address;
    if (!address.read("wireless", assigned)) {
        LOG_TRACE("uci get wireless.%s Failed!\n", assigned.c_str());
        return -1;
    }
    LOG_TRACE("vap_mac=[%s] \n", address.c_str());
    return stage_or_discard(__func__, Text<128>("wifi%dvap%d.bssid", radio, vap), address.c_str());
}

int set_vap_inactivity_timer(uint32_t radio, uint32_t vap, int32_t inactivity_timer) {
    if (inactivity_timer == ORLO_NOT_GIVEN) {
        return 0;
    }
    if (inactivity_timer < 60 || inactivity_timer > 65535) {
        LOG_TRACE("wifi%dvap%d: inactivity_timer: out of range %d, should be 60 <= x <= 65535\n",
                  radio, vap, inactivity_timer);
        return -1;
    }
    LOG_TRACE("wifi%dvap%d: inactivity_timer: %d\n", radio, vap, inactivity_timer);
    return stage_or_fail(__func__, Text<128>("wifi%d.agingtime", radio),
                         Text<6>("%d", inactivity_timer));
}

int set_vap_deauth_dup_auth(uint32_t radio, uint32_t vap, int32_t deauth_dup_auth) {
    if (deauth_dup_auth == ORLO_NOT_GIVEN) {
        return 0;
    }
    if (!is_flag(deauth_dup_auth)) {
        LOG_TRACE("wifi%dvap%d: deauth-dup-auth: invalid value %d\n", radio, vap, deauth_dup_auth);
        return -1;
    }
    LOG_TRACE("wifi%dvap%d: status: %d\n", radio, vap, deauth_dup_auth);
    return stage_or_fail(__func__, Text<128>("wifi%dvap%d.dis_deauth", radio, vap),
                         inverted_flag_text(deauth_dup_auth));
}

int set_vap_assoc_advertisement(uint32_t radio, uint32_t vap, int32_t assoc_advertisement) {
    if (assoc_advertisement == ORLO_NOT_GIVEN) {
        return 0;
    }
    if (!is_flag(assoc_advertisement)) {
        LOG_TRACE("wifi%dvap%d: assoc-advertise: invalid value %d\n", radio, vap,
                  assoc_advertisement);
        return -1;
    }
    LOG_TRACE("wifi%dvap%d: status: %d\n", radio, vap, assoc_advertisement);
    return stage_or_fail(__func__, Text<128>("wifi%dvap%d.iapp_interface", radio, vap),
                         flag_text(assoc_advertisement));
}

int set_vap_dtim_period(uint32_t radio, uint32_t vap, int32_t dtim_period) {
    if (dtim_period == ORLO_NOT_GIVEN) {
        return 0;
    }
    if (dtim_period < 1 || dtim_period > 255) {
        LOG_TRACE("wifi%dvap%d: dtim-period: invalid range %d\n", radio, vap, dtim_period);
        return -1;
    }
    LOG_TRACE("wifi%dvap%d: dtim-period: %d\n", radio, vap, dtim_period);
    return stage_or_fail(__func__, Text<128>("wifi%dvap%d.dtim_period", radio, vap),
                         Text<6>("%d", dtim_period));
}

} // namespace orlo
