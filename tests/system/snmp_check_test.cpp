// SPDX-License-Identifier: MIT
// What the SNMP settings may hold.
#include "system/snmp_settings.h"

#include <climits>
#include <functional>

namespace orlo::test {

class SnmpCheck : public SnmpSettings {
protected:
    // Whether the settings pass; if not, that nothing was staged and the last word was the refusal.
    bool passes() {
        stage_another_change();
        const bool is_accepted = apply() == 0;
        if (!is_accepted) {
            EXPECT_EQ(door.trace().back(), "log 5/1 api_apply_snmp: error: failed in validation");
            EXPECT_THAT(edits(), IsEmpty());
            EXPECT_THAT(door.trace({"revert"}), IsEmpty());
            EXPECT_TRUE(another_change_is_staged());
        }
        return is_accepted;
    }

    // The line before the refusal.
    std::string reason() const { return door.trace({"log"}).end()[-2]; }

    static std::string out_of_range(const std::string& function, const std::string& field,
                                    const std::string& range) {
        return "log " + function + ": error: snmp." + field + " is not in range(" + range + ")";
    }

    void expect_flag(int32_t& field, const std::string& refusal) {
        for (int value : {0, 1}) {
            field = value;
            EXPECT_TRUE(passes()) << refusal << value;
        }
        for (int value : {2, -1, INT_MAX, INT_MIN}) {
            field = value;
            EXPECT_FALSE(passes()) << refusal << value;
            EXPECT_EQ(reason(), refusal);
        }
        field = 0;
    }

