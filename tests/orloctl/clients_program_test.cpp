// SPDX-License-Identifier: MIT
// orloctl clients with a detail file. What it does with the library needs an access point.
#include <algorithm>

#include "detail_file.h"
#include "program.h"

using testing::HasSubstr;
using testing::StartsWith;

TEST_F(Orloctl, clients_are_shown_from_a_file_also_where_there_is_no_access_point) {
    const TemporaryFile file(laptop().bytes() + stranger().bytes());
    const Ended ended = bare({"clients", "--file", file.path()});
    EXPECT_EQ(ended.status, 0) << ended.err;
    EXPECT_EQ(ended.out,
              "radio  VAP  MAC                IPv4          dBm  Mbit/s   VLAN     SSID\n"
              "1      2    a4:5e:60:01:02:03  192.168.1.20  -52  866      4094     Office\n"
              "0      0    00:11:22:33:44:55  unknown       5    unknown  unknown\n");
    EXPECT_EQ(ended.err, "");
}

TEST_F(Orloctl, clients_as_json_hold_all_that_a_record_tells) {
    const TemporaryFile file(laptop().bytes() + stranger().bytes());
    EXPECT_EQ(bare({"clients", "--json", "--file", file.path()}).out, R"([
  {
    "radio": 1,
    "vap": 2,
    "bssid": "02:00:00:00:01:02",
    "channel": 149,
    "ssid": "Office",
    "mac": "a4:5e:60:01:02:03",
    "ipv4": "192.168.1.20",
    "signal_dbm": -52,
    "rate_mbps": 866,
    "vlan_id": 4094,
    "area_auth": true
  },
  {
    "radio": 0,
    "vap": 0,
    "bssid": "00:00:00:00:00:00",
    "channel": null,
    "ssid": "",
    "mac": "00:11:22:33:44:55",
    "ipv4": null,
    "signal_dbm": 5,
    "rate_mbps": null,
    "vlan_id": null,
    "area_auth": false
  }
]
)");
}

TEST_F(Orloctl, an_ssid_shows_without_control_characters) {
    const TemporaryFile file(DetailRecord().put(25, "two\nlines\033[2J\xFF").bytes());
    EXPECT_THAT(bare({"clients", "--file", file.path()}).out, HasSubstr("  two?lines?[2J\xFF\n"));
    EXPECT_THAT(bare({"clients", "--file", file.path(), "--json"}).out,
                HasSubstr(R"("ssid": "two\nlines\u001B[2J)"));
}

TEST_F(Orloctl, no_clients_are_told_as_such) {
    const TemporaryFile file("");
    EXPECT_EQ(bare({"clients", "--file", file.path()}).out, "no station is associated\n");
    EXPECT_EQ(bare({"clients", "--file", file.path(), "--json"}).out, "[]\n");
}

TEST_F(Orloctl, a_file_that_is_no_detail_file_is_refused) {
    const TemporaryFile cut(laptop().bytes().substr(1) + laptop().bytes());
    const Ended ended = bare({"clients", "--file", cut.path()});
    EXPECT_EQ(ended.status, 2);
    EXPECT_EQ(ended.out, "");
    EXPECT_EQ(ended.err, "orloctl: " + cut.path() +
                             " is no detail file: its 267 bytes are no multiple of 134, the size "
                             "of a station's record\n");
    EXPECT_EQ(bare({"clients", "--file", "/nowhere"}).err,
              "orloctl: cannot read /nowhere: No such file or directory\n");
    EXPECT_EQ(bare({"clients", "--file", "/tmp"}).err,
              "orloctl: cannot read /tmp: Is a directory\n");
    EXPECT_EQ(bare({"clients", "--file", "/dev/zero"}).err,
              "orloctl: /dev/zero is larger than a detail file can be (16 MB)\n");
}

TEST_F(Orloctl, a_full_access_point_has_all_its_clients_shown) {
    std::string bytes;
    for (int station = 0; station < 32 * 341; station++) {
        bytes += laptop().bytes();
    }
    const TemporaryFile file(bytes);
    const std::string shown = bare({"clients", "--file", file.path()}).out;
    EXPECT_EQ(std::count(shown.begin(), shown.end(), '\n'), 1 + 32 * 341);
}

TEST_F(Orloctl, clients_come_from_standard_input_once) {
    const Ended ended = run_program({{ORLOCTL, "clients", "--file", "-"}, laptop().bytes(), {}});
    EXPECT_THAT(ended.out, HasSubstr("Office"));
    EXPECT_EQ(bare({"clients", "--file", "-", "--watch"}).err,
              "orloctl: standard input can be read once: no --watch with --file -\n");
}

TEST_F(Orloctl, a_watched_file_of_clients_is_read_each_time) {
    const TemporaryFile file(stranger().bytes());
    const std::string& name = file.path();
    const std::string watch =
        std::string("'") + ORLOCTL + "' clients --watch --every 0 --file " + name + " --json";
    // the second line is asked for when the file has changed
    const Ended ended = run_program({{"/bin/sh", "-c",
                                      watch + " | { read -r first; echo \"$first\"; : >" + name +
                                          "; while read -r line && [ \"$line\" != '[]' ]; do :; "
                                          "done; echo \"$line\"; }"},
                                     "",
                                     {}});
    EXPECT_THAT(ended.out, StartsWith("[{\"radio\":0,"));
    EXPECT_THAT(ended.out, testing::EndsWith("}]\n[]\n"));
}
