// SPDX-License-Identifier: MIT
// The basic settings of a VAP, one option each. 0 when staged (or nothing to do), -1 otherwise.
#pragma once

#include <cstdint>

namespace orlo {

// A failure of these has discarded everything staged.
int set_vap_mode(uint32_t radio, uint32_t vap, const char* mode);
int set_vap_status(uint32_t radio, uint32_t vap, int32_t status);
int set_vap_ssid(uint32_t radio, uint32_t vap, const char* ssid);
int set_vap_bcast_ssid(uint32_t radio, uint32_t vap, int32_t bcast_ssid);
int set_vap_vlan(uint32_t radio, uint32_t vap, int32_t vlan_id);

// Gives the VAP the address that the system has assigned to it. A failed read discards nothing.
int set_vap_bssid(uint32_t radio, uint32_t vap);

// These are optional (-1 is not given), and a failure leaves discarding to the caller.
int set_vap_inactivity_timer(uint32_t radio, uint32_t vap, int32_t inactivity_timer);
int set_vap_deauth_dup_auth(uint32_t radio, uint32_t vap, int32_t deauth_dup_auth);
int set_vap_assoc_advertisement(uint32_t radio, uint32_t vap, int32_t assoc_advertisement);
int set_vap_dtim_period(uint32_t radio, uint32_t vap, int32_t dtim_period);

} // namespace orlo
