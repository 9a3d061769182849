// SPDX-License-Identifier: MIT
// Quilt VAPs that filter stations by address, or have RADIUS servers do so.
#include "quilt/quilt_record.h"

namespace orlo::test {

class QuiltMacFilter : public QuiltRecord {
protected:
    static constexpr mac_auth_radius_server primary = {
        1, "10.0.0.1", "first", 1645, "colon", "upper", "fixed-password", "hidden"};
    static constexpr mac_auth_radius_server secondary = {2,       "10.0.0.2", "second", 1,
                                                         nullptr, nullptr,    nullptr,  nullptr};
    static constexpr mac_auth_radius_server absent = {0,       nullptr, nullptr, 0,
                                                      nullptr, nullptr, nullptr, nullptr};

    quilt_vap& enable_filter(int mode, int reset, const mac_auth_radius_server& first,
                             const mac_auth_radius_server& second) {
        quilt_vap& vap = enable(0);
        vap.mac_filter_mode = mode;
        vap.mac_auth_reset = reset;
        vap.mac_auth_server[0] = first;
        vap.mac_auth_server[1] = second;
        return vap;
    }

    // The edits that concern the filter, in their order.
    Trace filter_edits() const {
        Trace edits;
        for (const std::string& edit : edits_of("wifi1vap3")) {
            if (edit.compare(0, 3, "mac") == 0) {
                edits.push_back(edit);
            }
        }
        return edits;
    }
};

Trace after_reset(const Trace& more) {
    Trace edits = edits_that_forget_servers;
    edits.insert(edits.end(), more.begin(), more.end());
    return edits;
}

TEST_F(QuiltMacFilter, WithServersForgetsTheOldOnesFirst) {
    for (int mode : {2, 3}) {
        for (int reset : {0, 1}) {
            enable_filter(mode, reset, primary, secondary);
            EXPECT_EQ(apply(), 0);
            EXPECT_EQ(
                filter_edits(),
                after_reset({"macfilter=" + std::to_string(mode), "mac_auth_server=10.0.0.1",
                             "mac_auth_secret=first", "mac_auth_port=1645",
                             "mac_auth_username_separator=colon", "mac_auth_username_case=upper",
                             "mac_auth_password_format=fixed-password", "mac_auth_password=hidden",
                             "mac_auth_server_second=10.0.0.2", "mac_auth_secret_second=second"}));
        }
    }
}

TEST_F(QuiltMacFilter, WithoutServersLeavesThemUnlessAskedToForgetThem) {
    for (int mode : {0, 1, 4, -1, 7}) {
        const std::string written = "macfilter=" + std::to_string(mode);
        for (int reset : {0, -1, 2}) {
            enable_filter(mode, reset, primary, secondary);
            EXPECT_EQ(apply(), 0);
            EXPECT_THAT(filter_edits(), ElementsAre(written));
        }
        enable_filter(mode, 1, primary, secondary);
        EXPECT_EQ(apply(), 0);
        EXPECT_EQ(filter_edits(), after_reset({written})) << "and applies none";
    }
}

TEST_F(QuiltMacFilter, AServerThatIsAbsentIsLeftOut) {
    enable_filter(2, 0, absent, secondary);
    EXPECT_EQ(apply(), 0);
    EXPECT_EQ(filter_edits(), after_reset({"macfilter=2", "mac_auth_server_second=10.0.0.2",
                                           "mac_auth_secret_second=second"}));
    enable_filter(3, 0, absent, absent);
    EXPECT_EQ(apply(), 0);
    EXPECT_EQ(filter_edits(), after_reset({"macfilter=3"}));
}

TEST_F(QuiltMacFilter, ForgettingLeavesTheDefaultsOfAServer) {
    configure("wireless.wifi1vap3.mac_auth_server", "10.0.0.9");
    configure("wireless.wifi1vap3.mac_auth_secret", "old");
    configure("wireless.wifi1vap3.mac_auth_server_second", "10.0.0.9");
    configure("wireless.wifi1vap3.mac_auth_secret_second", "old");
    configure("wireless.wifi1vap3.mac_auth_password", "old");
    enable_filter(0, 1, absent, absent);
    EXPECT_EQ(apply(), 0);
    for (const char* option : {"server", "secret", "server_second", "secret_second"}) {
        EXPECT_EQ(staged_value(std::string("wireless.wifi1vap3.mac_auth_") + option), "(none)");
    }
    EXPECT_EQ(staged_value("wireless.wifi1vap3.mac_auth_port"), "1812");
    EXPECT_EQ(staged_value("wireless.wifi1vap3.mac_auth_password"), "old");
}

// The n-th write from the first one of the filter fails.
TEST_F(QuiltMacFilter, EachFailedWriteEndsTheCall) {
    constexpr int writes_before = 2 + 7;
    enable_filter(2, 1, primary, secondary);
    ASSERT_EQ(apply(), 0);
    const Trace edits = filter_edits();
    ASSERT_EQ(edits.size(), 18U);
    for (size_t i = 0; i < edits.size(); i++) {
        ASSERT_EQ(ops.api_config_set_hash("abc"), 0);
        door.fail(Call::uci_set, writes_before + static_cast<int>(i) + 1);
        EXPECT_EQ(apply(), -1);
        EXPECT_EQ(edits_of("wifi1vap3").back(), edits[i] + " (failed)");
        EXPECT_EQ(refusal(), i < 8    ? "error: Reset MAC Auth Servers Failed!"
                             : i == 8 ? "error: Set Mac Filter Mode Failed : 2!"
                             : i < 16 ? "error: Set MAC Auth Server Failed! (prio:1)"
                                      : "error: Set MAC Auth Server Failed! (prio:2)");
        EXPECT_EQ(door.trace().back(), "revert all");
        EXPECT_THAT(staged(), IsEmpty());
    }
}

TEST_F(QuiltMacFilter, AServerOfAnUnknownIndexIsRefused) {
    mac_auth_radius_server third = primary;
    third.index = 4000000000U;
    enable_filter(2, 0, third, absent);
    EXPECT_EQ(apply(), -1);
    EXPECT_EQ(refusal(), "error: Set MAC Auth Server Failed! (prio:4000000000)");
    EXPECT_THAT(staged(), IsEmpty()) << "by the operation, as the step itself discards nothing";
}

} // namespace orlo::test
