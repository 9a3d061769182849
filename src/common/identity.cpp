// SPDX-License-Identifier: MIT
#include "common/identity.h"

#include "common/command.h"
#include "common/text.h"
#include "uci/option.h"

#include <cstring>

using orlo::CommandOutput;
using orlo::is_radio;
using orlo::is_vap;
using orlo::OptionValue;
using orlo::Text;
using orlo::vaps_per_radio;

const char* const config_disabled_option[2] = {"wifi0.disabled", "wifi1.disabled"};
const char* const config_channel_option[2] = {"wifi0.channel", "wifi1.channel"};
const char* const config_power_option[2] = {"wifi0.txpower", "wifi1.txpower"};
const char* const config_bw_option[2] = {"wifi0.htmode", "wifi1.htmode"};
const char* const config_eg_ch_option[2] = {"wifi0.eg_ch", "wifi1.eg_ch"};

// In the agent's own package, apart from the wireless settings.
const char* const config_force_disable_option[2] = {"wifi0.forceDisable", "wifi1.forceDisable"};

// clang-format off
const char* const mwl_interface_name[32] = {
    "wdev0ap0", "wdev0ap1", "wdev0ap2", "wdev0ap3",
    "wdev0ap4", "wdev0ap5", "wdev0ap6", "wdev0ap7",
    "wdev0ap8", "wdev0ap9", "wdev0ap10", "wdev0ap11",
    "wdev0ap12", "wdev0ap13", "wdev0ap14", "wdev0ap15",
    "wdev1ap0", "wdev1ap1", "wdev1ap2", "wdev1ap3",
    "wdev1ap4", "wdev1ap5", "wdev1ap6", "wdev1ap7",
    "wdev1ap8", "wdev1ap9", "wdev1ap10", "wdev1ap11",
    "wdev1ap12", "wdev1ap13", "wdev1ap14", "wdev1ap15",
};

namespace {

const char* const radio_section[2] = {"wifi0", "wifi1"};
const char* const radio_interface[2] = {"wlan0", "wlan1"};

const char* const vap_section[32] = {
    "wifi0vap0", "wifi0vap1", "wifi0vap2", "wifi0vap3",
    "wifi0vap4", "wifi0vap5", "wifi0vap6", "wifi0vap7",
    "wifi0vap8", "wifi0vap9", "wifi0vap10", "wifi0vap11",
    "wifi0vap12", "wifi0vap13", "wifi0vap14", "wifi0vap15",
    "wifi1vap0", "wifi1vap1", "wifi1vap2", "wifi1vap3",
    "wifi1vap4", "wifi1vap5", "wifi1vap6", "wifi1vap7",
    "wifi1vap8", "wifi1vap9", "wifi1vap10", "wifi1vap11",
    "wifi1vap12", "wifi1vap13", "wifi1vap14", "wifi1vap15",
};
// clang-format on

// The option's value, in a buffer of N bytes, is (or is not) the text; an option that cannot be
// read is neither.
template <size_t N>
bool option_is(const char* key, const char* text) {
    OptionValue<N> value;
    return value.read("wireless", key) && value.is(text);
}

template <size_t N>
bool option_is_not(const char* key, const char* text) {
    OptionValue<N> value;
    return value.read("wireless", key) && !value.is(text);
}

} // namespace

namespace orlo {

const char* section_of_interface(const char* name) {
    for (int radio = 0; radio < radio_count; radio++) {
        if (strcmp(name, radio_interface[radio]) == 0) {
            return radio_section[radio];
        }
    }
    return nullptr;
}

} // namespace orlo

const char* get_uci_ifname(int radio, int vap) {
    return is_vap(radio, vap) ? vap_section[radio * vaps_per_radio + vap] : "";
}

const char* get_mwl_ifname(int radio, int vap) {
    return is_vap(radio, vap) ? mwl_interface_name[radio * vaps_per_radio + vap] : "";
}

int is_radio_enabled(int radio) {
    return is_radio(radio) && option_is_not<8>(Text<32>("%s.disabled", radio_section[radio]), "1");
}

int is_vap_enabled(int radio, int vap) {
    return is_vap(radio, vap) &&
           option_is_not<8>(Text<32>("%s.disabled", get_uci_ifname(radio, vap)), "1");
}

int is_vap_ml_mode(int radio, int vap) {
    return is_vap(radio, vap) &&
           option_is<8>(Text<32>("%s.mode", get_uci_ifname(radio, vap)), "qx_mesh");
}

int is_vap_ml_acceptor_enabled(int radio, int vap) {
    return is_vap(radio, vap) &&
           option_is<8>(Text<32>("%s.acceptor", get_uci_ifname(radio, vap)), "1");
}

int uci_is_vap_quilt(int radio, int vap) {
    return is_vap(radio, vap) && option_is<32>(Text<32>("wifi%dvap%d.mode", radio, vap), "quilt");
}

int uci_is_vap_ml_sta(int radio, int vap) {
    return is_vap(radio, vap) && option_is<32>(Text<32>("wifi%dvap%d.mode", radio, vap), "qx_mesh");
}

int uci_is_vap_area_auth(int radio, int vap) {
    return is_vap(radio, vap) && option_is<32>(Text<32>("wifi%dvap%d.macfilter", radio, vap), "4");
}

int is_vap_up(int radio, int vap) {
    if (!is_vap(radio, vap)) {
        return 0;
    }
    CommandOutput listed(
        Text<64>("ifconfig | grep -e '^%s ' | awk '{print $1}'", get_mwl_ifname(radio, vap)));
    char name[8];
    return listed.started() && listed.read_line(name, sizeof name);
}
