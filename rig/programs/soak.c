// SPDX-License-Identifier: MIT
/*
 * Pushes random VAP settings to both radios, again and again, in one process, as an agent does in
 * the course of months, and watches what the process holds.
 *
 * usage: soak PUSHES SEED SSID KEY STATION
 *   VAP 0 of radio 0 keeps SSID and KEY; STATION is to come back to it after each push.
 */
#include "orlo/vendor_ops.h"

#include <dirent.h>
#include <dlfcn.h>
#include <malloc.h>
#include <stdbool.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

enum { radios = 2, vaps = 16, longest_ssid = 32, longest_key = 63, warm_up = 3 };

static const struct vendor_ops* operations;
static unsigned long long random_state;

/* A sequence that a seed repeats on every machine. */
static unsigned next_random(unsigned below) {
    static const unsigned long long factor = 6364136223846793005ULL;
    random_state = random_state * factor + 1442695040888963407ULL;
    return (unsigned)(random_state >> 33) % below;
}
static void random_text(char* text, unsigned shortest, unsigned longest) {
    static const char letters[] =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789 -_.'\"$#\\";
    const unsigned length = shortest + next_random(longest - shortest + 1);
    for (unsigned i = 0; i < length; i++) {
        text[i] = letters[next_random(sizeof letters - 1)];
    }
    /* A network's name or key that ends in a blank is nobody's intention. */
    text[length - 1] = 'x';
    text[length] = '\0';
}

struct texts {
    char ssid[longest_ssid + 1];
    char key[longest_key + 1];
};

static void fill_vap(struct vap_settings* vap, struct texts* texts) {
    static const uint32_t versions[] = {0x2, 0x4, 0x6};
    static const int32_t vlans[] = {10, 20, 30, 40, 50, 4094};
    random_text(texts->ssid, 1, longest_ssid);
    random_text(texts->key, 8, longest_key);
    *vap = (struct vap_settings){
        .status = next_random(3) == 0,
        .ssid = texts->ssid,
        .bcast_ssid = next_random(4) != 0,
        .vlan_id = vlans[next_random(sizeof vlans / sizeof *vlans)],
        .band_steer = (int32_t)next_random(2),
        .mfp = (int32_t)next_random(2),
        .inactivity_timer = -1,
        .deauth_dup_auth = -1,
        .assoc_advertisement = -1,
        .dtim_period = (int32_t)(1 + next_random(5)),
        .proxy_arp = -1,
        .wireless_security = "none",
    };
    if (next_random(3) != 0) {
        vap->wireless_security = "wpa-personal";
        vap->wpa_personal = (struct wpa_personal){
            .wpa = versions[next_random(sizeof versions / sizeof *versions)],
            .cipher_suites = 0x2,
            .refresh_rate = 3600,
            .key = texts->key,
        };
    }
}

static bool push(const char* ssid, const char* key) {
    for (int radio = 0; radio < radios; radio++) {
        struct vap_settings settings[vaps];
        struct texts texts[vaps];
        for (int vap = 0; vap < vaps; vap++) {
            fill_vap(&settings[vap], &texts[vap]);
        }
        settings[0].status = 1;
        if (radio == 0) {
            settings[0].ssid = ssid;
            settings[0].bcast_ssid = 1;
            settings[0].wireless_security = "wpa-personal";
            settings[0].wpa_personal = (struct wpa_personal){
                .wpa = 0x2, .cipher_suites = 0x2, .refresh_rate = 3600, .key = key};
        }
        if (operations->api_apply_vap(radio, settings) != 0) {
            fprintf(stderr, "soak: api_apply_vap refuses radio %d\n", radio);
            return false;
        }
    }
    if (operations->api_save_config() != 0 || operations->api_is_vap_established_check() != 0) {
        fprintf(stderr, "soak: the VAPs do not come up\n");
        return false;
    }
    return true;
}

static bool is_listed(const char* station) {
    char line[4096] = "";
    bool listed = false;
    operations->api_generate_assoc_client_file();
    FILE* file = fopen("/tmp/assoc_client", "re");
    if (file == NULL) {
        return false;
    }
    while (!listed && fgets(line, sizeof line, file) != NULL) {
        listed = strncmp(line, "0,0,", 4) == 0 && strstr(line, station) != NULL;
    }
    fclose(file);
    return listed;
}

static bool comes_back(const char* station) {
    for (int tries = 0; tries < 120; tries++) {
        if (is_listed(station)) {
            return true;
        }
        usleep(500000);
    }
    fprintf(stderr, "soak: %s does not come back\n", station);
    return false;
}

struct holdings {
    size_t bytes; /* of the heap, in use */
    int files;    /* open */
};

static struct holdings count_holdings(void) {
    struct holdings held = {.bytes = mallinfo2().uordblks};
    DIR* folder = opendir("/proc/self/fd");
    while (folder != NULL && readdir(folder) != NULL) {
        held.files++;
    }
    if (folder != NULL) {
        closedir(folder);
    }
    return held;
}

int main(int count, char** words) {
    if (count != 6) {
        fprintf(stderr, "usage: soak PUSHES SEED SSID KEY STATION\n");
        return 2;
    }
    void* library = dlopen("liborlovendor.so", RTLD_NOW);
    operations = library != NULL ? dlsym(library, "Vendor_Ops") : NULL;
    if (operations == NULL) {
        fprintf(stderr, "soak: %s\n", dlerror());
        return 2;
    }
    random_state = strtoull(words[2], NULL, 10);
    struct holdings first = {0};
    struct holdings held = {0};
    const int pushes = atoi(words[1]);
    for (int i = 1; i <= pushes; i++) {
        if (!push(words[3], words[4]) || !comes_back(words[5])) {
            return 1;
        }
        held = count_holdings();
        printf("push %d: %zu bytes, %d files\n", i, held.bytes, held.files);
        fflush(stdout);
        if (i == warm_up) {
            first = held;
        }
    }
    /* The list of stations is the same each time: so is what the process holds. */
    if (pushes > warm_up && (held.bytes > first.bytes || held.files > first.files)) {
        fprintf(stderr, "soak: the process holds more than after push %d\n", warm_up);
        return 1;
    }
    return 0;
}