    // A text that may be absent, but if it is there has 1 to `most` characters.
    void expect_length(const std::function<void(const char*)>& put, size_t most,
                       const std::string& refusal) {
        for (size_t length : {size_t(1), most}) {
            const std::string text(length, 'x');
            put(text.c_str());
            EXPECT_TRUE(passes()) << refusal << length;
        }
        for (size_t length : {size_t(0), most + 1, size_t(100000)}) {
            const std::string text(length, 'x');
            put(text.c_str());
            EXPECT_FALSE(passes()) << refusal << length;
            EXPECT_EQ(reason(), refusal);
        }
    }
};

TEST_F(SnmpCheck, NeedsSettings) {
    stage_another_change();
    EXPECT_EQ(apply(nullptr), -1);
    EXPECT_THAT(door.trace(), ElementsAre("log 5/1 api_apply_snmp: error: snmp is NULL"));
    EXPECT_TRUE(another_change_is_staged());
}

TEST_F(SnmpCheck, SaysWhatItLooksAt) {
    use_host(1, 1, "10.0.0.1");
    snmp_.trap_types[8] = 1;
    snmp_.restrict_source = 1;
    snmp_.manager_address = "10.1.2.3";
    snmp_.manager_mask = 24;
    snmp_.trap_community = "traps";
    EXPECT_EQ(apply(), 0);
    const std::string own = "log check_snmp: ";
    const Trace lines = door.trace();
    EXPECT_THAT(Trace(lines.begin(), lines.begin() + 16),
                ElementsAre("log api_apply_snmp: Entering... status:1",
                            own + "SNMP version enum: 0", "log check_snmp_v1v2c: readers",
                            "log check_snmp_v1v2c: 1", "log check_snmp_v1v2c: 10.1.2.3",
                            "log check_snmp_v1v2c: 24", own + "161", own + "typeColdStart:0",
                            own + "typeLink:0", own + "typeAuthentication:0",
                            own + "typeAssociation:0", own + "typeFilteredSta:0",
                            own + "typeRadiusAuthSuccess:0", own + "typeRadiusAuthFail:0",
                            own + "typeDfsDetected:1",
                            own + "host[1].id:1 host.status:1 host.server-address:10.0.0.1"));
    EXPECT_EQ(lines[16], "set snmpd.general.enabled=1");
}

TEST_F(SnmpCheck, SaysLittleOfUsers) {
    use_v3();
    use_host(0, 0, nullptr);
    EXPECT_EQ(apply(), 0);
    const Trace lines = door.trace();
    EXPECT_THAT(Trace(lines.begin(), lines.begin() + 4),
                ElementsAre("log api_apply_snmp: Entering... status:1",
                            "log check_snmp: SNMP version enum: 1", "log check_snmp: 161",
                            "log check_snmp: typeColdStart:0"));
    EXPECT_THAT(lines, testing::Contains("log check_snmp: host[0].id:0 host.status:0 "
                                         "host.server-address:NULL"));
}

TEST_F(SnmpCheck, StatusIsAFlagAndCheckedFirst) {
    snmp_.version = 9;
    snmp_.status = 2;
    EXPECT_FALSE(passes());
    EXPECT_THAT(door.trace(), ElementsAre("log api_apply_snmp: Entering... status:2",
                                          out_of_range("check_snmp", "status", "0,1"),
                                          "log 5/1 api_apply_snmp: error: failed in validation"));
    snmp_.version = 0;
    expect_flag(snmp_.status, out_of_range("check_snmp", "status", "0,1"));
}

TEST_F(SnmpCheck, VersionIsV1OrV3) {
    for (int version : {2, -1, INT_MAX, INT_MIN}) {
        snmp_.version = version;
        EXPECT_FALSE(passes());
        EXPECT_THAT(
            door.trace(),
            ElementsAre("log api_apply_snmp: Entering... status:1",
                        "log check_snmp: SNMP version enum: " + std::to_string(version),
                        "log 5/1 check_snmp: error: invalid version " + std::to_string(version),
                        "log 5/1 api_apply_snmp: error: failed in validation"));
    }
}

TEST_F(SnmpCheck, PortIsOneOfUdp) {
    for (bool v3 : {false, true}) {
        if (v3) {
            use_v3();
        }
        for (int port : {0, 1, 161, 65535}) {
            snmp_.port = port;
            EXPECT_TRUE(passes()) << port;
        }
        for (int port : {-1, 65536, INT_MAX, INT_MIN}) {
            snmp_.port = port;
            EXPECT_FALSE(passes()) << port;
            EXPECT_EQ(reason(), out_of_range("check_snmp", "port", "0,65535"));
        }
    }
}

TEST_F(SnmpCheck, TrapTypesAreFlagsExceptTheUnusedOne) {
    for (int i : {0, 1, 2, 3, 5, 6, 7, 8}) {
        expect_flag(snmp_.trap_types[i], out_of_range("check_snmp", "trap-types", "0,1"));
    }
    for (int value : {2, -1, INT_MIN}) {
        snmp_.trap_types[4] = value;
        EXPECT_TRUE(passes()) << value;
    }
}

TEST_F(SnmpCheck, TrapHostsHaveAnIdAStatusAndAnAddress) {
    snmp_.trap_community = "traps";
    for (int i : {0, 1, 2}) {
        use_host(i, 0, "host");
        for (int id : {0, 1, 2}) {
            hosts_[i].id = id;
            EXPECT_TRUE(passes()) << "any of the three";
        }
        for (int id : {3, -1, INT_MAX, INT_MIN}) {
            hosts_[i].id = id;
            EXPECT_FALSE(passes()) << id;
            EXPECT_EQ(reason(), out_of_range("check_snmp", "trap-host.id", "0,2"));
        }
        hosts_[i].id = i;
        expect_flag(hosts_[i].status, out_of_range("check_snmp", "trap-host.status", "0,1"));
        expect_length([&](const char* text) { hosts_[i].server_address = text; }, 255,
                      out_of_range("check_snmp", "trap-host.server-address", "1,255"));
        hosts_[i].server_address = nullptr;
        EXPECT_TRUE(passes()) << "no address";
    }
}

TEST_F(SnmpCheck, CommunitiesHaveALength) {
    expect_length([this](const char* text) { snmp_.read_only_community = text; }, 256,
                  out_of_range("check_snmp_v1v2c", "read-only-community-name", "1,256"));
    snmp_.read_only_community = "readers";
    expect_length([this](const char* text) { snmp_.trap_community = text; }, 256,
                  out_of_range("check_snmp_v1v2c", "community-name-for-traps", "1,256"));
}

TEST_F(SnmpCheck, RestrictionIsAFlag) {
    snmp_.manager_address = "manager";
    expect_flag(snmp_.restrict_source,
                out_of_range("check_snmp_v1v2c", "restrict-the-source-of-snmp-requests", "0,1"));
}

TEST_F(SnmpCheck, TheManagerIsLookedAtOnlyWithTheRestriction) {
    snmp_.restrict_source = 1;
    expect_length(
        [this](const char* text) { snmp_.manager_address = text; }, 255,
        out_of_range("check_snmp_v1v2c", "management-system-address.server-address", "1,255"));
    const std::string longer(300, 'x');
    for (const char* text : {"", longer.c_str()}) {
        snmp_.restrict_source = 0;
        snmp_.manager_address = text;
        snmp_.manager_mask = INT_MIN;
        EXPECT_TRUE(passes());
        EXPECT_THAT(door.trace(),
                    testing::Not(testing::Contains("log check_snmp_v1v2c: " + std::string(text))));
    }
}

TEST_F(SnmpCheck, UsersHaveALength) {
    use_v3();
    expect_length([this](const char* text) { snmp_.username = text; }, 12,
                  out_of_range("check_snmp_v3", "username", "1,12"));
    snmp_.username = "operator";
    expect_length([this](const char* text) { snmp_.password = text; }, 32,
                  out_of_range("check_snmp_v3", "password", "1,32"));
}

TEST_F(SnmpCheck, LooksOnlyAtTheFieldsOfItsVersion) {
    const std::string wild(5000, 'w');
    snmp_.username = wild.c_str();
    snmp_.password = "";
    EXPECT_TRUE(passes());
    use_v3();
    snmp_.read_only_community = wild.c_str();
    snmp_.trap_community = "";
    snmp_.restrict_source = 77;
    snmp_.manager_address = wild.c_str();
    EXPECT_TRUE(passes());
}

TEST_F(SnmpCheck, SaysTheFirstWrongValueAndRefusesIt) {
    snmp_.status = 2;
    snmp_.version = 2;
    snmp_.read_only_community = "";
    snmp_.restrict_source = 3;
    snmp_.manager_address = "";
    snmp_.manager_mask = 24;
    snmp_.trap_community = "";
    snmp_.port = -1;
    snmp_.trap_types[5] = 7;
    use_host(1, 8, "");
    hosts_[1].id = 9;
    const std::string own = "log check_snmp: ";
    const std::string version = "log check_snmp_v1v2c: ";
    const std::string host = own + "host[1].id:";
    const struct {
        std::string said;
        std::string refusal;
        std::function<void()> mend;
    } rows[] = {
        {"log api_apply_snmp: Entering... status:2", out_of_range("check_snmp", "status", "0,1"),
         [this] { snmp_.status = 1; }},
        {own + "SNMP version enum: 2", "log 5/1 check_snmp: error: invalid version 2",
         [this] { snmp_.version = 0; }},
        {version, out_of_range("check_snmp_v1v2c", "read-only-community-name", "1,256"),
         [this] { snmp_.read_only_community = "readers"; }},
        {version + "3",
         out_of_range("check_snmp_v1v2c", "restrict-the-source-of-snmp-requests", "0,1"),
         [this] { snmp_.restrict_source = 1; }},
        {version + "24",
         out_of_range("check_snmp_v1v2c", "management-system-address.server-address", "1,255"),
         [this] { snmp_.manager_address = "manager"; }},
        {version + "24", out_of_range("check_snmp_v1v2c", "community-name-for-traps", "1,256"),
         [this] { snmp_.trap_community = "traps"; }},
        {own + "-1", out_of_range("check_snmp", "port", "0,65535"), [this] { snmp_.port = 161; }},
        {own + "typeFilteredSta:7", out_of_range("check_snmp", "trap-types", "0,1"),
         [this] { snmp_.trap_types[5] = 0; }},
        {host + "9 host.status:8 host.server-address:",
         out_of_range("check_snmp", "trap-host.id", "0,2"), [this] { hosts_[1].id = 2; }},
        {host + "2 host.status:8 host.server-address:",
         out_of_range("check_snmp", "trap-host.status", "0,1"), [this] { hosts_[1].status = 0; }},
        {host + "2 host.status:0 host.server-address:",
         out_of_range("check_snmp", "trap-host.server-address", "1,255"),
         [this] { hosts_[1].server_address = "host"; }},
    };
    for (const auto& row : rows) {
        EXPECT_FALSE(passes()) << row.refusal;
        EXPECT_EQ(door.trace({"log"}).end()[-3], row.said);
        EXPECT_EQ(reason(), row.refusal);
        row.mend();
    }
    EXPECT_TRUE(passes()) << "nothing else";
}

TEST_F(SnmpCheck, TheFieldsOfAUserAreCheckedInTheirOrderAndBeforeThePort) {
    use_v3();
    snmp_.username = "";
    snmp_.password = "";
    snmp_.port = -1;
    EXPECT_FALSE(passes());
    EXPECT_EQ(reason(), out_of_range("check_snmp_v3", "username", "1,12"));
    snmp_.username = "operator";
    EXPECT_FALSE(passes());
    EXPECT_EQ(reason(), out_of_range("check_snmp_v3", "password", "1,32"));
}

TEST_F(SnmpCheck, AllFieldsAreCheckedEvenWhenSnmpIsOff) {
    snmp_.status = 0;
    const auto refuses = [this](const std::function<void(snmp_settings&)>& spoil) {
        const snmp_settings before = snmp_;
        spoil(snmp_);
        EXPECT_FALSE(passes());
        snmp_ = before;
    };
    use_host(2, 0, "host");
    refuses([](snmp_settings& snmp) { snmp.version = 2; });
    refuses([](snmp_settings& snmp) { snmp.port = 65536; });
    refuses([](snmp_settings& snmp) { snmp.read_only_community = ""; });
    refuses([](snmp_settings& snmp) { snmp.restrict_source = 2; });
    refuses([](snmp_settings& snmp) { snmp.trap_community = ""; });
    refuses([](snmp_settings& snmp) { snmp.trap_types[8] = 2; });
    refuses([this](snmp_settings& /*snmp*/) { hosts_[2].id = 3; });
    hosts_[2].id = 2;
    use_v3();
    refuses([](snmp_settings& snmp) { snmp.username = ""; });
    refuses([](snmp_settings& snmp) { snmp.password = ""; });
    EXPECT_TRUE(passes()) << "otherwise in order";
}

} // namespace orlo::test
