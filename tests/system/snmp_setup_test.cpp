// SPDX-License-Identifier: MIT
// The SNMP settings as the daemon's configuration.
#include "system/snmp_settings.h"

#include <climits>

namespace orlo::test {

class SnmpSetup : public SnmpSettings {
protected:
    static std::string option(const std::string& name) { return staged_value("snmpd." + name); }

    // Makes each edit of the settings fail in turn; what is logged for it, in that order.
    Trace failures_of_each_set() {
        Trace reports;
        EXPECT_EQ(apply(), 0);
        const size_t count = door.trace({"set"}).size();
        for (size_t nth = 1; nth <= count; nth++) {
            stage_another_change();
            door.fail(Call::uci_set, static_cast<int>(nth));
            EXPECT_EQ(apply(), -1);
            reports.push_back(report_of_failure());
        }
        return reports;
    }

    // The lines after the failed edit, and that all was undone.
    std::string report_of_failure() {
        const Trace lines = door.trace();
        const Trace end(lines.end() - 2, lines.end());
        EXPECT_THAT(end, ElementsAre("log 5/1 api_apply_snmp: error: failed in configuration",
                                     "revert all"));
        EXPECT_THAT(staged(), IsEmpty());
        std::string report;
        for (const std::string& line : door.trace({"log"})) {
            if (line.find("log 5/1 ") == 0 && line.find("api_apply_snmp") == std::string::npos) {
                report += (report.empty() ? "" : "; ") + line.substr(sizeof "log 5/1 " - 1);
            }
        }
        return report;
    }
};

TEST_F(SnmpSetup, OfCommunities) {
    configure("snmpd.snmpv3_access", "access");
    snmp_.trap_types[1] = 1;
    snmp_.trap_types[4] = 99;
    EXPECT_EQ(apply(), 0);
    EXPECT_THAT(
        edits(),
        ElementsAre(
            "general.enabled=1", "general.version=v1/v2c", "-snmpv3_access", "public_access=access",
            "public_access.group=public", "public_access.context=none",
            "public_access.level=noauth", "public_access.version=any", "public_access.prefix=exact",
            "public_access.read=all", "public_access.write=none", "public_access.notify=none",
            "public.community=readers", "agent.agentaddress=161", "general.restrict_enable=0",
            "public.source=default", "-trapsink.community", "traptype.typeColdStart=0",
            "traptype.typeLink=1", "traptype.typeAuthentication=0", "traptype.typeAssociation=0",
            "traptype.typeFilteredSta=0", "traptype.typeRadiusAuthSuccess=0",
            "traptype.typeRadiusAuthFail=0", "traptype.typeDfsDetected=0"));
    EXPECT_EQ(door.trace().back(), "log api_apply_snmp: End...");
    EXPECT_EQ(committed_value("snmpd.general.enabled"), "0");
    EXPECT_EQ(restarted(), "snmp-0");
}

TEST_F(SnmpSetup, OfUsers) {
    use_v3();
    EXPECT_EQ(apply(), 0);
    EXPECT_THAT(edits(),
                ElementsAre("general.enabled=1", "general.version=v3", "-public_access",
                            "snmpv3_access=access", "snmpv3_access.group=snmpv3",
                            "snmpv3_access.context=none", "snmpv3_access.level=priv",
                            "snmpv3_access.version=usm", "snmpv3_access.prefix=exact",
                            "snmpv3_access.read=all", "snmpv3_access.write=none",
                            "snmpv3_access.notify=none", "snmpv3=group", "snmpv3.secname=operator",
                            "snmpv3_user=user", "snmpv3_user.username=operator",
                            "snmpv3_user.password=a long password", "agent.agentaddress=161",
                            "traptype.typeColdStart=0", "traptype.typeLink=0",
                            "traptype.typeAuthentication=0", "traptype.typeAssociation=0",
                            "traptype.typeFilteredSta=0", "traptype.typeRadiusAuthSuccess=0",
                            "traptype.typeRadiusAuthFail=0", "traptype.typeDfsDetected=0"));
    EXPECT_EQ(restarted(), "snmp-0");
}

TEST_F(SnmpSetup, OfOneVersionAfterTheOtherLeavesOneAccess) {
    use_v3();
    ASSERT_EQ(apply(), 0);
    EXPECT_EQ(option("public_access"), "(none)");
    EXPECT_EQ(option("snmpv3_access"), "access");
    ASSERT_EQ(restarted(), "snmp-0");
    snmp_.version = 0;
    ASSERT_EQ(apply(), 0);
    EXPECT_EQ(option("public_access"), "access");
    EXPECT_EQ(option("public_access.notify"), "none");
    EXPECT_EQ(option("snmpv3_access"), "(none)");
    EXPECT_EQ(option("snmpv3_user.username"), "operator") << "users stay, without access";
}

TEST_F(SnmpSetup, ThatIsOffStagesNothingElseWhateverTheOtherFieldsAre) {
    use_host(0, 1, nullptr);
    snmp_.status = 0;
    snmp_.read_only_community = nullptr;
    snmp_.manager_mask = INT_MIN;
    snmp_.trap_types[4] = INT_MAX;
    EXPECT_EQ(apply(), 0);
    EXPECT_THAT(edits(), ElementsAre("general.enabled=0"));
    EXPECT_EQ(restarted(), "snmp-0");
}

TEST_F(SnmpSetup, TheManagerIsANetworkWhenItsMaskSaysSo) {
    const struct {
        const char* address;
        int mask;
        const char* source;
    } rows[] = {
        {"10.0.0.0", 24, "10.0.0.0/24"},
        {"10.0.0.1", 32, "10.0.0.1"},
        {"10.0.0.1", 0, "10.0.0.1/0"},
        {"255.255.255.255", 33, "255.255.255.255/33"},
        {"255.255.255.255", INT_MIN, "255.255.255.255/-2147483648"},
        {"manager.example", 24, "manager.example"},
        {"10.0.0", 24, "10.0.0"},
        {"10.0.0.256", 24, "10.0.0.256"},
        {"2001:db8::1", 64, "2001:db8::1"},
    };
    snmp_.restrict_source = 1;
    for (const auto& row : rows) {
        snmp_.manager_address = row.address;
        snmp_.manager_mask = row.mask;
        EXPECT_EQ(apply(), 0);
        EXPECT_EQ(option("general.restrict_enable"), "1");
        EXPECT_EQ(option("public.source"), row.source);
    }
    const std::string longest(255, 'm');
    snmp_.manager_address = longest.c_str();
    EXPECT_EQ(apply(), 0);
    EXPECT_EQ(option("public.source"), longest);
}

TEST_F(SnmpSetup, PortsAreStagedAsNumbers) {
    for (int port : {0, 65535}) {
        snmp_.port = port;
        EXPECT_EQ(apply(), 0);
        EXPECT_EQ(option("agent.agentaddress"), std::to_string(port));
    }
}

TEST_F(SnmpSetup, TheLongestCommunityFits) {
    const std::string longest(256, 'c');
    snmp_.read_only_community = longest.c_str();
    snmp_.trap_community = longest.c_str();
    use_host(2, 1, "host");
    EXPECT_EQ(apply(), 0);
    EXPECT_EQ(option("public.community"), longest);
    EXPECT_EQ(option("trapsink.community"), longest);
}

TEST_F(SnmpSetup, EachTrapTypeHasItsOption) {
    const char* const names[] = {"ColdStart",         "Link",           "Authentication",
                                 "Association",       nullptr,          "FilteredSta",
                                 "RadiusAuthSuccess", "RadiusAuthFail", "DfsDetected"};
    for (int i = 0; i < 9; i++) {
        for (int k = 0; k < 9; k++) {
            snmp_.trap_types[k] = k == i ? 1 : 0;
        }
        ASSERT_EQ(apply(), 0);
        for (int k = 0; k < 9; k++) {
            if (names[k] != nullptr) {
                EXPECT_EQ(option(std::string("traptype.type") + names[k]), k == i ? "1" : "0") << i;
            }
        }
    }
}

TEST_F(SnmpSetup, TrapHostsReplaceTheStoredOnes) {
    for (const char* host : {"host0", "host1", "host2"}) {
        configure(std::string("snmpd.trapsink.") + host, "old");
    }
    snmp_.trap_community = "traps";
    use_host(0, 1, "10.0.0.1");
    use_host(1, 0, "10.0.0.2");
    EXPECT_EQ(apply(), 0);
    const Trace all = edits();
    EXPECT_THAT(Trace(all.end() - 4, all.end()),
                ElementsAre("-trapsink.host0", "trapsink.host0=10.0.0.1", "-trapsink.host1",
                            "-trapsink.host2"));
    EXPECT_THAT(all, testing::Contains("trapsink.community=traps"));
    EXPECT_EQ(option("trapsink.host0"), "10.0.0.1");
    EXPECT_EQ(option("trapsink.host1"), "(none)");
    EXPECT_EQ(option("trapsink.host2"), "(none)");
}

TEST_F(SnmpSetup, TrapHostsGoByTheirPlaceNotTheirId) {
    snmp_.trap_community = "traps";
    use_host(2, 1, "10.0.0.1");
    hosts_[2].id = 0;
    EXPECT_EQ(apply(), 0);
    EXPECT_EQ(option("trapsink.host0"), "(none)");
    EXPECT_EQ(option("trapsink.host2"), "10.0.0.1");
}

TEST_F(SnmpSetup, ATrapCommunityGoesWithAnyAddress) {
    snmp_.trap_community = "traps";
    EXPECT_EQ(apply(), 0);
    EXPECT_EQ(option("trapsink.community"), "(none)") << "no address";
    for (int i : {0, 1, 2}) {
        snmp_.trap_hosts[0] = snmp_.trap_hosts[1] = snmp_.trap_hosts[2] = nullptr;
        use_host(i, 0, "10.0.0.1");
        EXPECT_EQ(apply(), 0);
        EXPECT_EQ(option("trapsink.community"), "traps") << "even of a host without traps";
        use_host(i, 0, nullptr);
        EXPECT_EQ(apply(), 0);
        EXPECT_EQ(option("trapsink.community"), "(none)");
    }
}

TEST_F(SnmpSetup, OfUsersLeavesCommunitiesAlone) {
    use_v3();
    use_host(0, 1, "10.0.0.1");
    snmp_.trap_community = nullptr;
    EXPECT_EQ(apply(), 0);
    EXPECT_EQ(option("trapsink.community"), "public");
    EXPECT_EQ(option("trapsink.host0"), "10.0.0.1");
}

// ---- Failures ----

TEST_F(SnmpSetup, EachFailedWriteOfCommunitiesIsNamed) {
    use_host(1, 1, "10.0.0.1");
    snmp_.trap_community = "traps";
    const std::string own = "setup_snmp: failed to set snmpd.";
    const std::string version = "setup_snmp_v1v2c: failed to set snmpd.";
    const std::string end = "; setup_snmp: error: failed to set snmp v1/v2c setup.";
    EXPECT_THAT(
        failures_of_each_set(),
        ElementsAre(
            own + "general.enabled=1", own + "general.version=v1/v2c",
            version + "public_access=access" + end, version + "public_access.group=public" + end,
            version + "public_access.context=none" + end,
            version + "public_access.level=noauth" + end,
            version + "public_access.version=any" + end,
            version + "public_access.prefix=exact" + end, version + "public_access.read=all" + end,
            version + "public_access.write=none" + end, version + "public_access.notify=none" + end,
            version + "public.community=readers" + end, version + "agent.agentaddress=161" + end,
            version + "general.restrict_enable=0" + end, version + "public.source=default" + end,
            version + "trapsink.community=traps" + end, own + "traptype.typeColdStart=0",
            own + "traptype.typeLink=0", own + "traptype.typeAuthentication=0",
            own + "traptype.typeAssociation=0", own + "traptype.typeFilteredSta=0",
            own + "traptype.typeRadiusAuthSuccess=0", own + "traptype.typeRadiusAuthFail=0",
            own + "traptype.typeDfsDetected=0", own + "trapsink.host1=10.0.0.1"));
}

TEST_F(SnmpSetup, EachFailedWriteOfUsersIsNamed) {
    use_v3();
    const Trace failures = failures_of_each_set();
    ASSERT_THAT(failures, testing::SizeIs(25));
    const std::string version = "setup_snmp_v3: failed to set snmpd.";
    const std::string end = "; setup_snmp: error: failed to set snmp v3 setup.";
    EXPECT_THAT(
        Trace(failures.begin() + 2, failures.begin() + 17),
        ElementsAre(
            version + "snmpv3_access=access" + end, version + "snmpv3_access.group=snmpv3" + end,
            version + "snmpv3_access.context=none" + end,
            version + "snmpv3_access.level=priv" + end, version + "snmpv3_access.version=usm" + end,
            version + "snmpv3_access.prefix=exact" + end, version + "snmpv3_access.read=all" + end,
            version + "snmpv3_access.write=none" + end, version + "snmpv3_access.notify=none" + end,
            version + "snmpv3=group" + end, version + "snmpv3.secname=operator" + end,
            version + "snmpv3_user=user" + end, version + "snmpv3_user.username=operator" + end,
            version + "snmpv3_user.password=a long password" + end,
            version + "agent.agentaddress=161" + end));
}

TEST_F(SnmpSetup, AFailedRestrictionIsNamed) {
    snmp_.restrict_source = 1;
    snmp_.manager_address = "10.0.0.0";
    snmp_.manager_mask = 8;
    const Trace failures = failures_of_each_set();
    const std::string version = "setup_snmp_v1v2c: failed to set snmpd.";
    const std::string end = "; setup_snmp: error: failed to set snmp v1/v2c setup.";
    EXPECT_EQ(failures[13], version + "general.restrict_enable=1" + end);
    EXPECT_EQ(failures[14], version + "public.source=10.0.0.0/8" + end);
}

TEST_F(SnmpSetup, EachFailedDeletionIsNamed) {
    configure("snmpd.snmpv3_access", "access");
    configure("snmpd.trapsink.host0", "old");
    configure("snmpd.trapsink.host2", "old");
    const char* const communities[] = {
        "setup_snmp_v1v2c: failed to delete snmpd.snmpv3_access; "
        "setup_snmp: error: failed to set snmp v1/v2c setup.",
        "setup_snmp_v1v2c: failed to delete snmpd.trapsink.community; "
        "setup_snmp: error: failed to set snmp v1/v2c setup.",
        "setup_snmp: failed to delete snmpd.trapsink.host0",
        "setup_snmp: failed to delete snmpd.trapsink.host2"};
    for (int i = 0; i < 4; i++) {
        stage_another_change();
        door.fail(Call::uci_delete, i + 1);
        EXPECT_EQ(apply(), -1);
        EXPECT_EQ(report_of_failure(), communities[i]);
    }
    use_v3();
    stage_another_change();
    door.fail(Call::uci_delete);
    EXPECT_EQ(apply(), -1);
    EXPECT_EQ(report_of_failure(), "setup_snmp_v3: failed to delete snmpd.public_access; "
                                   "setup_snmp: error: failed to set snmp v3 setup.");
    EXPECT_EQ(restarted(), "");
}

TEST_F(SnmpSetup, ATextThatTheVersionNeedsIsAFailedWriteWhenItIsAbsent) {
    const auto report_without = [this](const char* snmp_settings::*field) {
        const snmp_settings before = snmp_;
        snmp_.*field = nullptr;
        stage_another_change();
        EXPECT_EQ(apply(), -1);
        snmp_ = before;
        return report_of_failure();
    };
    const std::string end = "; setup_snmp: error: failed to set snmp v1/v2c setup.";
    use_host(0, 0, "10.0.0.1");
    snmp_.trap_community = "traps";
    snmp_.restrict_source = 1;
    snmp_.manager_address = "manager";
    EXPECT_EQ(report_without(&snmp_settings::read_only_community),
              "setup_snmp_v1v2c: failed to set snmpd.public.community=NULL" + end);
    EXPECT_EQ(report_without(&snmp_settings::manager_address),
              "setup_snmp_v1v2c: failed to set snmpd.public.source=NULL" + end);
    EXPECT_EQ(report_without(&snmp_settings::trap_community),
              "setup_snmp_v1v2c: failed to set snmpd.trapsink.community=NULL" + end);
    use_v3();
    const std::string end_of_v3 = "; setup_snmp: error: failed to set snmp v3 setup.";
    EXPECT_EQ(report_without(&snmp_settings::username),
              "setup_snmp_v3: failed to set snmpd.snmpv3.secname=NULL" + end_of_v3);
    EXPECT_EQ(report_without(&snmp_settings::password),
              "setup_snmp_v3: failed to set snmpd.snmpv3_user.password=NULL" + end_of_v3);
    use_host(1, 1, nullptr);
    stage_another_change();
    EXPECT_EQ(apply(), -1);
    EXPECT_EQ(report_of_failure(), "setup_snmp: failed to set snmpd.trapsink.host1=NULL");
    EXPECT_EQ(restarted(), "");
}

TEST_F(SnmpSetup, ThatFailsRequestsNoTraps) {
    snmp_.radio_status[0] = 0;
    door.fail(Call::uci_set);
    EXPECT_EQ(apply(), -1);
    EXPECT_FALSE(exists("/tmp/orlo_send_snmp_trap"));
}

} // namespace orlo::test
