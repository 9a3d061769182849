// SPDX-License-Identifier: MIT
// Links between access points: WDS and mesh.
#include "description.h"
#include "records/channels.h"
#include "records/registry.h"
#include "records/wpa.h"

namespace orloctl {

namespace {

using namespace forms;

using WdsWpa = decltype(wds_settings::wpa);

bool has_key(const WdsWpa& wpa, const Place& /*place*/) {
    return is_wpa_key(wpa.key);
}

bool can_have_mfp(const WdsWpa& wpa, const Place& /*place*/) {
    return wpa.mfp == 0 || wpa.version == ORLO_WPA2;
}

bool has_mesh_key(const mesh_link_vap_settings& vap, const Place& /*place*/) {
    return is_wpa_key(vap.key);
}

bool has_channels_and_width(const MeshLinkDescription& mesh, const Place& /*place*/) {
    return (mesh.eligible_channels == nullptr) == (mesh.bandwidth == not_described);
}

bool lists_channels(const MeshLinkDescription& mesh, const Place& /*place*/) {
    return mesh.eligible_channels == nullptr || is_channel_list(mesh.eligible_channels);
}

} // namespace

// clang-format off
const Record wds_settings_record = {
    "wds_settings", "a WDS link, on VAP 0 of a radio", sizeof(wds_settings), {
    {MEMBER_OF(wds_settings, radio_intf), text().words({"wlan0", "wlan1"}).required(),
     "which radio: \"wlan0\" is radio 0, \"wlan1\" radio 1"},
    {MEMBER_OF(wds_settings, security), text().words({"wpa", "none"}).required(), "of the link"},
    {MEMBER_OF(wds_settings, wds_mode), text().words({"parent", "child"}).required(),
     "\"parent\": the other one connects to it, \"child\": it connects to the other one"},
    {MEMBER_OF(wds_settings, ssid), text().not_empty().bytes(32).required(), "name of the link"},
    {MEMBER_OF(wds_settings, wpa), record(wds_wpa_record).selected_by("wpa"), "its WPA"},
}, {}, nullptr, "security"};

const Record wds_wpa_record = {
    "wds_wpa", "WPA of a WDS link", sizeof(WdsWpa), {
    {MEMBER_OF(WdsWpa, key), text().required(), "passphrase"},
    {MEMBER_OF(WdsWpa, version),
     wpa_versions().one_of({ORLO_WPA2, ORLO_WPA1 | ORLO_WPA2}).required(), "versions on offer"},
    {MEMBER_OF(WdsWpa, cipher),
     wpa_ciphers().one_of({ORLO_CIPHER_CCMP, ORLO_CIPHER_TKIP | ORLO_CIPHER_CCMP}),
     "pairwise ciphers on offer"},
    {MEMBER_OF(WdsWpa, mfp), flag(), "requires protected management frames"},
    {MEMBER_OF(WdsWpa, bcast_key_refresh_rate), wpa_rekeying(), "from one group key to the next"},
}, {
    condition<&has_key>("key", wpa_key_rule),
    condition<&can_have_mfp>("mfp", "is possible with WPA2 alone"),
}};

const Record mesh_link_record = {
    "mesh_link", "mesh links of a radio", sizeof(MeshLinkDescription), {
    {MEMBER_OF(MeshLinkDescription, eligible_channels), text().joined_by(" "),
     "channels that the mesh may use; a radio on another one moves to the first"},
    {MEMBER_OF(MeshLinkDescription, bandwidth),
     number().one_of({20, 40, 80}).in_unit("MHz").or_not_given(not_described), "width of the channel"},
    {MEMBER_OF(MeshLinkDescription, vap), optional(mesh_link_vap_settings_record),
     "the VAP that carries the links"},
}, {
    condition<&has_channels_and_width>("bandwidth", "goes with \"eligible_channels\", one needs the other"),
    condition<&lists_channels>("eligible_channels", channel_list_rule),
}};

const Record mesh_link_vap_settings_record = {
    "mesh_link_vap_settings", "the VAP that carries mesh links, always WPA2 with CCMP",
    sizeof(mesh_link_vap_settings), {
    {MEMBER_OF(mesh_link_vap_settings, acceptor), flag().required(),
     "other access points may connect to it"},
    {MEMBER_OF(mesh_link_vap_settings, connector), flag().required(), "it connects to another one"},
    {MEMBER_OF(mesh_link_vap_settings, vap), number().in(0, 1).required(),
     "which one; the mesh switches those from 2 on off"},
    {MEMBER_OF(mesh_link_vap_settings, ssid), text().not_empty().bytes(32).required(),
     "name of the mesh"},
    {MEMBER_OF(mesh_link_vap_settings, key), text().required(), "its passphrase"},
}, {
    condition<&has_mesh_key>("key", wpa_key_rule),
}};
// clang-format on

} // namespace orloctl
