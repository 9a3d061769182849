// SPDX-License-Identifier: MIT
/* The public header as a C program sees it: everything in it is used once. */
#include "header_c.h"

#include "uci.h"

_Static_assert(UCI_LOOKUP_DONE == 1 && UCI_LOOKUP_COMPLETE == 2 && UCI_LOOKUP_EXTENDED == 4,
               "in C the lookup flags are plain names");
_Static_assert(offsetof(struct uci_element, list) == 0, "lists link elements");

int count_everything(const char* confdir, const char* what) {
    struct uci_context* ctx = uci_alloc_context();
    struct uci_element *e, *tmp, *inner;
    struct uci_ptr ptr;
    char buffer[64];
    int count = 0;
    snprintf(buffer, sizeof(buffer), "%s", what);
    if (!ctx || uci_set_confdir(ctx, confdir) != UCI_OK ||
        uci_lookup_ptr(ctx, &ptr, buffer, true) != UCI_OK) {
        uci_free_context(ctx);
        return -1;
    }
    uci_foreach_element(&ctx->root, e) {
        count += uci_to_package(e) == ptr.p;
    }
    uci_foreach_element_safe(&ptr.p->sections, tmp, e) {
        struct uci_section* s = uci_to_section(e);
        count++;
        uci_foreach_element(&s->options, inner) {
            count += uci_to_option(inner)->section == s && inner->type == uci_type_option;
        }
    }
    uci_foreach_element(&ptr.p->saved_delta, e) {
        count += (int)uci_to_delta(e)->cmd;
    }
    count += uci_list_empty(&ptr.p->delta) ? 100 : 0;
    count += uci_lookup_package(ctx, "p") == ptr.p ? 1000 : 0;
    uci_free_context(ctx);
    return count;
}

const char* text_of(struct uci_context* ctx, struct uci_package* p, const char* section,
                    const char* option) {
    struct uci_section* s = uci_lookup_section(ctx, p, section);
    return s ? uci_lookup_option_string(ctx, s, option) : NULL;
}
