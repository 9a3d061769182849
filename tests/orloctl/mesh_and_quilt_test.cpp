// SPDX-License-Identifier: MIT
// The mesh and the quilt as the program shows them, with the real library.
#include "on_the_access_point.h"

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

TEST_F(OnTheAccessPoint, a_branch_of_a_mesh_is_connected_once_its_example_is_applied) {
    const Ended ended = there("orloctl apply /usr/share/examples/mesh-branch.json --json "
                              ">/tmp/applied; echo \"status $?\"; orloctl mesh; "
                              "orloctl mesh statistics; uci get wireless.wifi1.htmode");
    EXPECT_EQ(ended.out,
              "status 0\n"
              "declares mesh links  no\n"
              "declares acceptor    no\n"
              "role                 branch\n"
              "path from the root   04:0c:43:20:20:00 > 04:0c:43:20:10:00 > 04:0c:43:20:00:00\n"
              "parent               04:0c:43:20:10:00\n"
              "score of the parent  47\n"
              "children             04:0c:43:20:30:20, 04:0c:43:20:40:20\n"
              "link  MAC                radio  VAP  rx bytes/s  tx bytes/s  speed\n"
              "down  04:0c:43:20:30:20  1      1    0           0           780 Mbit/s\n"
              "down  04:0c:43:20:40:20  1      1    0           0           585 Mbit/s\n"
              "up    -                  1      1    0           0           866 Mbit/s\n"
              "HT80\n")
        << ended.err;
    EXPECT_EQ(ended.err, "");
}

TEST_F(OnTheAccessPoint, the_root_of_a_mesh_has_no_parent) {
    const Ended ended = there("orloctl apply /usr/share/examples/mesh-root.json >/tmp/applied; "
                              "echo Y >/sys/kernel/debug/sta/mesh_is_portal_ap; "
                              "echo 04:0c:43:20:00:00 >/var/run/device/mesh-path; orloctl mesh; "
                              "uci get wireless.wifi1vap1.connector");
    EXPECT_THAT(ended.out, HasSubstr("role                 root\n"
                                     "path from the root   04:0c:43:20:00:00\n"
                                     "parent               none\n"));
    EXPECT_THAT(ended.out, testing::EndsWith("\n0\n"));
    EXPECT_EQ(ended.err, "");
}

TEST_F(OnTheAccessPoint, without_a_mesh_the_librarys_reason_is_shown) {
    const Ended ended = there("orloctl mesh");
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.out, "");
    EXPECT_EQ(ended.err, "orloctl: create_ml_status_report has nothing to report\n"
                         "orloctl:   NVX-ML is disabled\n");
}

TEST_F(OnTheAccessPoint, a_quilt_applies_and_its_vaps_are_up) {
    const Ended ended = there("orloctl apply -; echo \"status $?\"; orloctl quilt; orloctl status; "
                              "uci show quilt; uci show wireless.wifi1vap2",
                              R"({"quilt": {"mgmt_vlan": 7, "secret": "it's shared", "cqscan": 1,
        "quilt_radio": [
            {"radio": 1, "vap": 2, "bssid": "02:00:00:00:00:02", "ssid": "Quilt", "vlan_id": 8,
             "mac_filter_mode": 2,
             "mac_auth_server": [{"index": 1, "ip": "192.0.2.1", "key": "mac"}],
             "wireless_security": "wpa-enterprise",
             "wpa_enterprise": {"wpa": ["WPA2"], "radius_server": [{"ip": "192.0.2.2",
                                                                    "key": "r"}]},
             "fast_roaming": {"status": true, "aes_key": "k",
                              "ft": {"status": true, "ft_over_ds": true, "mobility_domain": "m",
                                     "r0_key_lifetime": 1, "reassoc_deadline": 1000},
                              "key_holder_list": ["02:00:00:00:01:00"]}},
            {"radio": 1, "vap": 3, "bssid": "02:00:00:00:00:03", "ssid": "Open", "vlan_id": 9,
             "cp": {"auth_mode": "click-through"}}]}})");
    EXPECT_THAT(ended.out, StartsWith("api_apply_channel_quilt ... ok\n"
                                      "api_save_config ... ok\n"
                                      "status 0\n"))
        << ended.err;
    EXPECT_THAT(ended.out, HasSubstr("has VAPs             yes\n"
                                     "scan is on           yes\n"));
    EXPECT_THAT(ended.out, HasSubstr("1      2    up     8     WPA2 ent  no      Quilt\n"
                                     "1      3    up     9     open      no      Open\n"));
    EXPECT_THAT(ended.out, HasSubstr("quilt.config_quilt.vlan_id='7'\n"));
    EXPECT_THAT(ended.out, HasSubstr("quilt.config_quilt.rekey='3600'\n")) << "not given";
    for (const char* option : {"mode='quilt'", "bssid='02:00:00:00:00:02'",
                               "auth_server='192.0.2.2'", "key_holder_list='02:00:00:00:01:00'"}) {
        EXPECT_THAT(ended.out, HasSubstr(std::string("wireless.wifi1vap2.") + option + "\n"));
    }
    EXPECT_THAT(ended.err, Not(HasSubstr("Sanitizer")));
}

TEST_F(OnTheAccessPoint, the_agents_status_of_the_quilt_is_shown_and_not_kept) {
    const std::string quilt = "mkdir -p /etc/qxw; touch /etc/qxw/cq_version; uci set "
                              "wireless.wifi1vap0.mode=quilt; uci commit; ";
    const Ended ended = there(quilt + "orloctl quilt; ls -d /tmp/orloctl-*");
    EXPECT_EQ(ended.out, R"(supported            yes
has VAPs             yes
scan is on           no
responder installed  no

the agent's status: {
  "quilt": {
    "members": [],
    "channel": 36
  }
}
)") << ended.err;
    const Ended other =
        there(quilt + "printf 'no\\nJSON' >/var/run/device/cqstatus; orloctl quilt; "
                      "orloctl quilt --json");
    EXPECT_THAT(other.out, HasSubstr("the agent's status: no?JSON\n"));
    EXPECT_THAT(other.out, HasSubstr(R"("status": "no\nJSON")"));
    EXPECT_THAT(there("orloctl quilt --json").out, HasSubstr("\"status\": null"));
}

TEST_F(OnTheAccessPoint, the_stations_that_the_quilt_hears_are_listed) {
    const Ended ended = there("touch /etc/qxw/cq_version; orloctl quilt scan");
    const std::string time = " 20[0-9]+-[0-9]+-[0-9]+ [0-9]+:[0-9]+:[0-9]+\n";
    EXPECT_THAT(ended.out,
                testing::MatchesRegex("MAC                signal   channel  detected\n"
                                      "a4:5e:60:01:02:03  -41 dBm  36      " +
                                      time + "3c:22:fb:10:20:30  -73 dBm  36      " + time))
        << ended.err;
}
