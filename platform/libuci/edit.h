// SPDX-License-Identifier: MIT
// The steps of editing a loaded package, as both the public functions and staged changes take
// them. `at` is a reference that has been looked up; its texts lie in the package's arena, and its
// p, s and o follow the change. A step that fails has changed nothing.
#pragma once

#include "model.h"

namespace uci {

/// What has to be recorded for a step.
struct Change {
    bool made = false;
    uci_command command = UCI_CMD_CHANGE;
    char* value = nullptr;
};

using EditStep = int (*)(Package& package, uci_ptr& at, Change& change);

int edit_set(Package& package, uci_ptr& at, Change& change);
int edit_add_list(Package& package, uci_ptr& at, Change& change);
int edit_del_list(Package& package, uci_ptr& at, Change& change);
int edit_delete(Package& package, uci_ptr& at, Change& change);

/// The next two come from staged changes only. `at` names something; the value is the new name or
/// the position.
int edit_rename(Package& package, uci_ptr& at, Change& change);
int edit_reorder(Package& package, uci_ptr& at, Change& change);

} // namespace uci
