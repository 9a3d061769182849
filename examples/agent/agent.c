// SPDX-License-Identifier: MIT
/*
 * An agent in a hundred lines. It puts one network on the 5 GHz radio, the way every agent applies
 * a configuration: keep the web interface out, stage all of it, save, wait until the network is up,
 * and let the web interface in again.
 */
#include <orlo/vendor_ops.h>

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

enum { RADIO = 1, VAP = 0, CHANNEL = 44, POWER_PERCENT = 75 };

/* The agent's own fingerprint of what is applied below; any text that changes with it. */
static const char fingerprint[] = "example-network-1";

/* The table is all that an agent needs. Without linking: dlsym(dlopen(...), "Vendor_Ops"). */
static const struct vendor_ops* const ap = &Vendor_Ops;

static int fail(const char* operation, int result) {
    fprintf(stderr, "agent: %s: failed (%d)\n", operation, result);
    return -1;
}

/* Texts that the library returns are the caller's to free. */
static int is_applied(void) {
    char* hash = ap->api_config_get_hash();
    const int same = hash != NULL && strcmp(hash, fingerprint) == 0;
    free(hash);
    return same;
}

/* A VAP whose status is 0 is switched off; nothing else of its record is read. */
static void describe_network(struct vap_settings vaps[ORLO_VAPS_PER_RADIO]) {
    struct vap_settings* vap = &vaps[VAP];
    memset(vaps, 0, ORLO_VAPS_PER_RADIO * sizeof *vaps);
    vap->status = 1;
    vap->ssid = "Example";
    vap->bcast_ssid = 1;
    vap->vlan_id = 20;
    vap->inactivity_timer = ORLO_NOT_GIVEN;
    vap->deauth_dup_auth = ORLO_NOT_GIVEN;
    vap->assoc_advertisement = ORLO_NOT_GIVEN;
    vap->dtim_period = ORLO_NOT_GIVEN;
    vap->proxy_arp = ORLO_NOT_GIVEN;
    vap->wireless_security = "wpa-personal";
    vap->wpa_personal.wpa = ORLO_WPA2 | ORLO_WPA3;
    vap->wpa_personal.cipher_suites = ORLO_CIPHER_CCMP;
    vap->wpa_personal.refresh_rate = 3600;
    vap->wpa_personal.key = "a passphrase of one's own";
}

/*
 * Stages everything. An operation that fails discards what was staged, by the earlier ones too: the
 * stored configuration is then as it was.
 */
static int stage_all(void) {
    struct vap_settings vaps[ORLO_VAPS_PER_RADIO];
    int result = ap->api_apply_radio_status(RADIO, 1);
    if (result != 0) {
        return fail("api_apply_radio_status", result);
    }
    /* Channel and power are the exception: these two commit at once. */
    result = ap->api_apply_wireless_interface(RADIO, "not-override", CHANNEL, -1, POWER_PERCENT);
    if (result != 0) {
        return fail("api_apply_wireless_interface", result);
    }
    describe_network(vaps);
    result = ap->api_apply_vap(RADIO, vaps);
    if (result != 0) {
        return fail("api_apply_vap", result);
    }
    result = ap->api_config_set_hash(fingerprint);
    return result == 0 ? 0 : fail("api_config_set_hash", result);
}

/* Saving commits what is staged, restarts what it concerns, and waits for the network. */
static int apply(void) {
    int result = stage_all();
    if (result != 0) {
        return result;
    }
    result = ap->api_save_config();
    if (result != 0) {
        return fail("api_save_config", result);
    }
    result = ap->api_is_vap_established_check();
    return result == 0 ? 0 : fail("api_is_vap_established_check", result);
}

static void report(void) {
    char* ssid = ap->api_get_vap_ssid(RADIO, VAP);
    printf("radio %d: channel %d, power %d%%, \"%s\" is %s\n", RADIO, ap->api_get_channel(RADIO),
           ap->api_get_transmitpower(RADIO), ssid == NULL ? "" : ssid,
           ap->api_get_vap_status(RADIO, VAP) == 1 ? "up" : "down");
    free(ssid);
}

int main(void) {
    int result = 0;
    if (is_applied()) {
        puts("already applied");
    } else if (ap->api_is_config_applying_check() != 0) {
        fputs("agent: the web interface is applying its own configuration\n", stderr);
        return EXIT_FAILURE;
    } else {
        result = apply();
        ap->api_release_web_ui_block();
    }
    report();
    return result == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
