// SPDX-License-Identifier: MIT
// The second phase of an apply: commit what is staged, let the system restart what it affects, wait
// for the network, and pin radios on "auto" to the channel they use.
#include "radio/save.h"

#include "common/command.h"
#include "common/file.h"
#include "common/identity.h"
#include "common/markers.h"
#include "ops/operations.h"
#include "radio/vlan_script.h"
#include "uci/option.h"
#include "uci/staging.h"

#include <cstdio>
#include <cstdlib>
#include <unistd.h>

using orlo::exists;
using orlo::is_changed;
using orlo::network_restart_marker;
using orlo::OptionValue;
using orlo::pending_services;
using orlo::PendingService;
using orlo::service_network;
using orlo::ServiceWords;
using orlo::Text;

namespace {

// The steps below work in its name.
constexpr const char* save_config = "api_save_config";

const char* const apply_script = "/usr/bin/orloagent_apply_settings.sh";

// There is no time-out: only the script knows when the network is back.
void wait_for_restart() {
    constexpr int patience = 150;
    int checks = 0;
    while (exists(network_restart_marker)) {
        checks++;
        if (checks > patience) {
            orlo_agent_debug_log(7, 0, save_config, __LINE__,
                                 "/usr/bin/orloagent_apply_settings.sh is still running! (%d)\n",
                                 checks);
        }
        sleep(1);
    }
}

int run_apply_script(const char* words) {
    const bool network = is_changed(service_network);
    if (network) {
        orlo::write_file(network_restart_marker, "");
    }
    LOG_TRACE_FOR(save_config, "info: Ready to call OrloAgent apply settings script\n");
    const Text<320> command("%s %s &", apply_script, words);
    if (system(command) < 0) {
        unlink(orlo::web_block_marker);
        if (network) {
            unlink(network_restart_marker);
        }
        orlo::log_not_run(save_config, command);
        return -1;
    }
    if (network) {
        wait_for_restart();
    }
    sleep(3);
    return 0;
}

int restart_changed_services() {
    char words[256];
    switch (orlo::list_changed_services(pending_services, words, sizeof words)) {
    case ServiceWords::some:
        return run_apply_script(words);
    case ServiceWords::too_long:
        LOG_TRACE_FOR(save_config, "Bypass to call system apply settings script due to errors\n");
        return -1;
    case ServiceWords::none:
        LOG_TRACE_FOR(save_config, "No need to call OrloAgent apply settings script\n");
        break;
    }
    return 0;
}

// A radio without a channel option counts as one on "auto".
void pin_auto_channel(int radio) {
    OptionValue<8> policy;
    bool is_auto = true;
    if (policy.read("wireless", config_channel_option[radio])) {
        is_auto = policy.is("auto");
    } else {
        LOG_TRACE_FOR(save_config, "info: failed to uci_get radio%d channel.\n", radio);
    }
    const int channel = api_get_channel(radio);
    if (channel <= 0 || !is_auto) {
        return;
    }
    const Text<16> fixed("%d", channel);
    LOG_TRACE_FOR(save_config,
                  "info: change radio%d channel-policy from 'auto' to fixed : %s on demand.\n",
                  radio, fixed.c_str());
    if (!orlo::stage("wireless", config_channel_option[radio], fixed)) {
        LOG_TRACE_FOR(save_config, "info: radio%d failed to change channel to fixed:%s.\n", radio,
                      fixed.c_str());
    }
    uciCommitValue(nullptr);
}

} // namespace

namespace orlo {

ServiceWords list_changed_services(const PendingService (&services)[service_count], char* words,
                                   size_t size) {
    size_t used = 0;
    for (const PendingService& service : services) {
        if (service.changed != 1) {
            continue;
        }
        const size_t room = size - used;
        const int length = snprintf(words + used, room, "%s-%d ", service.name, service.parameter);
        if (length < 0 || static_cast<size_t>(length) >= room) {
            LOG_TRACE_FOR(save_config, "%s was not inserted due to out of buffer\n", service.name);
            return ServiceWords::too_long;
        }
        used += static_cast<size_t>(length);
    }
    if (used == 0) {
        return ServiceWords::none;
    }
    words[used - 1] = '\0'; // over the last blank
    return ServiceWords::some;
}

} // namespace orlo

int api_save_config() {
    LOG_TRACE("Entering...\n");
    if (!exists(apply_script)) {
        LOG_TRACE("OrloAgent apply settings script was not found\n");
        return -1;
    }
    if (uciCommitValue(nullptr) != 0) {
        return -1;
    }
    orlo::api_update_vap_vlan();
    if (restart_changed_services() != 0) {
        return -1;
    }
    for (PendingService& service : pending_services) {
        service.changed = 0;
    }
    for (int radio = 0; radio < orlo::radio_count; radio++) {
        pin_auto_channel(radio);
    }
    LOG_TRACE("End Save Config successfully\n");
    return 0;
}
