// SPDX-License-Identifier: MIT
// The state word that the agent leaves with the library.
#include "common/log.h"
#include "ops/operations.h"

namespace {

int state_word = 0;

} // namespace

int api_set_orloagent_state(int state) {
    LOG_TRACE("Entering... current / new : %d /%d\n", state_word, state);
    state_word = state;
    LOG_TRACE("End Successfully\n");
    return 0;
}

int api_get_orloagent_state() {
    LOG_TRACE("Entering...\n");
    LOG_TRACE("End... orloagent_state: %d\n", state_word);
    return state_word;
}
