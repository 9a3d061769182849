// SPDX-License-Identifier: MIT
// Security of a VAP: the translation of the agent's settings into options of the VAP's section. One
// translator serves every operation that sets up VAPs; what differs between them is data.
#pragma once

#include "common/text.h"
#include "orlo/records.h"
#include "vap/speaker.h"

#include <cstdint>

namespace orlo {

// What an operation that sets up VAPs has of its own.
struct SecurityWording {
    const char* sae_groups;

    // What it says of the settings.
    struct {
        Line key;
        Line wpa;
        Line cipher_suites;
        Line refresh_rate;
    } personal;
    struct {
        Line wpa;
        Line cipher_suites;
        Line pre_authentication;
        Line pre_authentication_limit;
        Line radius_accounting;
        Line dynamic_vlan;
        Line require_vlan_id;
        Line bcast_refresh_rate;
        Line session_refresh_rate;
    } enterprise;
    struct {
        Line ip;
        Line key;
        Line auth_port;
        Line account_port;
        Line account_disabled;
        Line deleted_secret;
        Line deleted_second_server;
        Line deleted_second_secret;
    } radius;
    struct {
        Line applied;
        Line ignored;
    } frame_protection;

    // Why it refuses them.
    const char* set_failed;
    const char* delete_failed;
    const char* no_key;
    const char* unknown_version;
    const char* mixed_cipher;
    const char* wrong_group_rekey;
    const char* wrong_radius_accounting;
    const char* wrong_bcast_refresh;
    const char* wrong_auth_port;
    const char* wrong_account_port;
    const char* no_auth_server;
};

extern const SecurityWording vap_security_wording;

// The kinds of security, by the names that agents give them.
enum class Security { open, wep, dynamic_wep, personal, enterprise, unknown };

Security security_named(const char* name); // NULL is open

constexpr bool is_wpa(Security security) {
    return security == Security::personal || security == Security::enterprise;
}

// How a translation ends. A refusal has been logged.
enum class Outcome { done, refused, refused_keeping_staged };

constexpr Outcome outcome_of(bool done) {
    return done ? Outcome::done : Outcome::refused;
}

// Translates the settings of one VAP.
class SecurityTranslator {
public:
    SecurityTranslator(const Speaker& speaker, const SecurityWording& wording, uint32_t radio,
                       uint32_t vap)
        : speaker_(speaker), wording_(wording), radio_(radio), vap_(vap) {}

    Outcome open();
    Outcome wep(const ::wep& settings);
    void dynamic_wep(const char* name, const dot1x& settings);
    Outcome personal(const wpa_personal& settings);
    Outcome enterprise(const wpa_enterprise& settings, const radius_server (&servers)[2]);

    // What follows the translation to any security. 0, or -1 with everything staged discarded, but
    // for the one refusal that keeps it.
    int finish(Outcome translation, Security security, uint32_t wpa, int32_t mfp);

private:
    struct WpaOptions;

    // Takes away the options of WPA3 that a VAP of this security and these versions does not use.
    Outcome clean_up(Security security, uint32_t wpa);

    // Protects the VAP's management frames as its versions of WPA call for; other security has no
    // such protection.
    Outcome protect_frames(Security security, uint32_t wpa, int32_t mfp);

    Text<128> key_of(const char* option) const;
    bool write(const char* option, const char* value);
    bool write_number(const char* option, int32_t value);
    bool write_logged_as(const char* option, const char* value, const char* logged);
    bool remove(const char* option);
    bool refuse(const char* text) const;

    bool write_wep_authentication(const ::wep& settings);
    bool write_wep_keys(const ::wep& settings);
    bool write_personal(const wpa_personal& settings);
    bool write_enterprise(const wpa_enterprise& settings);
    bool write_rekeying(const wpa_enterprise& settings);
    bool write_wpa_options(const WpaOptions* row, uint32_t wpa);
    bool write_sae(const char* key);
    bool write_wep_key(int number, const char* text, const char* key, bool hexadecimal);
    bool write_dynamic_vlan(int32_t dynamic_vlan);
    bool write_radius_servers(const radius_server (&servers)[2]);
    bool write_radius_server(int index, const radius_server& server);
    void forget_second_server();

    static const WpaOptions personal_rows[];
    static const WpaOptions enterprise_rows[];

    const Speaker& speaker_;
    const SecurityWording& wording_;
    uint32_t radio_;
    uint32_t vap_;
};

// Stages the protection of management frames that a WPA version calls for. -1 discards nothing.
int apply_mfp(uint32_t radio, uint32_t vap, uint32_t wpa, uint32_t mfp);

} // namespace orlo
