// SPDX-License-Identifier: MIT
// Names and state of radios and VAPs.
#include "support/access_point.h"

namespace orlo::test {

class Identity : public AccessPoint {
protected:
    using Radio = int(int);
    using Vap = int(int, int);
    using Name = const char*(int, int);

    template <class Function>
    static Function& call(const char* name) {
        return *exported<Function>(name);
    }

    static const char* entry(const char* table, int index) {
        return static_cast<const char* const*>(dlsym(vendor_library(), table))[index];
    }
};

TEST_F(Identity, RadiosHaveTheirOptionKeys) {
    const struct {
        const char* table;
        const char* option;
    } rows[] = {
        {"config_disabled_option", "disabled"}, {"config_channel_option", "channel"},
        {"config_power_option", "txpower"},     {"config_bw_option", "htmode"},
        {"config_eg_ch_option", "eg_ch"},       {"config_force_disable_option", "forceDisable"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(entry(row.table, 0), std::string("wifi0.") + row.option);
        EXPECT_EQ(entry(row.table, 1), std::string("wifi1.") + row.option);
    }
}

TEST_F(Identity, VapsHaveASectionAndAnInterface) {
    for (int radio = 0; radio < 2; radio++) {
        for (int vap = 0; vap < 16; vap++) {
            const std::string section =
                "wifi" + std::to_string(radio) + "vap" + std::to_string(vap);
            const std::string interface =
                "wdev" + std::to_string(radio) + "ap" + std::to_string(vap);
            EXPECT_EQ(call<Name>("get_uci_ifname")(radio, vap), section);
            EXPECT_EQ(call<Name>("get_mwl_ifname")(radio, vap), interface);
            EXPECT_EQ(entry("mwl_interface_name", radio * 16 + vap), interface);
        }
    }
}

TEST_F(Identity, AnIndexOutsideTheDeviceHasNoNameAndNoState) {
    const int outside[][2] = {{-1, 0}, {2, 0}, {0, -1}, {0, 16}, {1, 16}, {1 << 30, 1 << 30}};
    for (const auto& index : outside) {
        EXPECT_STREQ(call<Name>("get_uci_ifname")(index[0], index[1]), "");
        EXPECT_STREQ(call<Name>("get_mwl_ifname")(index[0], index[1]), "");
        for (const char* predicate :
             {"is_vap_enabled", "is_vap_ml_mode", "is_vap_ml_acceptor_enabled", "is_vap_up",
              "uci_is_vap_quilt", "uci_is_vap_ml_sta", "uci_is_vap_area_auth"}) {
            EXPECT_EQ(call<Vap>(predicate)(index[0], index[1]), 0) << predicate;
        }
    }
    EXPECT_EQ(call<Radio>("is_radio_enabled")(-1), 0);
    EXPECT_EQ(call<Radio>("is_radio_enabled")(2), 0);
}

TEST_F(Identity, ARadioIsEnabledUnlessItsOptionIsOneOrMissing) {
    Radio& is_radio_enabled = call<Radio>("is_radio_enabled");
    configure("wireless.wifi1.disabled", "1");
    EXPECT_EQ(is_radio_enabled(1), 0);
    for (const char* other : {"0", "no", "11", "a text longer than its buffer"}) {
        configure("wireless.wifi1.disabled", other);
        EXPECT_EQ(is_radio_enabled(1), 1) << other;
    }
    configure("wireless.wifi1.disabled", "");
    EXPECT_EQ(is_radio_enabled(1), 0) << "missing";
    EXPECT_EQ(is_radio_enabled(0), 1) << "the other radio";
    EXPECT_THAT(door.trace(), IsEmpty()) << "nothing is logged";
}

TEST_F(Identity, AVapIsEnabledUnlessItsOptionIsOneOrMissing) {
    Vap& is_vap_enabled = call<Vap>("is_vap_enabled");
    configure("wireless.wifi1vap7.disabled", "1");
    EXPECT_EQ(is_vap_enabled(1, 7), 0);
    configure("wireless.wifi1vap7.disabled", "0");
    EXPECT_EQ(is_vap_enabled(1, 7), 1);
    configure("wireless.wifi1vap7.disabled", "11");
    EXPECT_EQ(is_vap_enabled(1, 7), 1);
    configure("wireless.wifi1vap7.disabled", "");
    EXPECT_EQ(is_vap_enabled(1, 7), 0) << "missing";
    EXPECT_THAT(door.trace(), IsEmpty()) << "nothing is logged";
}

TEST_F(Identity, ModesAndTheMacFilterAreReadFromTheVapsSection) {
    const struct {
        const char* predicate;
        const char* option;
        const char* value;
        const char* others[3];
    } rows[] = {
        {"is_vap_ml_mode", "mode", "qx_mesh", {"ap", "qx_mes", "qx_mesh2"}},
        {"uci_is_vap_ml_sta", "mode", "qx_mesh", {"ap", "qx_mes", "qx_mesh2"}},
        {"uci_is_vap_quilt", "mode", "quilt", {"ap", "quil", "quilt2"}},
        {"is_vap_ml_acceptor_enabled", "acceptor", "1", {"0", "10", "on"}},
        {"uci_is_vap_area_auth", "macfilter", "4", {"3", "40", "0"}},
    };
    for (const auto& row : rows) {
        Vap& predicate = call<Vap>(row.predicate);
        const std::string option = std::string("wireless.wifi0vap15.") + row.option;
        configure(option, row.value);
        EXPECT_EQ(predicate(0, 15), 1) << row.predicate;
        EXPECT_EQ(predicate(1, 15), 0) << row.predicate << ": another VAP";
        for (const char* other : row.others) {
            configure(option, other);
            EXPECT_EQ(predicate(0, 15), 0) << row.predicate << ": " << other;
        }
        configure(option, "");
        EXPECT_EQ(predicate(0, 15), 0) << row.predicate << ": missing";
    }
    EXPECT_THAT(door.trace(), IsEmpty()) << "nothing is logged";
}

TEST_F(Identity, AVapIsUpWhenItsInterfaceIsListed) {
    Vap& is_vap_up = call<Vap>("is_vap_up");
    ASSERT_EQ(system("ifconfig wdev1ap1 up && ifconfig wdev1ap11 down"), 0);
    EXPECT_EQ(is_vap_up(1, 1), 1);
    EXPECT_EQ(is_vap_up(1, 11), 0) << "it exists but is down";
    ASSERT_EQ(system("ifconfig wdev1ap1 down && ifconfig wdev1ap11 up"), 0);
    EXPECT_EQ(is_vap_up(1, 1), 0) << "wdev1ap11 is another interface";
    EXPECT_EQ(is_vap_up(1, 11), 1);
    EXPECT_THAT(door.trace(),
                ElementsAre("read ifconfig | grep -e '^wdev1ap1 ' | awk '{print $1}'",
                            "read ifconfig | grep -e '^wdev1ap11 ' | awk '{print $1}'",
                            "read ifconfig | grep -e '^wdev1ap1 ' | awk '{print $1}'",
                            "read ifconfig | grep -e '^wdev1ap11 ' | awk '{print $1}'"));
    door.fail(Call::popen);
    EXPECT_EQ(is_vap_up(1, 11), 0) << "cannot be asked";
}

} // namespace orlo::test
