// SPDX-License-Identifier: MIT
// What the agent may ask of the channel quilt: whether there is one, and its status.
#include "common/command.h"
#include "common/identity.h"
#include "common/log.h"
#include "common/text.h"
#include "ops/operations.h"
#include "uci/option.h"

#include <cstdlib>
#include <cstring>
#include <glib.h>
#include <unistd.h>

using orlo::OptionValue;
using orlo::Text;

namespace {

// Models on which a quilt is never supported, whatever is installed.
const char* const excluded_models[] = {"QX-Rm7710", "QX-R3310", "QX-Rm3310"};

constexpr int hash_size = 64;

// Of the status file that was last delivered as a new one.
char delivered_hash[hash_size + 1];

bool is_there(const char* path) {
    return g_file_test(path, G_FILE_TEST_EXISTS) != 0;
}

bool is_excluded(const char* model) {
    for (const char* excluded : excluded_models) {
        if (strcmp(model, excluded) == 0) {
            return true;
        }
    }
    return false;
}

// Whether the file differs from the one delivered before; if so, it is remembered.
bool is_new(const char* path) {
    constexpr const char* get_status = "api_get_CQ_status";
    char hash[hash_size + 1] = {};
    const Text<512> command("md5sum %s | sed -r 's/^(\\w*) .*/\\1/'", path);
    if (orlo::execute_system_call(command, hash, hash_size, 1) != 0) {
        LOG_ERROR_FOR(get_status, "Failed to get hash of %s.", path);
        return false;
    }
    LOG_TRACE_FOR(get_status, "Check Hash: \n%s\n%s\n", delivered_hash, hash);
    if (strcmp(hash, delivered_hash) == 0) {
        LOG_TRACE_FOR(get_status, "No CQ status update\n");
        return false;
    }
    memcpy(delivered_hash, hash, sizeof hash);
    return true;
}

} // namespace

int api_is_quilt_capable() {
    char* const model = api_get_system_information("model");
    const bool excluded = model != nullptr && is_excluded(model);
    free(model);
    return !excluded && is_there("/etc/qxw/cq_version") ? 1 : 0;
}

int api_is_any_vap_quilt() {
    for (int radio = 0; radio < orlo::radio_count; radio++) {
        for (int vap = 0; vap < orlo::vaps_per_radio; vap++) {
            if (uci_is_vap_quilt(radio, vap) != 0) {
                return 1;
            }
        }
    }
    return 0;
}

int api_is_responser_present() {
    return is_there("/etc/init.d/responser") ? 1 : 0;
}

int api_is_cqscan_enabled() {
    OptionValue<8> enabled;
    if (!enabled.read("quilt", "config_quilt.cqscan")) {
        LOG_ERROR("failed to get quilt.cqscan\n");
        return 0;
    }
    return atoi(enabled.c_str()) == 1 ? 1 : 0;
}

// The agent itself writes the file, through its method on the bus.
int api_get_CQ_status(int check_hash, const char* path) {
    LOG_TRACE("Entering...\n");
    if (path == nullptr || api_is_any_vap_quilt() == 0) {
        return -1;
    }
    const Text<512> command("/bin/ubus call orloagent cqstatus '{\"statusfile\":\"%s\"}'", path);
    LOG_TRACE("cmd =[\n%s\n]\n", command.c_str());
    orlo::run_unchecked(command);
    if (is_debug_module_level_enabled(orlo::agent_module, orlo::trace_level) != 0) {
        print_file(path);
    }
    if (check_hash != 0 && !is_new(path)) {
        unlink(path); // a file that was not announced must not be taken for a new one
        return -1;
    }
    LOG_TRACE("End, will return 0\n");
    return 0;
}
