// Links between access points.
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
// clang-format on

} // namespace orloctl
