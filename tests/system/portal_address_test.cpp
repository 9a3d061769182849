// SPDX-License-Identifier: MIT
// What captive portals share: their virtual address, and what the device does not serve.
#include "support/access_point.h"

#include <climits>

namespace orlo::test {

using PortalAddress = AccessPoint;

TEST_F(PortalAddress, IsStagedAsItIs) {
    EXPECT_EQ(ops.api_apply_cp_virt_ip("1.1.1.300"), 0);
    EXPECT_THAT(door.trace(), ElementsAre("log api_apply_cp_virt_ip: Entering... addr:1.1.1.300",
                                          "set network.lan.cp_virt_ip=1.1.1.300",
                                          "log api_apply_cp_virt_ip: End Successfully"));
    EXPECT_TRUE(saving_restarts_network());
    EXPECT_EQ(committed_value("network.lan.cp_virt_ip"), "1.1.1.300");
}

TEST_F(PortalAddress, ThatIsEmptyIsDeleted) {
    for (const char* address : {static_cast<const char*>(nullptr), ""}) {
        configure("network.lan.cp_virt_ip", "1.1.1.1");
        door.forget();
        EXPECT_EQ(ops.api_apply_cp_virt_ip(address), 0);
        EXPECT_THAT(door.trace(),
                    ElementsAre(std::string("log api_apply_cp_virt_ip: Entering... addr:") +
                                    (address == nullptr ? "NULL" : ""),
                                "delete network.lan.cp_virt_ip",
                                "log api_apply_cp_virt_ip: End Successfully"));
        EXPECT_TRUE(saving_restarts_network());
        EXPECT_EQ(committed_value("network.lan.cp_virt_ip"), "(none)");
    }
    EXPECT_EQ(ops.api_apply_cp_virt_ip(""), 0) << "also when there is none";
    EXPECT_THAT(staged(), IsEmpty());
}

TEST_F(PortalAddress, ThatCannotBeWrittenDiscardsEverything) {
    ASSERT_EQ(ops.api_config_set_hash("abc"), 0);
    door.forget();
    door.fail(Call::uci_set);
    EXPECT_EQ(ops.api_apply_cp_virt_ip("1.1.1.1"), -1);
    EXPECT_THAT(door.trace(),
                ElementsAre("log api_apply_cp_virt_ip: Entering... addr:1.1.1.1",
                            "set network.lan.cp_virt_ip=1.1.1.1 (failed)",
                            "log api_apply_cp_virt_ip: Error: Set Value Failed", "revert all"));
    EXPECT_THAT(staged(), IsEmpty());
    EXPECT_FALSE(saving_restarts_network());
}

TEST_F(PortalAddress, ThatCannotBeDeletedDiscardsEverything) {
    configure("network.lan.cp_virt_ip", "1.1.1.1");
    ASSERT_EQ(ops.api_config_set_hash("abc"), 0);
    door.forget();
    door.fail(Call::uci_delete);
    EXPECT_EQ(ops.api_apply_cp_virt_ip(""), -1);
    EXPECT_THAT(door.trace(),
                ElementsAre("log api_apply_cp_virt_ip: Entering... addr:",
                            "delete network.lan.cp_virt_ip (failed)",
                            "log api_apply_cp_virt_ip: Error: Delete Value Failed", "revert all"));
    EXPECT_THAT(staged(), IsEmpty());
    EXPECT_FALSE(saving_restarts_network());
}

using DeviceWidePortal = AccessPoint;

TEST_F(DeviceWidePortal, IsNotServed) {
    int touched = 42;
    EXPECT_EQ(ops.api_get_captive_portal_status(&touched), 0);
    EXPECT_EQ(ops.api_get_captive_portal_statistics(nullptr), 0);
    EXPECT_EQ(ops.api_apply_captive_portal_status(INT_MIN), 0);
    EXPECT_EQ(ops.api_apply_captive_portal(&touched, nullptr, &touched), 0);
    EXPECT_EQ(touched, 42);
    Trace expected;
    for (const char* name : {"api_get_captive_portal_status", "api_get_captive_portal_statistics",
                             "api_apply_captive_portal_status", "api_apply_captive_portal"}) {
        const std::string own = std::string("log ") + name;
        expected.push_back(own + ": Entering, do nothing - not support CP yet");
        expected.push_back(own + ": End... return: 0");
    }
    EXPECT_EQ(door.trace(), expected);
    EXPECT_FALSE(saving_restarts_network());
}

} // namespace orlo::test
