// SPDX-License-Identifier: MIT
// The records of a radio: general settings, settings of its hardware.
#include <cstring>

#include "records/channels.h"
#include "records/registry.h"

namespace orloctl {

namespace {

using namespace forms;

bool lists_channels(const hw_specific_settings& settings, const Place& /*place*/) {
    const char* const channels = settings.eligible_channels;
    return is_channel_list({channels, strnlen(channels, sizeof settings.eligible_channels)});
}

} // namespace

// clang-format off
const Record radio_settings_record = {
    "radio_settings", "general settings of a radio", sizeof(radio_settings), {
    {MEMBER_OF(radio_settings, interface_name),
     by_radio(text().words({"wlan0"}).or_else("wlan0"), text().words({"wlan1"}).or_else("wlan1")).required(),
     "which radio: \"wlan0\" is radio 0, \"wlan1\" radio 1; a description of the radio knows it"},
    {MEMBER_OF(radio_settings, station_isolation), flag().or_not_given(),
     "stations of the radio cannot reach each other"},
    {MEMBER_OF(radio_settings, rts_threshold), number().in(0, 2347).in_unit("bytes").or_not_given(),
     "frames from this length on are sent with RTS"},
    {MEMBER_OF(radio_settings, max_stations), number().in(0, 320).or_not_given(),
     "how many stations may associate"},
    {MEMBER_OF(radio_settings, fixed_multicast_rate), text(),
     "rate of multicast frames; \"auto\" and \"fast\" change nothing"},
    {MEMBER_OF(radio_settings, apsd), flag().or_not_given(), "automatic power save delivery"},
    {MEMBER_OF(radio_settings, wmm), flag().or_not_given(), "Wi-Fi multimedia"},
    {MEMBER_OF(radio_settings, no_ack), flag().or_not_given(), "not configurable: changes nothing"},
    {MEMBER_OF(radio_settings, atf), flag().or_not_given(), "air-time fairness"},
    {MEMBER_OF(radio_settings, rfscan_status), flag().or_not_given(), "background scan"},
    {MEMBER_OF(radio_settings, ofdma), flag().or_not_given(), "OFDMA"},
    {MEMBER_OF(radio_settings, mumimo), flag().or_not_given(), "multi-user MIMO"},
    {MEMBER_OF(radio_settings, zw_dfs), flag().or_not_given(), "zero-wait DFS"},
}};

const Record hw_specific_settings_record = {
    "hw_specific_settings", "settings of a radio's hardware", sizeof(hw_specific_settings), {
    {MEMBER_OF(hw_specific_settings, mode),
     by_radio(text().words({"bg-n-ax", "bg"}), text().words({"a-n-ac-ax", "a"})).required(),
     "generations of 802.11 that the radio serves"},
    {MEMBER_OF(hw_specific_settings, eligible_channels),
     text().joined_by(" ").required(),
     "channels that may be used; a radio on another one moves to the first"},
    {MEMBER_OF(hw_specific_settings, channel_bandwidth),
     number().one_of({20, 40, 80, 8080}).in_unit("MHz").required(),
     "width of the channel; 8080 is 80+80"},
    {MEMBER_OF(hw_specific_settings, Enable_eligible_channels), number(), "not served"},
    {MEMBER_OF(hw_specific_settings, primary_channel), text(), "not served"},
    {MEMBER_OF(hw_specific_settings, supported_rate), text().joined_by(","),
     "legacy rates in Mbit/s; empty: leave them alone"},
    {MEMBER_OF(hw_specific_settings, basic_rate), text().joined_by(","), "not served"},
    {MEMBER_OF(hw_specific_settings, mcs_index), text().joined_by(","), "not served"},
}, {
    condition<&lists_channels>("eligible_channels", channel_list_rule),
}};
// clang-format on

} // namespace orloctl
