// SPDX-License-Identifier: MIT
// Contexts: their directories, and the packages that belong to them.
#include "list.h"
#include "model.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

// Not const, as the public structures have plain pointers; never written.
char g_confdir[] = UCI_CONFDIR;
char g_savedir[] = UCI_SAVEDIR;
char g_conf2dir[] = UCI_CONF2DIR;

int set_directory(uci_context* ctx, char* uci_context::*member, const char* built_in,
                  const char* directory) {
    char* const copy = strdup(directory);
    if (!copy) {
        return uci::finish(ctx, UCI_ERR_MEM);
    }
    if (ctx->*member != built_in) {
        free(ctx->*member);
    }
    ctx->*member = copy;
    return uci::finish(ctx, UCI_OK);
}

uci_element* find_delta_path(uci_context* ctx, const char* directory) {
    return uci_lookup_element(&ctx->delta_path, directory);
}

int add_delta_path(uci_context* ctx, const char* directory) {
    const size_t size = strlen(directory) + 1;
    auto* const element = static_cast<uci_element*>(malloc(sizeof(uci_element) + size));
    if (!element) {
        return UCI_ERR_MEM;
    }
    element->type = UCI_TYPE_PATH;
    element->name = uci_dataptr(element);
    memcpy(element->name, directory, size);
    uci::list_append(ctx->delta_path, element->list);
    return UCI_OK;
}

const char* describe(int code) {
    static const char* const kTexts[] = {
        "Success",          // UCI_OK
        "Out of memory",    // UCI_ERR_MEM
        "Invalid argument", // UCI_ERR_INVAL
        "Entry not found",  // UCI_ERR_NOTFOUND
        "I/O error",        // UCI_ERR_IO
        "Parse error",      // UCI_ERR_PARSE
        "Duplicate entry",  // UCI_ERR_DUPLICATE
        "Unknown error",    // UCI_ERR_UNKNOWN
    };
    static_assert(sizeof(kTexts) / sizeof(kTexts[0]) == UCI_ERR_LAST);
    return kTexts[code >= 0 && code < UCI_ERR_LAST ? code : UCI_ERR_UNKNOWN];
}

} // namespace

extern "C" const char uci_command_char[__UCI_CMD_MAX] = {'+', '-', '\0', '@', '^', '|', '~'};

uci_context* uci_alloc_context() {
    auto* const ctx = static_cast<uci::Context*>(calloc(1, sizeof(uci::Context)));
    if (!ctx) {
        return nullptr;
    }
    uci::list_init(ctx->root);
    uci::list_init(ctx->backends);
    uci::list_init(ctx->delta_path);
    ctx->flags = static_cast<uci_flags>(UCI_FLAG_STRICT | UCI_FLAG_SAVED_DELTA);
    ctx->confdir = g_confdir;
    ctx->savedir = g_savedir;
    ctx->conf2dir = g_conf2dir;
    ctx->default_delta_path.type = UCI_TYPE_PATH;
    ctx->default_delta_path.name = g_savedir;
    uci::list_append(ctx->delta_path, ctx->default_delta_path.list);
    return ctx;
}

void uci_free_context(uci_context* ctx) {
    if (!ctx) {
        return;
    }
    uci_element* element = nullptr;
    uci_element* next = nullptr;
    uci_foreach_element_safe(&ctx->root, next, element) {
        uci::destroy_package(&uci::own(uci_to_package(element)));
    }
    uci_foreach_element_safe(&ctx->delta_path, next, element) {
        if (element != &uci::own(ctx).default_delta_path) {
            free(element);
        }
    }
    const struct {
        char* directory;
        const char* built_in;
    } texts[] = {{ctx->confdir, g_confdir}, {ctx->savedir, g_savedir}, {ctx->conf2dir, g_conf2dir}};
    for (const auto& text : texts) {
        if (text.directory != text.built_in) {
            free(text.directory);
        }
    }
    free(&uci::own(ctx));
}

int uci_unload(uci_context* ctx, uci_package* p) {
    if (!ctx) {
        return UCI_ERR_INVAL;
    }
    if (!p) {
        return uci::finish(ctx, UCI_ERR_INVAL);
    }
    uci::list_remove(p->e.list);
    uci::destroy_package(&uci::own(p));
    return uci::finish(ctx, UCI_OK);
}

int uci_set_confdir(uci_context* ctx, const char* dir) {
    return ctx && dir ? set_directory(ctx, &uci_context::confdir, g_confdir, dir) : UCI_ERR_INVAL;
}

int uci_set_conf2dir(uci_context* ctx, const char* dir) {
    return ctx && dir ? set_directory(ctx, &uci_context::conf2dir, g_conf2dir, dir) : UCI_ERR_INVAL;
}

int uci_set_savedir(uci_context* ctx, const char* dir) {
    if (!ctx || !dir) {
        return UCI_ERR_INVAL;
    }
    uci_element* const known = find_delta_path(ctx, dir);
    if (known) {
        uci::list_remove(known->list);
        uci::list_append(ctx->delta_path, known->list);
    } else if (add_delta_path(ctx, dir) != UCI_OK) {
        return uci::finish(ctx, UCI_ERR_MEM);
    }
    return set_directory(ctx, &uci_context::savedir, g_savedir, dir);
}

int uci_add_delta_path(uci_context* ctx, const char* dir) {
    if (!ctx || !dir) {
        return UCI_ERR_INVAL;
    }
    return uci::finish(ctx,
                       find_delta_path(ctx, dir) ? UCI_ERR_DUPLICATE : add_delta_path(ctx, dir));
}

void uci_perror(uci_context* ctx, const char* prefix) {
    if (!ctx) {
        return;
    }
    const uci::Context& context = uci::own(ctx);
    fprintf(stderr, "%s: %s", prefix ? prefix : "uci", describe(ctx->err));
    if (ctx->err == UCI_ERR_PARSE && context.parse_reason) {
        fprintf(stderr, " (%s) at line %zu", context.parse_reason, context.parse_line);
    }
    fputc('\n', stderr);
}
