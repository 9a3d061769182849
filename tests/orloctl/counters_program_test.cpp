// SPDX-License-Identifier: MIT
// orloctl counters, and watching, with a double of the vendor library.
#include <algorithm>

#include "program.h"

using testing::HasSubstr;
using testing::StartsWith;

namespace {

const std::string totals =
    "               rx bytes              rx packets     rx errors  tx bytes       tx packets     "
    "tx errors\n"
    "wired ports    1099511627776         1099511627776  -          1099511627776  1099511627776  "
    "-\n"
    "radio 0        20                    10             60         40             30             "
    "50\n"
    "radio 1        21                    11             61         41             31             "
    "51\n"
    "radio 0 VAP 0  100                   200            500        300            400            "
    "600\n"
    "radio 0 VAP 1  18446744073709551615  201            501        301            401            "
    "601\n";

} // namespace

class OrloctlCounters : public Orloctl {
protected:
    // A shell script in which $orloctl is the program with the double.
    static Ended shell(const std::string& script) {
        const std::string program = std::string("orloctl='") + ORLOCTL + "' double='" +
                                    DOUBLE_VENDOR +
                                    "'; orloctl() { \"$orloctl\" --here --library \"$double\" "
                                    "\"$@\"; }; ";
        return run_program({{"/bin/sh", "-c", program + script}, "", {}});
    }
};

TEST_F(OrloctlCounters, shows_ports_radios_and_enabled_vaps) {
    const Ended ended = orloctl({"counters"});
    EXPECT_EQ(ended.status, 0);
    EXPECT_EQ(ended.out, totals);
    EXPECT_EQ(journal(), "api_get_eth_bytes_rx\n"
                         "api_get_eth_packet_rx\n"
                         "api_get_eth_bytes_tx\n"
                         "api_get_eth_packet_tx\n"
                         "api_get_radio_statistics statistics\n"
                         "api_get_vap_statistics statistics\n");
}

TEST_F(OrloctlCounters, shows_all_vaps_on_request) {
    const std::string all = orloctl({"counters", "--all"}).out;
    EXPECT_EQ(std::count(all.begin(), all.end(), '\n'), 1 + 1 + 2 + 32);
    EXPECT_THAT(all, HasSubstr("\nradio 1 VAP 15  131 "));
}

TEST_F(OrloctlCounters, as_json_are_exact_up_to_the_largest_integer) {
    const Json object = parsed(orloctl({"counters", "--json"}).out);
    const json_t* ports = json_object_get(object.get(), "ports");
    EXPECT_EQ(json_integer_value(json_object_get(ports, "rx_bytes")), int64_t{1} << 40);
    EXPECT_TRUE(json_is_null(json_object_get(ports, "rx_errors")));
    EXPECT_EQ(json_object_get(ports, "per_second"), nullptr);
    const json_t* radios = json_object_get(object.get(), "radios");
    ASSERT_EQ(json_array_size(radios), 2U);
    const json_t* radio = json_array_get(radios, 1);
    EXPECT_EQ(json_integer_value(json_object_get(radio, "radio")), 1);
    EXPECT_EQ(json_integer_value(json_object_get(radio, "tx_packets")), 31);
    EXPECT_EQ(json_object_get(radio, "vap"), nullptr);
    const json_t* vaps = json_object_get(object.get(), "vaps");
    ASSERT_EQ(json_array_size(vaps), 2U);
    const json_t* vap = json_array_get(vaps, 1);
    EXPECT_EQ(json_integer_value(json_object_get(vap, "vap")), 1);
    EXPECT_EQ(json_integer_value(json_object_get(vap, "tx_errors")), 601);
    EXPECT_EQ(json_number_value(json_object_get(vap, "rx_bytes")), 18446744073709551616.0);
}

TEST_F(OrloctlCounters, are_watched_until_the_reader_goes_away) {
    const Ended ended = shell("{ orloctl counters --watch --every 0; echo \"status $?\" >&2; } "
                              "| head -n 27");
    const std::string rates_unknown = "\nper second     rx bytes  rx packets";
    EXPECT_THAT(ended.out, StartsWith(totals + rates_unknown));
    EXPECT_THAT(ended.out, HasSubstr("\nradio 1        -         -           -"));
    EXPECT_THAT(ended.out, HasSubstr("\n\n" + totals + rates_unknown));
    EXPECT_THAT(ended.out, HasSubstr("\nwired ports    0.0       0.0         -          0.0"))
        << "from the second time on there are rates";
    EXPECT_THAT(ended.err, HasSubstr("status 0\n"));
}

TEST_F(OrloctlCounters, watched_as_json_are_a_line_each_time) {
    const Ended ended = shell("orloctl counters --watch --every 0 --json | head -n 3");
    std::istringstream lines(ended.out);
    int count = 0;
    for (std::string line; std::getline(lines, line); count++) {
        const Json object = parsed(line);
        ASSERT_NE(object, nullptr) << line;
        const json_t* radio = json_array_get(json_object_get(object.get(), "radios"), 0);
        const json_t* rates = json_object_get(radio, "per_second");
        EXPECT_EQ(json_object_size(rates), 6U);
        const json_t* rate = json_object_get(rates, "rx_bytes");
        EXPECT_TRUE(count == 0 ? json_is_null(rate) : json_number_value(rate) == 0.0) << line;
    }
    EXPECT_EQ(count, 3);
}

TEST_F(OrloctlCounters, watching_ends_well_when_it_is_interrupted) {
    for (const std::string signal : {"INT", "TERM"}) {
        const Ended ended =
            shell("out=$(mktemp); \"$orloctl\" --here --library \"$double\" counters --watch "
                  "--every 3600 >\"$out\" & tries=0; until grep -q second \"$out\" || [ $((tries "
                  "+= 1)) -gt 5000 ]; do :; done; kill -" +
                  signal + " $!; wait $!; echo \"status $?\"; cat \"$out\"; rm \"$out\"");
        EXPECT_THAT(ended.out, StartsWith("status 0\n" + totals)) << signal;
    }
}

TEST_F(OrloctlCounters, an_interval_that_is_none_is_refused_before_anything_is_called) {
    for (const std::string every : {"x", "-1", "86401", "nan", "inf", "1s", "1 "}) {
        const Ended ended = orloctl({"counters", "--watch", "--every=" + every});
        EXPECT_EQ(ended.status, 2);
        EXPECT_EQ(ended.err,
                  "orloctl: --every: '" + every + "' is no number of seconds, 0 to 86400\n");
    }
    EXPECT_EQ(orloctl({"counters", "--every", "1"}).err, "orloctl: option --every needs --watch\n");
    EXPECT_EQ(journal(), "");
}

TEST_F(Orloctl, call_shows_the_records_that_an_operation_fills_in) {
    const Ended radios = orloctl({"call", "api_get_radio_statistics"});
    EXPECT_EQ(radios.status, 0);
    EXPECT_THAT(radios.out, StartsWith("ok\nrecord:\n                       radio 0  radio 1\n"
                                       "  tx_fragments         unset    unset\n"));
    EXPECT_THAT(radios.out, HasSubstr("  rx_bytes             20       21\n"));
    const Json object = parsed(orloctl({"call", "api_get_vap_statistics", "--json"}).out);
    const json_t* record = json_object_get(json_object_get(object.get(), "outputs"), "record");
    ASSERT_EQ(json_array_size(record), 32U);
    EXPECT_EQ(json_integer_value(json_object_get(json_array_get(record, 31), "tx_errors")), 631);
}
