// SPDX-License-Identifier: MIT
// Fingerprints of what the agent applied: the configuration hash and the profile hash, kept in the
// configuration and remembered here, and the profile id, only remembered.
#include "ops/operations.h"
#include "uci/staging.h"

#include <cstdio>
#include <cstring>

using orlo::shown;
using orlo::stage;

namespace {

constexpr size_t hash_size = 128;

// A stored fingerprint: its option, the two operations that read and write it, and their texts.
struct Fingerprint {
    const char* key;
    const char* getter;
    const char* got;
    const char* setter;
    const char* setting;
    const char* set;
};

const Fingerprint configuration = {
    "agent.confighash",
    "api_config_get_hash",
    "End... config_hash:%s\n",
    "api_config_set_hash",
    "Entering... config_hash:  now/new = [%s]/[%s]\n",
    "End... config_hash:%s\n",
};

const Fingerprint profile = {
    "agent.profilehash",
    "api_profile_get_hash",
    "End, Prof_hash: [%s]\n",
    "api_profile_set_hash",
    "Entering... profile_hash:  now/new = [%s]/[%s]\n",
    "End... profile_hash: %s\n",
};

char configuration_hash[hash_size + 1];
char profile_hash[hash_size + 1];
int profile_id = -1;

char* get_hash(const Fingerprint& fingerprint, char (&remembered)[hash_size + 1]) {
    LOG_TRACE_FOR(fingerprint.getter, "Entering...\n");
    if (uciGetValue("orloagent", fingerprint.key, remembered, hash_size) != 0) {
        // The agent's logs know this text for both.
        LOG_TRACE_FOR(fingerprint.getter, "Get agent.confighash Failed\n");
        return strdup("0");
    }
    LOG_TRACE_FOR(fingerprint.getter, fingerprint.got, remembered);
    return strdup(remembered);
}

int set_hash(const Fingerprint& fingerprint, char (&remembered)[hash_size + 1], const char* hash) {
    LOG_TRACE_FOR(fingerprint.setter, fingerprint.setting, remembered, shown(hash));
    if (!stage("orloagent", fingerprint.key, hash)) {
        LOG_TRACE_FOR(fingerprint.setter, "Set Value Failed\n");
        return -1;
    }
    snprintf(remembered, hash_size, "%s", hash);
    LOG_TRACE_FOR(fingerprint.setter, fingerprint.set, remembered);
    return 0;
}

} // namespace

char* api_config_get_hash() {
    return get_hash(configuration, configuration_hash);
}

int api_config_set_hash(const char* hash) {
    return set_hash(configuration, configuration_hash, hash);
}

char* api_profile_get_hash() {
    return get_hash(profile, profile_hash);
}

int api_profile_set_hash(const char* hash) {
    return set_hash(profile, profile_hash, hash);
}

int api_get_profile_id() {
    LOG_TRACE("Entering...\n");
    LOG_TRACE("End... return: %d\n", profile_id);
    return profile_id;
}

int api_set_profile_id(int id) {
    LOG_TRACE("Entering... profile_id:  now/new=%d/%d\n", profile_id, id);
    profile_id = id;
    LOG_TRACE("End, prof_id = %d\n", profile_id);
    return 0;
}
