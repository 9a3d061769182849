// SPDX-License-Identifier: MIT
// Links between access points over the air. The link of a radio is its first VAP: the parent runs
// it as an access point, the child as a station of the parent's.
#include "common/identity.h"
#include "common/pending_services.h"
#include "ops/operations.h"
#include "uci/option.h"
#include "uci/staging.h"

#include <cstring>

using orlo::OptionValue;
using orlo::stage;
using orlo::Text;

namespace {

// The steps below work in its name.
constexpr const char* apply_wds = "api_apply_wds";

constexpr int link_count = 2;
constexpr int32_t longest_rekey = 86400; // seconds

using Key = Text<128>;

// A value that the record does not spell out, and the lines about writing it: they print the
// option.
struct Value {
    const char* text;
    const char* written;
    const char* failed;
};

// clang-format off
const Value reset_mode = {
    "ap",
    "Set config option %s to ap.\n",
    "error: set config option %s to ap failed.\n"};
const Value parent_mode = {
    "ap",
    "Set config option %s to ap.\n",
    "error: WDS parent - set config option %s to ap failed.\n"};
const Value child_mode = {
    "sta",
    "Set config option %s to sta.\n",
    "error: WDS child - set config option %s to sta failed.\n"};
const Value one = {
    "1",
    "Set config option %s to 1.\n",
    "error: set config option %s to 1 failed.\n"};
const Value none = {
    "none",
    "Set config option %s to none.\n",
    "error: set config option %s to none failed.\n"};
const Value wpa_psk = {
    "wpa-psk",
    "Set config option %s to wpa-psk.\n",
    "error: set config option %s to wpa-psk failed.\n"};
// clang-format on

// The numbers of the record. What has no row is refused.
enum { wpa_alone = 1, wpa2 = 2, wpa_and_wpa2 = 3 };
enum { tkip_alone = 1, ccmp = 2, tkip_and_ccmp = 3 };

struct Version {
    int32_t number;
    const char* encryption;
    Value wpaversion;
};

struct Cipher {
    int32_t number;
    Value cipher;
};

// clang-format off
const Version versions[] = {
    {wpa2, "psk2", {
        "wpa2",
        "Set config option %s to wpa2.\n",
        "error: set config option %s to wpa2 failed.\n"}},
    {wpa_and_wpa2, "psk-mixed", {
        "mixed",
        "Set config option %s to mixed.\n",
        "error: set config option %s to mixed failed.\n"}},
};

const Cipher ciphers[] = {
    {ccmp, {
        "ccmp",
        "Set config option %s to ccmp.\n",
        "error: set config option %s to ccmp failed.\n"}},
    {tkip_and_ccmp, {
        "tkip+ccmp",
        "Set config option %s to tkip+ccmp.\n",
        "error: set config option %s to tkip+ccmp failed.\n"}},
};
// clang-format on

template <class Row, size_t N>
const Row* find(const Row (&rows)[N], int32_t number) {
    for (const Row& row : rows) {
        if (row.number == number) {
            return &row;
        }
    }
    return nullptr;
}

bool set(const Key& key, const Value& value) {
    if (!stage("wireless", key, value.text)) {
        LOG_TRACE_FOR(apply_wds, value.failed, key.c_str());
        return false;
    }
    LOG_TRACE_FOR(apply_wds, value.written, key.c_str());
    return true;
}

bool set_text(const Key& key, const char* text) {
    if (!stage("wireless", key, text)) {
        LOG_TRACE_FOR(apply_wds, "error: set config option %s to %s failed.\n", key.c_str(), text);
        return false;
    }
    LOG_TRACE_FOR(apply_wds, "Set config option %s to %s.\n", key.c_str(), text);
    return true;
}

bool set_number(const Key& key, int32_t number) {
    if (!orlo::stage_number("wireless", key, number)) {
        LOG_TRACE_FOR(apply_wds, "error: set config option %s to %d failed.\n", key.c_str(),
                      number);
        return false;
    }
    LOG_TRACE_FOR(apply_wds, "Set config option %s to %d.\n", key.c_str(), number);
    return true;
}

// Back to an ordinary VAP.
bool reset_first_vap(int radio) {
    const Key key("wifi%dvap0.wds", radio);
    if (OptionValue<8>().read("wireless", key)) {
        if (uciDeleteValue("wireless", key, 0) != 0) {
            LOG_TRACE_FOR(apply_wds, "error: delete config option %s failed.\n", key.c_str());
            return false;
        }
        LOG_TRACE_FOR(apply_wds, "Delete config option %s.\n", key.c_str());
    }
    return set(Key("wifi%dvap0.mode", radio), reset_mode);
}

// One entry's link being staged. Each step says whether it succeeded, and logs why not.
class Link {
public:
    Link(const wds_settings& settings, int index, const char* radio)
        : settings_(settings), index_(index), radio_(radio), section_("%svap0", radio) {}

