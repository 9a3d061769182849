// SPDX-License-Identifier: MIT
// Waiting until the configured VAPs are up.
#include "support/access_point.h"

#include <set>

namespace orlo::test {

class Establishment : public AccessPoint {
protected:
    Establishment() {
        // The sample has VAP 0 of both radios enabled and up.
        configure("wireless.wifi0.disabled", "0");
        configure("wireless.wifi1.disabled", "0");
    }

    static void set_state(const std::string& interface, const std::string& state) {
        ASSERT_EQ(system(("ifconfig " + interface + " " + state).c_str()), 0);
    }

    // The 32 lines about what is configured: these sections are.
    static Trace configured(const std::set<std::string>& sections) {
        Trace lines;
        for (const char* radio : {"wifi0vap", "wifi1vap"}) {
            for (int vap = 0; vap < 16; vap++) {
                const std::string section = radio + std::to_string(vap);
                lines.push_back("log get_vap_status_configured: " + section +
                                (sections.count(section) != 0 ? ": enabled" : ": disabled"));
            }
        }
        return lines;
    }

    void expect_log(const std::set<std::string>& sections, const Trace& checks,
                    const std::string& end) {
        Trace expected = {own_ + "Entering..."};
        const Trace map = configured(sections);
        expected.insert(expected.end(), map.begin(), map.end());
        expected.insert(expected.end(), checks.begin(), checks.end());
        expected.push_back(own_ + end);
        EXPECT_EQ(door.trace({"log", "sleep"}), expected);
    }

    static std::string looks_at(const std::string& interface) {
        return "read ifconfig | grep -e '^" + interface + " ' | awk '{print $1}'";
    }

    const std::string own_ = "log api_is_vap_established_check: ";
    const std::string enter_ = "log is_all_interface_established: Enter";
    const std::string not_yet_ = own_ + "all VAPs are not established yet, sleep 30 for next round";
    const std::string done_ = "info: all vap interfaces are established.";
};

TEST_F(Establishment, OfVapsThatAreUpTakesNoTime) {
    EXPECT_EQ(ops.api_is_vap_established_check(), 0);
    expect_log({"wifi0vap0", "wifi1vap0"}, {enter_}, done_);
    EXPECT_THAT(door.trace({"read"}), ElementsAre(looks_at("wdev0ap0"), looks_at("wdev1ap0")));
}

TEST_F(Establishment, OfNoVapIsThere) {
    configure("wireless.wifi0.disabled", "1");
    configure("wireless.wifi1.disabled", "1");
    EXPECT_EQ(ops.api_is_vap_established_check(), 0);
    expect_log({}, {}, "info: currently all radios are disabled.");
    EXPECT_THAT(door.trace({"read"}), IsEmpty());
}

TEST_F(Establishment, IsGivenUpAfterFiveChecksThirtySecondsApart) {
    configure("wireless.wifi0vap15.disabled", "0");
    configure("wireless.wifi1vap15.disabled", "0");
    EXPECT_EQ(ops.api_is_vap_established_check(), -1);
    const std::string missing =
        "log is_all_interface_established: wifi0vap15: vap is not established.";
    Trace checks;
    for (int check = 1; check <= 5; check++) {
        checks.insert(checks.end(), {enter_, missing});
        if (check < 5) {
            checks.insert(checks.end(), {not_yet_, "sleep 30"});
        }
    }
    expect_log({"wifi0vap0", "wifi0vap15", "wifi1vap0", "wifi1vap15"}, checks,
               "Establish vap interfaces takes too long, maybe something go wrong?");
    EXPECT_EQ(door.trace({"read"}).size(), 10U) << "the first that is missing ends a check";
}

TEST_F(Establishment, IsWaitedFor) {
    set_state("wdev1ap0", "down");
    door.on_sleep = [](int sleeps) {
        if (sleeps == 4) {
            set_state("wdev1ap0", "up");
        }
    };
    EXPECT_EQ(ops.api_is_vap_established_check(), 0) << "the fifth check finds it up";
    const Trace round = {enter_,
                         "log is_all_interface_established: wifi1vap0: vap is not established.",
                         not_yet_, "sleep 30"};
    Trace checks;
    for (int i = 0; i < 4; i++) {
        checks.insert(checks.end(), round.begin(), round.end());
    }
    checks.push_back(enter_);
    expect_log({"wifi0vap0", "wifi1vap0"}, checks, done_);
}

TEST_F(Establishment, ExpectsWhatWasConfiguredAtTheStart) {
    set_state("wdev1ap0", "down");
    door.on_sleep = [](int sleeps) {
        if (sleeps == 1) {
            configure("wireless.wifi1vap0.disabled", "1");
        }
    };
    EXPECT_EQ(ops.api_is_vap_established_check(), -1) << "although nobody wants it any more";
    EXPECT_EQ(door.trace({"sleep"}).size(), 4U);
}

TEST_F(Establishment, DoesNotConcernTheVapsOfADisabledRadio) {
    set_state("wdev1ap0", "down");
    configure("wireless.wifi1.disabled", "1");
    EXPECT_EQ(ops.api_is_vap_established_check(), 0);
    expect_log({"wifi0vap0"}, {enter_}, done_);
}

TEST_F(Establishment, ConcernsAMeshLinkVapOnlyWhenItAcceptsLinks) {
    configure("wireless.wifi1vap0.mode", "qx_mesh");
    set_state("wdev1ap0", "down");
    for (const char* acceptor : {"0", ""}) {
        configure("wireless.wifi1vap0.acceptor", acceptor);
        door.forget();
        EXPECT_EQ(ops.api_is_vap_established_check(), 0);
        expect_log({"wifi0vap0"}, {enter_}, done_);
    }
    configure("wireless.wifi1vap0.acceptor", "1");
    EXPECT_EQ(ops.api_is_vap_established_check(), -1);
    set_state("wdev1ap0", "up");
    door.forget();
    EXPECT_EQ(ops.api_is_vap_established_check(), 0);
    expect_log({"wifi0vap0", "wifi1vap0"}, {enter_}, done_);
}

TEST_F(Establishment, IsMissedWhenInterfacesCannotBeListed) {
    door.fail_always(Call::popen);
    EXPECT_EQ(ops.api_is_vap_established_check(), -1);
    EXPECT_EQ(door.trace({"sleep"}).size(), 4U);
}

} // namespace orlo::test
