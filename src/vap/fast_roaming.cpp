// SPDX-License-Identifier: MIT
#include "vap/fast_roaming.h"

#include "uci/staging.h"
#include "vap/speaker.h"

#include <cstdlib>

namespace orlo {

namespace {

struct Wording {
    Line disabled;
    Line enabled;
    Line ft_status;
    Line ft_over_ds;
    Line mobility_domain;
    Line r0_key_lifetime;
    Line reassoc_deadline;
    Line aes_key;
    Line rrm;
    Line wnm;
};

const Wording own_wording = {
    {"info: fast_roaming.status: %d\n"},
    {"info: fast_roaming->status: %d\n"},
    {"info: fast_roaming->ft.status: %d\n"},
    {"info: fast_roaming->ft.ft_over_ds: %d\n"},
    {"info: fast_roaming->ft.mobility_domain: %s\n"},
    {"info: fast_roaming->ft.r0_key_lifetime: %d\n"},
    {"info: fast_roaming->ft.reassoc_deadline: %d\n"},
    {"info: fast_roaming->aes_key: %s\n"},
    {"info: fast_roaming.rrm.status:%d\n"},
    {"info: fast_roaming.wnm.status:%d\n"},
};

const Wording vap_wording = {
    indexed("info: vap_settings[%d].fast_roaming.status: %d\n"),
    indexed("info: vap_settings[%d].fast_roaming.status: %d\n"),
    indexed("info: vap_settings[%d].fast_roaming.ft.status: %d\n"),
    indexed("info: vap_settings[%d].fast_roaming.ft.ft_over_ds: %d\n"),
    indexed("info: vap_settings[%d].fast_roaming.ft.mobility_domain: %s\n"),
    indexed("info: vap_settings[%d].fast_roaming.ft.r0_key_lifetime: %d\n"),
    indexed("info: vap_settings[%d].fast_roaming.ft.reassoc_deadline: %d\n"),
    indexed("info: vap_settings[%d].fast_roaming.aes_key: %s\n"),
    indexed("info: vap_settings[%d].fast_roaming.rrm.status:%d\n"),
    indexed("info: vap_settings[%d].fast_roaming.wnm.status:%d\n"),
};

const char* const switches[] = {".ieee80211r", ".ieee80211k", ".ieee80211v"};

using Key = Text<128>;

// One VAP's settings being staged. Each step says whether it succeeded, and logs why not.
class Roaming {
public:
    Roaming(const Speaker& speaker, const Wording& wording, uint32_t radio, uint32_t vap)
        : speaker_(speaker), wording_(wording), radio_(radio), vap_(vap) {}

    bool stage_all(fast_roaming* settings) const {
        if (settings->status != 1) {
            speaker_.say(wording_.disabled, settings->status);
            return turn_off();
        }
        speaker_.say(wording_.enabled, settings->status);
        if (!stage_transition(*settings) || !stage_key_holders(settings->key_holder_list)) {
            return false;
        }
        consume(&settings->key_holder_list);
        return stage_assistance(*settings);
    }

private:
    bool turn_off() const {
        for (const char* suffix : switches) {
            if (!stage_text(Key("wifi%dvap%d%s", radio_, vap_, suffix), "0")) {
                return false;
            }
        }
        return true;
    }

    // 802.11r.
    bool stage_transition(const fast_roaming& settings) const {
        const fast_roaming_ft& ft = settings.ft;
        return number(ft.status, 0, 1, wording_.ft_status, "ieee80211r",
                      "error: The ieee80211r status is error!\n") &&
               number(ft.ft_over_ds, 0, 1, wording_.ft_over_ds, "ft_over_ds",
                      "error: The ieee80211r ft_over_ds is error!\n") &&
               text(ft.mobility_domain, wording_.mobility_domain, "mobility_domain",
                    "error: The ieee80211r mobility_domain is error!\n") &&
               number(ft.r0_key_lifetime, 1, 65535, wording_.r0_key_lifetime, "r0_key_lifetime",
                      "error: The ieee80211r r0_key_lifetime is error!\n") &&
               number(ft.reassoc_deadline, 1000, 65535, wording_.reassoc_deadline,
                      "reassociation_deadline",
                      "error: The ieee80211r reassociation_deadline is error!\n") &&
               text(settings.aes_key, wording_.aes_key, "aes_key",
                    "error: The ieee80211r aes_key is error!\n");
    }

