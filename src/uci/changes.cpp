// SPDX-License-Identifier: MIT
// The staged changes of a package, as a person reads them.
#include "orlo/exports.h"
#include "uci/context.h"

using orlo::uci::Context;
using orlo::uci::fail;
using orlo::uci::Path;

namespace {

const char* operator_of(uci_command command) {
    switch (command) {
    case UCI_CMD_LIST_ADD:
        return "+=";
    case UCI_CMD_LIST_DEL:
        return "-=";
    default:
        return "=";
    }
}

void print_change(const char* package, const uci_delta& change) {
    const bool removed = change.cmd == UCI_CMD_REMOVE;
    const char* option = change.e.name;

    fprintf(stderr, "%s%s.%s", removed ? "-" : "", package, change.section);
    if (option != nullptr) {
        fprintf(stderr, ".%s", option);
        if (!removed) {
            fprintf(stderr, "%s%s", operator_of(change.cmd),
                    change.value == nullptr ? "" : change.value);
        }
    }
    fputc('\n', stderr);
}

} // namespace

int uciGetChanges(const char* package) {
    if (package == nullptr) {
        return fail(__func__, 494, "The input value is not correct.\n");
    }
    Context context;
    if (!context.allocated()) {
        return fail(__func__, 501, "Out of memory.\n");
    }
    Path<256> path("%s", package);
    uci_ptr found;
    if (!path.lookup(context, &found)) {
        return fail(__func__, 510, "Failed to lookup value: %s\n", path.text());
    }
    uci_element* element = nullptr;
    uci_foreach_element(&found.p->saved_delta, element) {
        print_change(found.p->e.name, *uci_to_delta(element));
    }
    return 0;
}