    bool stage_all() const {
        return stage_name() && stage_mode() && stage_security() && disable_other_vaps();
    }

private:
    bool stage_name() const {
        if (settings_.ssid == nullptr) {
            LOG_TRACE_FOR(apply_wds, "error: wds_settings[%d].ssid is NULL.\n", index_);
            return false;
        }
        return set_text(key_of("ssid"), settings_.ssid) && set(key_of("wds"), one);
    }

    bool stage_mode() const {
        if (settings_.wds_mode == nullptr) {
            LOG_TRACE_FOR(apply_wds, "error: wds_settings[%d].wds_mode is NULL.\n", index_);
            return false;
        }
        const Key key = key_of("mode");
        if (strcmp(settings_.wds_mode, "child") == 0) {
            return set(key, child_mode);
        }
        if (strcmp(settings_.wds_mode, "parent") == 0) {
            return set(key, parent_mode);
        }
        LOG_TRACE_FOR(apply_wds, "error: config option %s is not suppot %s mode.\n", key.c_str(),
                      settings_.wds_mode);
        return false;
    }

    bool stage_security() const {
        if (settings_.security == nullptr) {
            LOG_TRACE_FOR(apply_wds, "error: wds_settings[%d].security is NULL.\n", index_);
            return false;
        }
        if (strcmp(settings_.security, "none") == 0) {
            return stage_no_security();
        }
        if (strcmp(settings_.security, "wpa") == 0) {
            return stage_wpa();
        }
        LOG_TRACE_FOR(apply_wds, "error: There is no %s encryption for WDS.\n", settings_.security);
        return false;
    }

    bool stage_no_security() const {
        if (!set(key_of("security"), none) || !set(key_of("encryption"), none)) {
            return false;
        }
        const Key key = key_of("key");
        if (uciDeleteValue("wireless", key, 0) != 0) {
            LOG_TRACE_FOR(apply_wds, "error: Delete config option %s failed.\n", key.c_str());
            return false;
        }
        return true;
    }

    bool stage_wpa() const {
        return set(key_of("security"), wpa_psk) && stage_ciphers() && stage_key() &&
               stage_frame_protection() && stage_rekeying();
    }

    bool stage_ciphers() const {
        const Version* version = find_version();
        if (version == nullptr || !set(key_of("wpaversion"), version->wpaversion)) {
            return false;
        }
        const Cipher* cipher = find_cipher();
        if (cipher == nullptr || !set(key_of("cipher"), cipher->cipher)) {
            return false;
        }
        return set_text(key_of("encryption"),
                        Text<32>("%s+%s", version->encryption, cipher->cipher.text));
    }

    const Version* find_version() const {
        const int32_t number = settings_.wpa.version;
        const Version* version = find(versions, number);
        if (number == wpa_alone) {
            LOG_TRACE_FOR(apply_wds, "error: R7710's WDS is not support only WPA setting. "
                                     "It is support WAP2 or WPA+WPA2.\n");
        } else if (version == nullptr) {
            LOG_TRACE_FOR(apply_wds, "error: The versoin %d doesn't exist in WPA versoin.\n",
                          number);
        }
        return version;
    }

