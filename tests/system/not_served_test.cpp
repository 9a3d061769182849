// SPDX-License-Identifier: MIT
// Operations that this access point does not serve: they log that, succeed and touch nothing.
#include "support/access_point.h"

#include <cstring>

#include <climits>

namespace orlo::test {

class NotServed : public AccessPoint {
protected:
    void expect_log(const std::string& operation, const std::string& entering,
                    const std::string& end) {
        EXPECT_THAT(door.trace(), ElementsAre("log " + operation + ": " + entering,
                                              "log " + operation + ": " + end));
        door.forget();
        EXPECT_THAT(staged(), IsEmpty());
        EXPECT_THAT(journal(), IsEmpty());
    }

    void expect_nothing_done(const std::string& operation) {
        expect_log(operation, "Entering, do nothing.", "End...");
    }
};

TEST_F(NotServed, TheWiredNetworkIsNotTheAgentsToConfigure) {
    EXPECT_EQ(ops.api_apply_vlan_id(INT_MAX), 0);
    expect_nothing_done("api_apply_vlan_id");
    EXPECT_EQ(ops.api_apply_untagged_vlan(-1, 1), 0);
    expect_nothing_done("api_apply_untagged_vlan");
    EXPECT_EQ(ops.api_apply_dhcp(1), 0);
    expect_nothing_done("api_apply_dhcp");
    EXPECT_EQ(ops.api_apply_static_ip("10.0.0.2", nullptr, "x"), 0);
    expect_nothing_done("api_apply_static_ip");
    EXPECT_EQ(ops.api_apply_dns(nullptr, nullptr, nullptr), 0);
    expect_nothing_done("api_apply_dns");
}

TEST_F(NotServed, ArgumentsAreNotEvenLookedAt) {
    const uintptr_t nowhere = 8;
    const char* wild = nullptr;
    memcpy(&wild, &nowhere, sizeof wild);
    EXPECT_EQ(ops.api_apply_static_ip(wild, wild, wild), 0);
    EXPECT_EQ(ops.api_apply_dns(wild, wild, wild), 0);
    EXPECT_EQ(ops.api_apply_link_aggregation(const_cast<char*>(wild)), 0);
}

TEST_F(NotServed, FailedAttemptsOfStationsAreNotCounted) {
    EXPECT_EQ(ops.api_get_AuthFailCount(), 0);
    expect_nothing_done("api_get_AuthFailCount");
    EXPECT_EQ(ops.api_get_AssocFailCount(), 0);
    expect_nothing_done("api_get_AssocFailCount");
}

TEST_F(NotServed, AreaAuthenticationHasNoStationsToSendAway) {
    EXPECT_EQ(ops.api_disassociate_area_auth_clients(), 0);
    expect_log("api_disassociate_area_auth_clients", "Entering, todo porting !!!", "End...");
}

TEST_F(NotServed, LinksAreNotAggregated) {
    EXPECT_EQ(ops.api_apply_link_aggregation(nullptr), 0);
    expect_log("api_apply_link_aggregation", "Entering, do nothing - not support",
               "End... return: 0");
}

} // namespace orlo::test