    // 802.11k and v.
    bool stage_assistance(const fast_roaming& settings) const {
        return number(settings.rrm.status, 0, 1, wording_.rrm, "ieee80211k",
                      "error: The ieee80211k status is error!\n") &&
               number(settings.wnm.status, 0, 1, wording_.wnm, "ieee80211v",
                      "error: The ieee80211v status is error!\n");
    }

    bool stage_key_holders(const mac_list& list) const {
        if (list.head == nullptr) {
            LOG_TRACE_FOR(speaker_.operation, "error: The ieee80211r key holder list is error!\n");
            return false;
        }
        const Key key("wifi%dvap%d.key_holder_list", radio_, vap_);
        if (uciDeleteValue("wireless", key, 0) != 0) {
            LOG_TRACE_FOR(speaker_.operation,
                          "warning: Delete key holder list failed. Maybe empty\n");
        }
        for (const mac_list_node* node = list.head; node != nullptr; node = node->next) {
            if (!add_key_holder(key, node->mac)) {
                return false;
            }
        }
        return true;
    }

    bool add_key_holder(const Key& key, const char* mac) const {
        if (mac == nullptr || *mac == '\0') {
            LOG_TRACE_FOR(speaker_.operation, "error: This node is a null string in mac list.\n");
            return false;
        }
        if (uciAddListElement("wireless", key, mac) != 0) {
            LOG_TRACE_FOR(speaker_.operation, "error: Add Mac Address %s to key holder failed.\n",
                          mac);
            return false;
        }
        LOG_TRACE_FOR(speaker_.operation, "info: Set %s config %s option to %s successful.\n",
                      "wireless", key.c_str(), mac);
        return true;
    }

    // The agent's allocations end here. The count is its own: only counted down, and any number.
    static void consume(mac_list* list) {
        while (mac_list_node* node = list->head) {
            list->head = node->next;
            node->next = nullptr;
            list->count = static_cast<int32_t>(static_cast<uint32_t>(list->count) - 1U);
            free(node);
        }
        list->tail = nullptr;
    }

    bool number(int32_t value, int32_t least, int32_t most, const Line& says, const char* option,
                const char* refusal) const {
        if (value < least || value > most) {
            LOG_TRACE_FOR(speaker_.operation, "%s", refusal);
            return false;
        }
        speaker_.say(says, value);
        const Key key("wifi%dvap%d.%s", radio_, vap_, option);
        if (!stage_number("wireless", key, value)) {
            LOG_TRACE_FOR(speaker_.operation, "error: Set Value Failed : wireless.%s=%d!\n",
                          key.c_str(), value);
            return false;
        }
        return true;
    }

    bool text(const char* value, const Line& says, const char* option, const char* refusal) const {
        if (value == nullptr) {
            LOG_TRACE_FOR(speaker_.operation, "%s", refusal);
            return false;
        }
        speaker_.say(says, value);
        return stage_text(Key("wifi%dvap%d.%s", radio_, vap_, option), value);
    }

    bool stage_text(const Key& key, const char* value) const {
        if (!stage("wireless", key, value)) {
            LOG_TRACE_FOR(speaker_.operation, "error: Set Value Failed : wireless.%s=%s!\n",
                          key.c_str(), value);
            return false;
        }
        return true;
    }

    const Speaker& speaker_;
    const Wording& wording_;
    uint32_t radio_;
    uint32_t vap_;
};

} // namespace

int set_vap_fast_roaming(uint32_t radio, uint32_t vap, fast_roaming* settings) {
    const Speaker speaker = {"set_vap_fast_roaming", vap};
    return Roaming(speaker, own_wording, radio, vap).stage_all(settings) ? 0 : discard_staged();
}

int apply_vap_fast_roaming(uint32_t radio, uint32_t vap, fast_roaming* settings) {
    const Speaker speaker = {"api_apply_vap", vap};
    return Roaming(speaker, vap_wording, radio, vap).stage_all(settings) ? 0 : discard_staged();
}

} // namespace orlo
