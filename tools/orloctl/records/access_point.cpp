// SPDX-License-Identifier: MIT
// The description of an access point: what orloctl adds to the records of the library.
#include "description.h"
#include "records/registry.h"

namespace orloctl {

namespace {

using namespace forms;

constexpr size_t longest_hash = 127; // what the library keeps of one

Form described_number() {
    return number().or_not_given(not_described);
}

int radio_of(const wds_settings& link) {
    return is(link.radio_intf, "wlan0") ? 0 : is(link.radio_intf, "wlan1") ? 1 : -1;
}

bool has_a_radio_for_each_link(const AccessPointDescription& access_point, const Place& /*place*/) {
    const wds_settings* links = access_point.wds;
    return links == nullptr || links[1].radio_intf == nullptr ||
           radio_of(links[0]) != radio_of(links[1]);
}

// The quilt sets its VAPs up anew.
bool has_quilt_vaps_apart(const AccessPointDescription& access_point, const Place& /*place*/) {
    const quilt_settings* quilt = access_point.quilt;
    for (size_t i = 0; quilt != nullptr && i < ORLO_VAPS; i++) {
        const quilt_vap& entry = quilt->quilt_radio[i];
        for (const RadioDescription& radio : access_point.radios) {
            const bool is_of_radio = entry.enable == 1 && radio.radio == entry.radio;
            if (is_of_radio && radio.vaps != nullptr && radio.vaps[entry.vap].status != 0) {
                return false;
            }
        }
    }
    return true;
}

// A link takes VAP 0 as it is, and disables the other ones.
bool has_room_for_links(const AccessPointDescription& access_point, const Place& /*place*/) {
    for (size_t i = 0; access_point.wds != nullptr && i < wds_links; i++) {
        for (const RadioDescription& radio : access_point.radios) {
            const bool carries_link = radio.radio == radio_of(access_point.wds[i]);
            if (carries_link && radio.mesh != nullptr && radio.mesh->vap != nullptr) {
                return false;
            }
            for (int vap = 0; carries_link && radio.vaps != nullptr && vap < ORLO_VAPS_PER_RADIO;
                 vap++) {
                if (radio.vaps[vap].status != (vap == 0 ? 1 : 0)) {
                    return false;
                }
            }
        }
    }
    return true;
}

// The mesh sets its own VAP up, and switches those from 2 on off.
bool has_room_for_mesh(const RadioDescription& radio, const Place& /*place*/) {
    if (radio.mesh == nullptr || radio.mesh->vap == nullptr || radio.vaps == nullptr) {
        return true;
    }
    for (int vap = 0; vap < ORLO_VAPS_PER_RADIO; vap++) {
        if (radio.vaps[vap].status != 0 && (vap >= 2 || vap == radio.mesh->vap->vap)) {
            return false;
        }
    }
    return true;
}

} // namespace

// clang-format off
const Record access_point_record = {
    "access_point", "an access point", sizeof(AccessPointDescription), {
    {MEMBER_OF(AccessPointDescription, system), record(system_record), "the device as a whole"},
    {MEMBER_OF(AccessPointDescription, radios), list(radio_record, "radio"),
     "applied in the order of the list"},
    {MEMBER_OF(AccessPointDescription, quilt), optional(quilt_settings_record),
     "the channel quilt, whose VAPs are not listed with the radios"},
    {MEMBER_OF(AccessPointDescription, wds), some(wds_settings_record, wds_links),
     "all its WDS links; none in the list: there are none"},
    {MEMBER_OF(AccessPointDescription, known_clients), optional(knownClient_setup_record),
     "stations that are let in, or kept out, by their address"},
    {MEMBER_OF(AccessPointDescription, portal_address), text(),
     "address of captive portals on the LAN; empty: none"},
    {MEMBER_OF(AccessPointDescription, profile), record(profile_record), "what the agent keeps of it"},
}, {
    condition<&has_quilt_vaps_apart>("quilt", "a VAP of it is enabled with its radio as well"),
    condition<&has_a_radio_for_each_link>("wds[1].radio_intf", "is the radio of wds[0] as well"),
    condition<&has_room_for_links>("wds", "the radio of a link has VAP 0 enabled, and no other"),
}};

const Record radio_record = {
    "radio", "one radio", sizeof(RadioDescription), {
    {MEMBER_OF(RadioDescription, radio), number().in(0, 1).required().or_else(-1),
     "0: 2.4 GHz, 1: 5 GHz"},
    {MEMBER_OF(RadioDescription, enabled), flag().or_not_given(not_described),
     "switches the radio on or off"},
    {MEMBER_AS("override", RadioDescription, override_status),
     text().words({"not-override", "force-disable"}),
     "\"force-disable\" keeps the radio off whatever \"enabled\" says"},
    {MEMBER_OF(RadioDescription, channel),
     by_radio(described_number().one_of({0}).in(1, 13), described_number().one_of({0}).in(36, 165)),
     "0: the channel in use, or the first eligible one where that is not eligible"},
    {MEMBER_OF(RadioDescription, second_channel),
     by_radio(described_number().one_of({-1, 0}), described_number().one_of({-1, 0}).in(36, 165)),
     "of two-segment operation; -1: off, 0: chosen from the eligible channels"},
    {MEMBER_OF(RadioDescription, power_percent), described_number().in(0, 100),
     "transmit power; 0: leave it alone"},
    {MEMBER_OF(RadioDescription, settings), optional(radio_settings_record), "general settings"},
    {MEMBER_OF(RadioDescription, hardware), optional(hw_specific_settings_record),
     "settings of its hardware"},
    {MEMBER_OF(RadioDescription, vaps), keyed(vap_settings_record, ORLO_VAPS_PER_RADIO, "vap"),
     "its VAPs; one that is not listed gets disabled"},
    {MEMBER_OF(RadioDescription, mesh), optional(mesh_link_record),
     "links to other access points; of \"vaps\" they leave 0 and 1, and take one of these"},
    {MEMBER_OF(RadioDescription, access), list(vap_access_record, "vap"),
     "who may use its VAPs; of one that is not listed nothing changes"},
}, {
    condition<&has_room_for_mesh>("vaps", "enables a VAP that the mesh takes or switches off"),
}, nullptr, nullptr, "radio"};

const Record profile_record = {
    "profile", "what the agent keeps of a description", sizeof(ProfileDescription), {
    {MEMBER_OF(ProfileDescription, id), described_number().in(0, INT_MAX),
     "profile id, kept by the process that sets it"},
    {MEMBER_OF(ProfileDescription, profile_hash), text().bytes(longest_hash),
     "fingerprint of the profile"},
    {MEMBER_OF(ProfileDescription, config_hash), text().bytes(longest_hash),
     "fingerprint of the configuration"},
}};
// clang-format on

} // namespace orloctl
