// SPDX-License-Identifier: MIT
/* Functions of the C half of the header test. */
#pragma once

struct uci_context;
struct uci_package;

#ifdef __cplusplus
extern "C" {
#endif

/** Elements of a package: sections, options; +100 without unsaved changes; +1000 when the package
 *  is found by name; -1 when it cannot be looked up. */
int count_everything(const char* confdir, const char* what);

const char* text_of(struct uci_context* ctx, struct uci_package* p, const char* section,
                    const char* option);

#ifdef __cplusplus
}
#endif
