// SPDX-License-Identifier: MIT
// The uci command: looks at and changes the configuration from a shell.
#include "output.h"
#include "uci.h"

#include <cstdlib>
#include <cstring>
#include <getopt.h>
#include <iostream>
#include <memory>
#include <vector>

namespace {

constexpr const char* kHelp =
    R"(Usage: uci [options] command [arguments]

Commands:
  show     [package[.section[.option]]]    print settings; everything without an argument
  get      package.section[.option]        print a value, or the type of a section
  set      package.section[.option]=value  set an option; create a section or change its type
  add_list package.section.option=value    append to a list
  del_list package.section.option=value    remove from a list
  delete   package.section[.option]        remove a section, an option (or option=index of a list)
  changes  [package]                       print what is staged
  commit   [package]                       write what is staged to the configuration files
  revert   package[.section[.option]]      drop what is staged

A section is its name, or @type[index] with an index from 0, or from -1 backwards.

Options:
  -c DIR   directory of the configuration files (default: /etc/config)
  -P DIR   read staged changes from this directory too, and stage into it (default: /tmp/.uci)
  -p DIR   read staged changes from this directory too
  -d TEXT  put TEXT between the elements of a list (default: a blank)
  -X       show anonymous sections by their generated names
  -q       no error messages
  -h       this help
)";

struct ContextDeleter {
    void operator()(uci_context* ctx) const { uci_free_context(ctx); }
};

struct Session {
    std::unique_ptr<uci_context, ContextDeleter> ctx{uci_alloc_context()};
    cli::Format format;
    bool quiet = false;

    int fail() const {
        if (!quiet) {
            uci_perror(ctx.get(), "uci");
        }
        return EXIT_FAILURE;
    }

    int fail(int code) const {
        ctx->err = code;
        return fail();
    }
};

/// A reference and the text that it points into.
struct Target {
    std::string text;
    uci_ptr ptr{};

    explicit Target(std::string what) : text(std::move(what)) {}

    bool look_up(Session& session) {
        return uci_lookup_ptr(session.ctx.get(), &ptr, text.data(), true) == UCI_OK;
    }
    [[nodiscard]] bool complete() const { return ptr.flags & uci_ptr::UCI_LOOKUP_COMPLETE; }
};

bool list_packages(Session& session, std::vector<std::string>& names) {
    char** list = nullptr;
    if (uci_list_configs(session.ctx.get(), &list) != UCI_OK) {
        return false;
    }
    for (char** name = list; *name; name++) {
        names.emplace_back(*name);
    }
    free(list);
    return true;
}

int show(Session& session, const std::string& what) {
    Target target(what);
    if (!target.look_up(session)) {
        return session.fail();
    }
    if (!target.complete()) {
        return session.fail(UCI_ERR_NOTFOUND);
    }
    if (target.ptr.o) {
        cli::show_option(std::cout, *target.ptr.o, session.format);
    } else if (target.ptr.s) {
        cli::show_section(std::cout, *target.ptr.s, session.format);
    } else {
        cli::show_package(std::cout, *target.ptr.p, session.format);
    }
    return EXIT_SUCCESS;
}

int get(Session& session, const std::string& what) {
    Target target(what);
    if (!target.look_up(session)) {
        return session.fail();
    }
    if (target.ptr.target == UCI_TYPE_PACKAGE) {
        return session.fail(UCI_ERR_INVAL);
    }
    if (!target.complete()) {
        return session.fail(UCI_ERR_NOTFOUND);
    }
    if (target.ptr.o) {
        cli::print_value(std::cout, *target.ptr.o, session.format);
    } else {
        std::cout << target.ptr.s->type << '\n';
    }
    return EXIT_SUCCESS;
}

template <int (*Act)(uci_context*, uci_ptr*)>
int edit(Session& session, const std::string& what) {
    Target target(what);
    const bool done = target.look_up(session) && Act(session.ctx.get(), &target.ptr) == UCI_OK &&
                      uci_save(session.ctx.get(), target.ptr.p) == UCI_OK;
    return done ? EXIT_SUCCESS : session.fail();
}

