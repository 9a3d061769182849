// SPDX-License-Identifier: MIT
// Radios: profile, channels, power, settings, information; saving.
#include "faults/cases.h"

namespace orlo::test {

std::vector<Case> radio_cases() {
    // clang-format off
    return {
        {20, "api_apply_wireless_interface", {"1", "not-override", "44", "149", "50"}, "0",
            "set=-1! get=same commit=same run=same exit=same kill=same read=same empty=same "
            "endless=same"},
        {24, "api_config_set_hash", {"abc"}, "0", "set=-1"},
        {25, "api_save_config", {}, "0",
            "look:apply_settings=-1 look:chvlan=same look:restarting=same commit=-1 get=same "
            "run:chvlan=same run:apply_settings=-1 exit=same kill=same open=same socket=same "
            "ioctl=same",
            "uci set wireless.wifi1.channel=36; uci commit wireless",
            {"api_mark_config_apply_flag"}},
        {26, "api_config_get_hash", {}, "\"0\"", "get=\"0\" memory=null"},
        {27, "api_profile_set_hash", {"abc"}, "0", "set=-1"},
        {28, "api_profile_get_hash", {}, "\"0\"", "get=\"0\" memory=null"},
        {29, "api_set_profile_id", {"7"}, "0", ""},
        {30, "api_get_profile_id", {}, "-1", ""},
        {31, "api_get_interface", {"ip"}, "\"192.168.1.20\"", "read=command empty=command endless=~ memory=null"},

        {70, "api_apply_radio_status", {"0", "0"}, "0", "set=-1!"},
        {71, "api_apply_radio",
            {R"({"interface_name": "wlan1", "station_isolation": true, "rts_threshold": 2000,
                 "max_stations": 100, "fixed_multicast_rate": "6", "apsd": true, "wmm": true,
                 "atf": true, "rfscan_status": true, "ofdma": true, "mumimo": true,
                 "zw_dfs": true})"},
            "0", "set=-1! set:ap_isolation=-2!"},
        {72, "api_apply_hw_specific",
            {"1", R"({"mode": "a-n-ac-ax", "eligible_channels": [44, 48, 149, 153],
                      "channel_bandwidth": 80, "supported_rate": [6, 9, 12],
                      "basic_rate": [6]})"},
            "0", "set=-1! commit=same run=same exit=same kill=same socket=same ioctl=same"},

        {76, "api_get_radio_modulation", {"0"}, "\"OFDM\"", "memory=null"},
        {77, "api_get_PowerPercent", {"0", "20.5"}, "0", "read=-1. empty=-1 endless=same"},
        {78, "api_get_MaxPowerInfo", {"0", "20", "ax"}, "20.5", "get=0.0 read=0.0 empty=0.0 endless=~"},
        {79, "api_set_Power", {"0", "50"}, "0",
            "get=same read=same empty=same endless=same set=-1! commit=same run=same exit=same kill=same"},
        {80, "api_set_Channel", {"1", "44"}, "0", "set=-1! commit=same run=same exit=same kill=same"},
        {81, "api_set_secondChannel", {"1", "149"}, "0",
            "set=-1! commit=same run=same exit=same kill=same"},

        {94, "api_get_radio_type", {"1"}, "\"a/n/ac/ax\"", "get=null memory=null"},
        {95, "api_get_channel", {"0"}, "6", "socket=-1. ioctl=-1."},
        {96, "api_get_2ndchannel", {"1"}, "149", "read:BW2=-1 empty:BW2=-1 endless:BW2=0 "
            "read:Channel2=0 empty:Channel2=0 endless:Channel2=7777777",
            "iwpriv wdev1 setcmd 'radiomode 1 149'"},
        {97, "api_get_bandwidth", {"1"}, "80", "get=-1"},
        {98, "api_get_transmitpower", {"1"}, "100", "get=-1"},
        {99, "api_get_wlanutil", {"0"}, "0", ""},
        {100, "api_get_radar_info", {"1"}, "\"/tmp/radarinfo-wifi1\"",
            "run=null exit=null kill=null remove=same open=null memory=null",
            "echo 'range 36:5180:6 52:5260:6' >/var/run/device/driver/wdev1; "
            "echo 52,1,1800 >/var/run/device/radio1/closed-channels"},
        {101, "api_get_radio_status", {"0"}, "\"up\"", "get=\"none\" memory=null"},
        {102, "api_get_force_disable_status", {"0"}, "0", "get=-1",
            "uci set orloagent.wifi0.forceDisable=on"},
    };
    // clang-format on
}

} // namespace orlo::test
