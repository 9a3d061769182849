// SPDX-License-Identifier: MIT
/*
 * The configuration store: packages of sections of options, kept as text files, with changes that
 * are staged in a directory of their own until they are committed or reverted.
 *
 * Typical use: uci_alloc_context, uci_lookup_ptr with a text such as "network.lan.ipaddr=10.0.0.1",
 * uci_set, uci_save, uci_free_context. Every call that returns int returns a UCI_ERR_* code and
 * UCI_ERR_INVAL for a NULL context. Nothing is ever printed unless UCI_FLAG_PERROR is set or
 * uci_perror is called. Contexts are independent of each other; one context belongs to one thread
 * at a time. Processes are kept apart by file locks.
 */
#ifndef UCI_H
#define UCI_H

#include <setjmp.h>
#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>

#ifdef __cplusplus
extern "C" {
#endif

/** Default places: configuration files, staged changes, files that override configuration files. */
#define UCI_CONFDIR "/etc/config"
#define UCI_SAVEDIR "/tmp/.uci"
#define UCI_CONF2DIR "/var/run/uci"

/** Modes of a new save directory and of new files when there is nothing to take them from. */
#define UCI_DIRMODE 0700
#define UCI_FILEMODE 0600

/* NOLINTBEGIN(bugprone-reserved-identifier,modernize-use-using,bugprone-macro-parentheses) */

/** Results of all functions that return int. */
enum {
    UCI_OK = 0,
    UCI_ERR_MEM,       /**< out of memory; also: the index given to uci_delete is no number */
    UCI_ERR_INVAL,     /**< a bad argument */
    UCI_ERR_NOTFOUND,  /**< the package, section, option or directory does not exist */
    UCI_ERR_IO,        /**< a file cannot be read, written, locked or replaced */
    UCI_ERR_PARSE,     /**< a malformed text, or a configuration file that does not parse */
    UCI_ERR_DUPLICATE, /**< there already is something of that name */
    UCI_ERR_UNKNOWN,
    UCI_ERR_LAST
};

/** Kinds of elements. */
enum uci_type {
    UCI_TYPE_UNSPEC = 0,
    UCI_TYPE_DELTA = 1,   /**< struct uci_delta */
    UCI_TYPE_PACKAGE = 2, /**< struct uci_package */
    UCI_TYPE_SECTION = 3, /**< struct uci_section */
    UCI_TYPE_OPTION = 4,  /**< struct uci_option */
    UCI_TYPE_PATH = 5,    /**< a directory of uci_context.delta_path, its path is the name */
    UCI_TYPE_BACKEND = 6,
    UCI_TYPE_ITEM = 7, /**< an element of a list option, its text is the name */
    UCI_TYPE_HOOK = 8
};

/** Kinds of options. */
enum uci_option_type { UCI_TYPE_STRING = 0, UCI_TYPE_LIST = 1 };

/** Switches of a context. */
enum uci_flags {
    UCI_FLAG_STRICT = 1,      /**< refuse a file with any error in it; this is always done */
    UCI_FLAG_PERROR = 2,      /**< tell parse errors of configuration files on standard error */
    UCI_FLAG_EXPORT_NAME = 4, /**< no effect here */
    UCI_FLAG_SAVED_DELTA = 8  /**< keep the staged changes that were read in saved_delta */
};

/** Kinds of changes. */
enum uci_command {
    UCI_CMD_ADD = 0,      /**< create an anonymous section */
    UCI_CMD_REMOVE = 1,   /**< remove a section, an option or (with a value) one list element */
    UCI_CMD_CHANGE = 2,   /**< set an option, create a section or change its type */
    UCI_CMD_RENAME = 3,   /**< rename a section or an option */
    UCI_CMD_REORDER = 4,  /**< move a section to a position */
    UCI_CMD_LIST_ADD = 5, /**< append a list element */
    UCI_CMD_LIST_DEL = 6, /**< remove the list elements of a value */
    __UCI_CMD_MAX = 7,
    __UCI_CMD_LAST = 6
};

/** A circular list; an empty one is a head that points at itself. */
struct uci_list {
    struct uci_list* next;
    struct uci_list* prev;
};

struct uci_ptr;
struct uci_element;
struct uci_package;
struct uci_section;
struct uci_option;
struct uci_delta;
struct uci_context;
struct uci_backend;
struct uci_parse_context;

/** What all members of lists have in common; the first member of every structure below. */
struct uci_element {
    struct uci_list list; /**< links to the neighbours */
    enum uci_type type;   /**< the structure that this element begins */
    char* name;           /**< owned by the package (or context) that the element belongs to */
};

/** A place that packages come from. The only one is the file system; nothing uses this. */
struct uci_backend {
    struct uci_element e;
};

/** A session with the store: its directories and the packages loaded so far. */
struct uci_context {
    struct uci_list root; /**< the loaded packages */

    struct uci_parse_context* pctx; /**< unused, NULL */
    struct uci_backend* backend;    /**< unused, NULL */
    struct uci_list backends;       /**< unused, empty */

    enum uci_flags flags; /**< UCI_FLAG_STRICT and UCI_FLAG_SAVED_DELTA to begin with */

    /** Directories. Set them with the uci_set_*dir functions; a heap text put here is freed. */
    char* confdir;
    char* savedir;
    char* conf2dir;

    /** Directories that staged changes are read from, in this order (elements UCI_TYPE_PATH). */
    struct uci_list delta_path;

    /* private */
    int err; /**< result of the last call */
    const char* func;
    jmp_buf trap;
    bool internal;
    bool nested;
    char* buf;
    int bufsz;
};

/** One configuration file with the staged changes applied. */
struct uci_package {
    struct uci_element e;     /**< the name */
    struct uci_list sections; /**< struct uci_section, in the order of the file */
    struct uci_context* ctx;
    bool has_delta;  /**< changes are staged; false only for a package loaded by absolute path */
    bool uses_conf2; /**< the file is the one of conf2dir */
    char* path;      /**< the configuration file */

    /* private */
    struct uci_backend* backend;
    void* priv;
    int n_section;               /**< sections created so far; numbers the anonymous ones */
    struct uci_list delta;       /**< changes made in this context and not yet saved */
    struct uci_list saved_delta; /**< the staged changes that were read: walk it to list them */
};

struct uci_section {
    struct uci_element e;    /**< the name, a generated one when anonymous */
    struct uci_list options; /**< struct uci_option */
    struct uci_package* package;
    bool anonymous; /**< the name is not written to the file */
    char* type;
};

struct uci_option {
    struct uci_element e; /**< e.type is UCI_TYPE_OPTION, also for a list */
    struct uci_section* section;
    enum uci_option_type type; /**< which member of v holds the value */
    union {
        struct uci_list list; /**< struct uci_element of type UCI_TYPE_ITEM */
        char* string;
    } v;
};

/** One change. */
struct uci_delta {
    struct uci_element e; /**< name: the option, NULL for a change of the section itself */
    enum uci_command cmd;
    char* section;
    char* value; /**< NULL for a plain removal */
};

/** A reference "package.section.option=value" and what it leads to. */
struct uci_ptr {
    enum uci_type target; /**< UCI_TYPE_PACKAGE, _SECTION or _OPTION, by the number of parts */
    enum {
        UCI_LOOKUP_DONE = 1,     /**< the lookup took place */
        UCI_LOOKUP_COMPLETE = 2, /**< what the text names exists */
        UCI_LOOKUP_EXTENDED = 4  /**< the section was given as @type[index] */
    } flags;

    /** What was found. Dead after uci_commit, uci_revert or uci_unload of the package. */
    struct uci_package* p;
    struct uci_section* s;
    struct uci_option* o;
    struct uci_element* last; /**< the deepest one that was found */

    /** The parts of the text: they point into the buffer given to uci_lookup_ptr, except that
     *  section is the found section's own name after a reference @type[index]. */
    const char* package;
    const char* section;
    const char* option;
    const char* value; /**< NULL without a "=" */
};

#pragma GCC visibility push(default)

/** First characters of the lines in the save directory, indexed by enum uci_command. */
extern const char uci_command_char[]; /* NOLINT(bugprone-dynamic-static-initializers) */

/** A new context with the default directories, which are not touched yet. NULL: out of memory.
 *  Release it with uci_free_context. */
extern struct uci_context* uci_alloc_context(void);

/** Frees the context and everything loaded in it; changes that were not saved are lost. NULL is
 *  allowed. */
extern void uci_free_context(struct uci_context* ctx);

/** Takes "package[.section[.option]][=value]" apart and finds what it names, loading the package
 *  on first use. Something missing below the package is no error: see UCI_LOOKUP_COMPLETE.
 *  @param ptr       filled in; p, s, o and last tell what was found.
 *  @param str       writable, is cut into pieces, must outlive ptr. NULL: find the texts that
 *                   already are in ptr.
 *  @param extended  allow @type[index] as section; an index counts from 0, or from -1 backwards.
 *  @return UCI_ERR_PARSE for a malformed text (ptr is zeroed) or a package file with errors,
 *          UCI_ERR_NOTFOUND without such a package, UCI_ERR_INVAL for a bad section reference,
 *          UCI_ERR_IO for an unreadable file, UCI_ERR_MEM. */
extern int uci_lookup_ptr(struct uci_context* ctx, struct uci_ptr* ptr, char* str, bool extended);

/** Sets an option, replacing a list too; or creates a section, or changes its type. An empty value
 *  removes. Nothing is recorded when the value is there already.
 *  ptr->o or ptr->s is the changed element afterwards.
 *  @return UCI_ERR_INVAL without value or section, with a missing section or a bad type. */
extern int uci_set(struct uci_context* ctx, struct uci_ptr* ptr);

/** Appends to a list option, which is created, or made of a string option, when needed.
 *  @return UCI_ERR_INVAL without value or section, or with a missing section. */
extern int uci_add_list(struct uci_context* ctx, struct uci_ptr* ptr);

/** Removes every element equal to the value from a list option; anything else is left alone.
 *  @return UCI_ERR_INVAL without value or section, or with a missing section. */
extern int uci_del_list(struct uci_context* ctx, struct uci_ptr* ptr);

/** Removes a section with its options, an option, or (list option, value not empty) the list
 *  element of that index. ptr->s or ptr->o is NULL afterwards.
 *  @return UCI_ERR_NOTFOUND when it is missing, UCI_ERR_INVAL for a package, UCI_ERR_MEM when the
 *          index is no number. */
extern int uci_delete(struct uci_context* ctx, struct uci_ptr* ptr);

/** Stages the changes made in this context: appends them to the package's file in the save
 *  directory, which is created when needed. All of them or, on failure, none.
 *  @return UCI_ERR_IO when they cannot be written; they stay unsaved then. */
extern int uci_save(struct uci_context* ctx, struct uci_package* p);

/** Writes the staged changes to the configuration file and empties the staging. Unsaved changes
 *  are saved first, changes others made to the file are kept.
 *  @param p          in: the package; out: the package as reloaded, also after some failures.
 *                    Pointers to anything within the old one are dead.
 *  @param overwrite  write the package as it is in memory, whatever the file contains by now.
 *  @return UCI_ERR_IO when the file cannot be replaced, UCI_ERR_PARSE when it no longer parses;
 *          file and staged changes are as before then. */
extern int uci_commit(struct uci_context* ctx, struct uci_package** p, bool overwrite);

/** Drops the staged changes of a package, of a section or of an option and reloads the package:
 *  ptr->p is the new one; ptr->s, ptr->o and ptr->last are NULL afterwards.
 *  Dropping nothing is fine. A staging file with lines that are no changes is left alone.
 *  @return UCI_ERR_INVAL for a package without staging, UCI_ERR_IO. */
extern int uci_revert(struct uci_context* ctx, struct uci_ptr* ptr);

/** Frees a package and everything below. Unsaved changes are lost. */
extern int uci_unload(struct uci_context* ctx, struct uci_package* p);

/** Names of the packages in the configuration directory, in byte order.
 *  @param list  out: array ended by NULL, to be released with one free().
 *  @return UCI_ERR_NOTFOUND when the directory is missing or empty. */
extern int uci_list_configs(struct uci_context* ctx, char*** list);

/** Sets the directory of the configuration files; the text is copied. Loaded packages stay. */
extern int uci_set_confdir(struct uci_context* ctx, const char* dir);

/** Sets the directory of files that override configuration files. */
extern int uci_set_conf2dir(struct uci_context* ctx, const char* dir);

/** Sets the directory that changes are saved in, and reads staged changes from it last. */
extern int uci_set_savedir(struct uci_context* ctx, const char* dir);

/** Reads staged changes from one more directory, which is never written.
 *  @return UCI_ERR_DUPLICATE when it already is read. */
extern int uci_add_delta_path(struct uci_context* ctx, const char* dir);

/** Tells on standard error what went wrong in the last call: "prefix: Entry not found". For a
 *  configuration file that does not parse also where. */
extern void uci_perror(struct uci_context* ctx, const char* prefix);

#pragma GCC visibility pop

#ifndef container_of
/** From a member to the structure around it. */
#define container_of(ptr, type, member) ((type*)(void*)((char*)(ptr)-offsetof(type, member)))
#endif

/** From a list link to its element. */
#define list_to_element(ptr) container_of(ptr, struct uci_element, list)

/** Walks a list; the current element must stay in it. */
#define uci_foreach_element(_list, _ptr)                                                           \
    for ((_ptr) = list_to_element((_list)->next); &(_ptr)->list != (_list);                        \
         (_ptr) = list_to_element((_ptr)->list.next))

/** Walks a list; the current element may be removed. */
#define uci_foreach_element_safe(_list, _tmp, _ptr)                                                \
    for ((_ptr) = list_to_element((_list)->next), (_tmp) = list_to_element((_ptr)->list.next);     \
         &(_ptr)->list != (_list); (_ptr) = (_tmp), (_tmp) = list_to_element((_ptr)->list.next))

#define uci_list_empty(_list) ((_list)->next == (_list))

/** From an element to the structure that it begins. */
#define uci_to_backend(_e) container_of(_e, struct uci_backend, e)
#define uci_to_delta(_e) container_of(_e, struct uci_delta, e)
#define uci_to_package(_e) container_of(_e, struct uci_package, e)
#define uci_to_section(_e) container_of(_e, struct uci_section, e)
#define uci_to_option(_e) container_of(_e, struct uci_option, e)

#define uci_type_backend UCI_TYPE_BACKEND
#define uci_type_delta UCI_TYPE_DELTA
#define uci_type_package UCI_TYPE_PACKAGE
#define uci_type_section UCI_TYPE_SECTION
#define uci_type_option UCI_TYPE_OPTION

/** The address just past a structure. */
#define uci_dataptr(_ptr) (((char*)(_ptr)) + sizeof(*(_ptr)))

/** The element of that name in a list, or NULL. */
static inline struct uci_element* uci_lookup_element(struct uci_list* list, const char* name) {
    struct uci_element* e;
    uci_foreach_element(list, e) {
        if (strcmp(e->name, name) == 0) {
            return e;
        }
    }
    return NULL; /* NOLINT(modernize-use-nullptr) */
}

/** The loaded package of that name, or NULL; nothing is loaded. */
static inline struct uci_package* uci_lookup_package(struct uci_context* ctx, const char* name) {
    struct uci_element* e = uci_lookup_element(&ctx->root, name);
    return e ? uci_to_package(e) : NULL; /* NOLINT(modernize-use-nullptr) */
}

/** The section of that name, or NULL. */
static inline struct uci_section* uci_lookup_section(struct uci_context* ctx, struct uci_package* p,
                                                     const char* name) {
    struct uci_element* e = uci_lookup_element(&p->sections, name);
    (void)ctx;
    return e ? uci_to_section(e) : NULL; /* NOLINT(modernize-use-nullptr) */
}

/** The option of that name, or NULL. */
static inline struct uci_option* uci_lookup_option(struct uci_context* ctx, struct uci_section* s,
                                                   const char* name) {
    struct uci_element* e = uci_lookup_element(&s->options, name);
    (void)ctx;
    return e ? uci_to_option(e) : NULL; /* NOLINT(modernize-use-nullptr) */
}

/** The text of a string option, owned by the package; NULL when missing or a list. */
static inline const char* uci_lookup_option_string(struct uci_context* ctx, struct uci_section* s,
                                                   const char* name) {
    struct uci_option* o = uci_lookup_option(ctx, s, name);
    return o && o->type == UCI_TYPE_STRING ? o->v.string : NULL; /* NOLINT(modernize-use-nullptr) */
}

/* NOLINTEND(bugprone-reserved-identifier,modernize-use-using,bugprone-macro-parentheses) */

#ifdef __cplusplus
}
#endif

#endif
