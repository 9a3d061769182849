// SPDX-License-Identifier: MIT
// The channel quilt and mesh links.
#include "faults/cases.h"

namespace orlo::test {

namespace {

const char* const quilt = R"({
    "mgmt_vlan": 4096, "secret": "shared", "rekey_timeout": 60, "station_isolation": 1,
    "beacon_rssi_threshold": 91, "cqscan": 1, "cq_proxy_arp": 0,
    "quilt_radio": [{
        "radio": 1, "vap": 2, "bssid": "02:00:00:00:00:0f", "ssid": "Quilt", "vlan_id": 7,
        "mac_filter_mode": 3,
        "mac_auth_server": [{"index": 1, "ip": "192.0.2.1", "key": "k"},
                            {"index": 2, "ip": "192.0.2.2", "key": "l"}],
        "mfp": true, "inactivity_timer": 60, "dtim_period": 3, "proxy_arp": 1,
        "wireless_security": "wpa-personal",
        "wpa_personal": {"wpa": ["WPA2"], "key": "correct horse battery"},
        "cp": {"auth_mode": "click-through"}}]})";

const char* const quilt_device = R"(
    touch /etc/qxw/cq_version
    uci set wireless.wifi1vap2.mode=quilt
    uci set quilt.config_quilt.cqscan=1
    uci commit wireless
    uci commit quilt)";

const char* const mesh_device = R"(
    uci set wireless.wifi1vap1.mode=qx_mesh
    uci set wireless.wifi1vap1.disabled=0
    uci commit wireless
    sed -i 's/^mesh0 down/mesh0 up/' /var/run/device/interfaces)";

} // namespace

std::vector<Case> quilt_and_mesh_cases() {
    // clang-format off
    return {
        {116, "api_is_quilt_capable", {}, "1", "get=same look=0 memory=same", quilt_device},
        {117, "api_is_any_vap_quilt", {}, "1", "get=same get:wifi1vap2.mode=0", quilt_device},
        {118, "api_is_cqscan_enabled", {}, "1", "get=0+", quilt_device},
        {119, "api_get_CQ_status", {"1", "/tmp/cq_status"}, "0",
            "get=same get:wifi1vap2.mode=-1 run=-1+ exit=-1+ kill=-1+ read=-1+ empty=-1+ "
            "endless=same", quilt_device},
        {120, "api_apply_channel_quilt", {quilt}, "0",
            "set=-1! set:cqscan=-1 set:arp_filter=-1 set:mac_auth=-1!+"},
        {121, "api_is_responser_present", {}, "1", "look=0", "mkdir -p /etc/init.d; : >/etc/init.d/responser"},
        {122, "api_get_cqscan", {}, "*", "get=* look=null read=*+ empty=* endless=*+ socket=~ ioctl=~ memory=* json=~", quilt_device},
        {123, "create_ml_status_report", {}, "*", "get=~ read=~ empty=~ endless=~ json=~ read:path_to_root=null+ empty:path_to_root=null+ "
            "read:list_sta=*+ read:print_mesh=null+ empty:print_mesh=null+", mesh_device},
        {124, "create_ml_statistics_report", {}, "*",
            "get=~ read=~ empty=~ endless=~ json=~ memory=null+ read:ifconfig=null+ "
            "empty:ifconfig=null+ read:all_sta=null+ empty:all_sta=* read:/proc/net/dev=null+ "
            "empty:/proc/net/dev=* read:assoclist=*+ empty:assoclist=*", mesh_device, {"create_ml_statistics_report"}},
        {125, "api_apply_mesh_link_radio", {"1", "80", "44 48"}, "0",
            "set=-1! commit=same run=same exit=same kill=same socket=same ioctl=same"},
        {126, "api_apply_mesh_link_vap",
            {"1", R"({"vap": 1, "acceptor": true, "connector": false, "ssid": "Mesh",
                      "key": "from tree to tree"})"}, "0", "set=-1!"},
        {127, "api_apply_mesh_link_initial_vap", {"1", "1", "0"}, "0", ""},
        {128, "api_is_mesh_link_acceptor_capable", {}, "0", ""},
        {129, "api_is_mesh_link_capable", {}, "0", ""},
    };
    // clang-format on
}

} // namespace orlo::test