    const Cipher* find_cipher() const {
        const int32_t number = settings_.wpa.cipher;
        const Cipher* cipher = find(ciphers, number);
        if (number == tkip_alone) {
            LOG_TRACE_FOR(apply_wds, "error: R7710's WDS is not support only TKIP setting. "
                                     "It is support CCMP or CCMP+TKIP\n");
        } else if (cipher == nullptr) {
            LOG_TRACE_FOR(apply_wds, "error: Cipher type doesn't exist in WPA.\n");
        }
        return cipher;
    }

    bool stage_key() const {
        if (settings_.wpa.key == nullptr) {
            LOG_TRACE_FOR(apply_wds, "error: wds_settings[%d].wpa.key is NULL.\n", index_);
            return false;
        }
        return set_text(key_of("key"), settings_.wpa.key) &&
               set_text(key_of("wpakey"), settings_.wpa.key);
    }

    bool stage_frame_protection() const {
        const int32_t mfp = settings_.wpa.mfp;
        if (mfp == 0) {
            return set_number(key_of("ieee80211w"), 0);
        }
        if (mfp != 1) {
            LOG_TRACE_FOR(apply_wds, "error: wds_settings[%d].wpa.mfp is %d.\n", index_, mfp);
            return false;
        }
        if (settings_.wpa.version != wpa2) {
            LOG_TRACE_FOR(apply_wds,
                          "error: %s MFP can be enabled only on WPA2. "
                          "It cannot be enabled WPA or WPA+WPA2.\n",
                          section_.c_str());
            return false;
        }
        return set(key_of("ieee80211w"), one);
    }

    bool stage_rekeying() const {
        const int32_t interval = settings_.wpa.bcast_key_refresh_rate;
        if (interval < 0 || interval > longest_rekey) {
            LOG_TRACE_FOR(apply_wds,
                          "error: wds_settings[%d].wpa.bcast_key_refresh_rate %d is not in "
                          "range %d ~ %d.\n",
                          index_, interval, 0, longest_rekey);
            return false;
        }
        return set_number(key_of("wpa_group_rekey"), interval);
    }

    // The radio is the link's alone. Nothing enables its VAPs again when the link goes.
    bool disable_other_vaps() const {
        for (int vap = 1; vap < orlo::vaps_per_radio; vap++) {
            if (!set(Key("%svap%d.disabled", radio_, vap), one)) {
                return false;
            }
        }
        return true;
    }

    Key key_of(const char* option) const { return Key("%s.%s", section_.c_str(), option); }

    const wds_settings& settings_;
    int index_;
    const char* radio_;
    Text<16> section_;
};

bool stage_link(const wds_settings& settings, int index) {
    if (settings.radio_intf == nullptr) { // nothing else of it is read
        LOG_TRACE_FOR(apply_wds, "info: wds_settings[%d].radio_intf is NULL, go to next.\n", index);
        return true;
    }
    const char* radio = orlo::section_of_interface(settings.radio_intf);
    if (radio == nullptr) {
        LOG_TRACE_FOR(apply_wds, "error: wds_settings[%d].radio_intf should not be \"%s\".\n",
                      index, settings.radio_intf);
        return false;
    }
    return Link(settings, index, radio).stage_all();
}

} // namespace

int api_apply_wds(const struct wds_settings* wds) {
    LOG_TRACE("Entering...\n");
    if (wds == nullptr) {
        return -1;
    }
    for (int radio = 0; radio < orlo::radio_count; radio++) {
        if (!reset_first_vap(radio)) {
            return orlo::discard_staged();
        }
    }
    for (int index = 0; index < link_count; index++) {
        if (!stage_link(wds[index], index)) {
            return orlo::discard_staged();
        }
    }
    orlo::mark_changed(orlo::service_network);
    LOG_TRACE("End, apply WDS: Success\n");
    return 0;
}
