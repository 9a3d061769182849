// SPDX-License-Identifier: MIT
// Steps of radio operations that no operation reaches in all their cases.
#include "common/identity.h"
#include "radio/channel.h"
#include "radio/profile.h"
#include "radio/save.h"
#include "support/access_point.h"

#include <unistd.h>

namespace orlo::test {

using LegacyRates = AccessPoint;

TEST_F(LegacyRates, AreStaged) {
    EXPECT_EQ(set_legacy_rate(1, "6 12 24"), 0);
    EXPECT_THAT(door.trace({"log"}),
                ElementsAre("log set_legacy_rate: Entering... radio:1 supported_rate:6 12 24",
                            "log set_legacy_rate: Set wifi1 legacy rate success."));
    EXPECT_THAT(staged(), ElementsAre("wireless.wifi1.legacy_rates=6 12 24"));
    EXPECT_FALSE(is_changed(service_network)) << "which is the caller's to mark";
}

TEST_F(LegacyRates, OfAnotherRadioOrNoneAreRefusedAndDiscardEverything) {
    const struct {
        int radio;
        const char* rates;
        const char* message;
    } rows[] = {
        {2, "6", "Set legacy rate failed, - unknown wifi2"},
        {-1, "6", "Set legacy rate failed, - unknown wifi-1"},
        {0, nullptr, "Set legacy rate failed, can not identify supported rate"},
    };
    for (const auto& row : rows) {
        ASSERT_EQ(uciSetValue("orloagent", "agent.confighash", "abc"), 0);
        door.forget();
        EXPECT_EQ(set_legacy_rate(row.radio, row.rates), -1);
        EXPECT_EQ(door.trace({"log"}).back(),
                  std::string("log set_legacy_rate: error: ") + row.message);
        EXPECT_EQ(door.trace().back(), "revert all");
        EXPECT_THAT(staged(), IsEmpty());
    }
}

TEST_F(LegacyRates, ThatCannotBeWrittenDiscardEverything) {
    ASSERT_EQ(uciSetValue("orloagent", "agent.confighash", "abc"), 0);
    ASSERT_EQ(uciDeleteValue("wireless", "wifi0", 1), 0);
    ASSERT_EQ(uciCommitValue("wireless"), 0);
    EXPECT_EQ(set_legacy_rate(0, "6"), -1);
    EXPECT_EQ(door.trace({"log"}).back(), "log set_legacy_rate: Set Value Failed");
    EXPECT_THAT(staged(), IsEmpty());
}

using ChangedServices = AccessPoint;

TEST_F(ChangedServices, AreListedInTheirOrder) {
    char words[256];
    PendingService services[service_count] = {
        {"network", 1, 5}, {"ntp", 0, 0}, {"led", 0, 0}, {"log_relay", 0, 0}, {"snmp", 1, 0}};
    EXPECT_EQ(list_changed_services(services, words, sizeof words), ServiceWords::some);
    EXPECT_STREQ(words, "network-5 snmp-0");
    for (PendingService& service : services) {
        service.changed = 1;
    }
    EXPECT_EQ(list_changed_services(services, words, sizeof words), ServiceWords::some);
    EXPECT_STREQ(words, "network-5 ntp-0 led-0 log_relay-0 snmp-0");
    for (PendingService& service : services) {
        service.changed = 0;
    }
    EXPECT_EQ(list_changed_services(services, words, sizeof words), ServiceWords::none);
    EXPECT_THAT(door.trace({"log"}), IsEmpty());
}

TEST_F(ChangedServices, ThatDoNotFitAreAnError) {
    const PendingService services[service_count] = {
        {"network", 1, 5}, {"ntp", 1, 0}, {"led", 1, 0}, {"log_relay", 0, 0}, {"snmp", 0, 0}};
    char words[] = "network-5 ntp-0 ##";
    EXPECT_EQ(list_changed_services(services, words, 17), ServiceWords::too_long);
    EXPECT_EQ(words[17], '#');
    EXPECT_THAT(door.trace({"log"}),
                ElementsAre("log api_save_config: led was not inserted due to out of buffer"));
}

TEST_F(ChangedServices, AreNoneAtStart) {
    char words[256];
    EXPECT_EQ(list_changed_services(pending_services, words, sizeof words), ServiceWords::none);
}

TEST_F(ChangedServices, AreToldToTheScriptInOneCommand) {
    for (const Service service :
         {service_snmp, service_log_relay, service_led, service_ntp, service_network}) {
        mark_changed(service);
    }
    ASSERT_EQ(ops.api_save_config(), 0);
    EXPECT_THAT(door.trace({"run"}),
                testing::Contains("run /usr/bin/orloagent_apply_settings.sh network-5 ntp-0 led-0 "
                                  "log_relay-0 snmp-0 &"));
}

TEST_F(ChangedServices, WithoutTheNetworkNeedNoWait) {
    const char* const marker = "/tmp/orlo_network_restarting";
    replace_tool("orloagent_apply_settings.sh", "exit 0");
    door.on_sleep = [&](int sleeps) {
        if (sleeps == 10) {
            unlink(marker); // what waits for its end shall fail, not hang
        }
    };
    for (bool present : {false, true}) {
        mark_changed(service_ntp);
        door.forget();
        if (present) {
            write_file(marker, ""); // of somebody else
        }
        ASSERT_EQ(ops.api_save_config(), 0);
        EXPECT_THAT(door.trace({"sleep"}), ElementsAre("sleep 3"));
        EXPECT_EQ(exists(marker), present);
    }
    mark_changed(service_ntp);
    door.fail(Call::system, 2); // the first runs the VLAN script
    EXPECT_EQ(ops.api_save_config(), -1);
    EXPECT_TRUE(exists(marker)) << "not the library's to take away";
}

TEST_F(ChangedServices, ThatDoNotFitEndTheSaveAndStayMarked) {
    const std::string long_name(300, 'n');
    const PendingService own = pending_services[service_led];
    mark_changed(service_ntp);
    pending_services[service_led] = {long_name.c_str(), 1, 0};
    EXPECT_EQ(ops.api_save_config(), -1);
    EXPECT_EQ(door.trace({"log"}).back(),
              "log api_save_config: Bypass to call system apply settings script due to errors");
    EXPECT_THAT(door.trace({"run"}), ElementsAre("run /usr/bin/lua /usr/lib/lua/luci/chvlan.lua"));
    pending_services[service_led] = own;
    EXPECT_TRUE(is_changed(service_ntp));
}

using EligibleChannels = AccessPoint;

TEST_F(EligibleChannels, NeedAListAndAPlaceForTheAnswer) {
    char list[] = "36 40";
    int channel = 4711;
    EXPECT_EQ(check_static_channel_in_eligible_channels(1, nullptr, &channel), 1);
    EXPECT_EQ(check_static_channel_in_eligible_channels(1, list, nullptr), 1);
    EXPECT_EQ(check_second_channel_in_eligible_channels(nullptr, 36, &channel), 1);
    EXPECT_EQ(check_second_channel_in_eligible_channels(list, 36, nullptr), 1);
    char blanks[] = "   ";
    EXPECT_EQ(check_second_channel_in_eligible_channels(blanks, 36, &channel), 1);
    EXPECT_EQ(channel, 4711);
    EXPECT_THAT(door.trace(), IsEmpty());
}

} // namespace orlo::test