int changes(Session& session, const std::string& what) {
    Target target(what);
    if (!target.look_up(session)) {
        return session.fail();
    }
    uci_element* element = nullptr;
    uci_foreach_element(&target.ptr.p->saved_delta, element) {
        cli::show_change(std::cout, *target.ptr.p, *uci_to_delta(element));
    }
    return EXIT_SUCCESS;
}

int commit(Session& session, const std::string& what) {
    Target target(what);
    if (!target.look_up(session)) {
        return session.fail();
    }
    if (target.ptr.target != UCI_TYPE_PACKAGE) {
        return session.fail(UCI_ERR_INVAL);
    }
    return uci_commit(session.ctx.get(), &target.ptr.p, false) == UCI_OK ? EXIT_SUCCESS
                                                                         : session.fail();
}

int revert(Session& session, const std::string& what) {
    Target target(what);
    const bool done =
        target.look_up(session) && uci_revert(session.ctx.get(), &target.ptr) == UCI_OK;
    return done ? EXIT_SUCCESS : session.fail();
}

constexpr struct {
    const char* name;
    int (*run)(Session& session, const std::string& what);
    bool for_all; // without an argument it takes every package
} kCommands[] = {
    {"show", show, true},
    {"get", get, false},
    {"set", edit<uci_set>, false},
    {"add_list", edit<uci_add_list>, false},
    {"del_list", edit<uci_del_list>, false},
    {"delete", edit<uci_delete>, false},
    {"changes", changes, true},
    {"commit", commit, true},
    {"revert", revert, false},
};

int usage() {
    std::cerr << kHelp;
    return EXIT_FAILURE;
}

/// Everything is tried, also after a failure; the result tells if there was one.
int run(Session& session, const char* name, std::vector<std::string> arguments) {
    for (const auto& command : kCommands) {
        if (strcmp(name, command.name) != 0) {
            continue;
        }
        if (arguments.empty() && !command.for_all) {
            return usage();
        }
        if (arguments.empty() && !list_packages(session, arguments)) {
            return session.fail();
        }
        int status = EXIT_SUCCESS;
        for (const std::string& what : arguments) {
            status |= command.run(session, what);
        }
        return status;
    }
    return usage();
}

/// False for an unknown option.
bool take_option(Session& session, int option) {
    switch (option) {
    case 'c':
        return uci_set_confdir(session.ctx.get(), optarg) == UCI_OK;
    case 'p': {
        const int code = uci_add_delta_path(session.ctx.get(), optarg);
        return code == UCI_OK || code == UCI_ERR_DUPLICATE;
    }
    case 'P':
        return uci_set_savedir(session.ctx.get(), optarg) == UCI_OK;
    case 'd':
        session.format.delimiter = optarg;
        return true;
    case 'X':
        session.format.extended = false;
        return true;
    case 'q':
        session.quiet = true;
        return true;
    default:
        return false;
    }
}

int run(int argc, char** argv) {
    Session session;
    if (!session.ctx) {
        std::cerr << "uci: Out of memory\n";
        return EXIT_FAILURE;
    }
    static const option kLongOptions[] = {{"help", no_argument, nullptr, 'h'}, {}};
    int option = 0;
    // Options end where the command begins: values may look like options.
    while ((option = getopt_long(argc, argv, "+c:p:P:d:Xqh", kLongOptions, nullptr)) != -1) {
        if (option == 'h') {
            std::cout << kHelp;
            return EXIT_SUCCESS;
        }
        if (!take_option(session, option)) {
            return usage();
        }
    }
    if (optind >= argc) {
        return usage();
    }
    const int status =
        run(session, argv[optind], std::vector<std::string>(argv + optind + 1, argv + argc));
    std::cout.flush();
    if (!std::cout) {
        return session.fail(UCI_ERR_IO);
    }
    return status;
}

} // namespace

int main(int argc, char** argv) {
    try {
        return run(argc, argv);
    } catch (const std::exception& error) {
        std::cerr << "uci: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
