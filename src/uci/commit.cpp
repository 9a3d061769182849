// SPDX-License-Identifier: MIT
// Keeping or discarding what is staged, for one package or for all of them in the order in which
// the store lists them. Among all, the first failure ends the call.
#include "orlo/exports.h"
#include "uci/context.h"

using orlo::uci::Context;
using orlo::uci::fail;
using orlo::uci::PackageNames;
using orlo::uci::Path;

namespace {

int commit_all(uci_context* context) {
    constexpr const char* wrapper = "uciCommitValue";
    const PackageNames names(context);
    if (!names.listed() || names.empty()) {
        return fail(wrapper, 270, "Failed to list config file.\n");
    }
    uci_ptr found = {};
    for (char** name = names.begin(); *name != nullptr; name++) {
        if (uci_lookup_ptr(context, &found, *name, true) != UCI_OK) {
            return fail(wrapper, 282, "Failed to lookup.\n");
        }
        if (uci_commit(context, &found.p, false) != UCI_OK) {
            return fail(wrapper, 292, "Failed to commit.\n");
        }
    }
    if (found.p != nullptr) {
        uci_unload(context, found.p);
    }
    return 0;
}

int revert_all(uci_context* context) {
    constexpr const char* wrapper = "uciRevertValue";
    const PackageNames names(context);
    if (!names.listed()) {
        return fail(wrapper, 420, "Failed to list config file.\n");
    }
    for (char** name = names.begin(); *name != nullptr; name++) {
        uci_ptr found;
        if (uci_lookup_ptr(context, &found, *name, true) != UCI_OK) {
            return fail(wrapper, 432, "Failed to lookup.\n");
        }
        if (uci_revert(context, &found) != UCI_OK) {
            return fail(wrapper, 442,
                        "Failed to commit.\n"); // known by this text, though it reverts
        }
    }
    return 0;
}

} // namespace

int uciCommitValue(const char* package) {
    Context context;
    if (!context.allocated()) {
        return fail(__func__, 256, "Out of memory.\n");
    }
    if (package == nullptr || *package == '\0') {
        return commit_all(context);
    }
    Path<256> path("%s", package);
    uci_ptr found;
    if (!path.lookup(context, &found)) {
        return fail(__func__, 307, "Failed to lookup value: %s\n", path.text());
    }
    if (uci_commit(context, &found.p, false) != UCI_OK) {
        return fail(__func__, 314, "Failed to commit.\n");
    }
    if (found.p != nullptr) {
        uci_unload(context, found.p);
    }
    return 0;
}

int uciRevertValue(const char* package, const char* key) {
    Context context;
    if (!context.allocated()) {
        return fail(__func__, 406, "Out of memory.\n");
    }
    if (package == nullptr) {
        return revert_all(context);
    }
    Path<256> path("%s%s%s", package, key == nullptr ? "" : ".", key == nullptr ? "" : key);
    uci_ptr found;
    if (!path.lookup(context, &found)) {
        return fail(__func__, 466, "Failed to lookup value: %s\n", path.text());
    }
    if (uci_revert(context, &found) != UCI_OK) {
        return fail(__func__, 473, "Failed to revert.\n");
    }
    return 0;
}
