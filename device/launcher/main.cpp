// SPDX-License-Identifier: MIT
// virtual-ap: runs a command, or a shell, on a fresh virtual access point.
#include "enter/virtual_ap.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr char usage[] =
    "usage: virtual-ap [--journal] [--] [COMMAND [ARG...]]\n"
    "\n"
    "Runs COMMAND on a fresh virtual access point, or a shell without one. What the command\n"
    "changes there is gone afterwards; this machine stays as it is.\n"
    "\n"
    "  --journal  afterwards, print the device commands that were run, one a line\n"
    "  --help     print this text\n"
    "\n"
    "The exit status is the command's, 128 + n when signal n ended it, 77 when this machine\n"
    "allows no virtual access point. ORLO_VIRTUAL_AP=namespaces or =chroot allows one form only.\n";

constexpr char welcome[] =
    "This is a virtual access point. It is yours alone and gone when you leave it (exit).\n";

struct Request {
    bool journal = false;
    std::vector<char*> command; ///< ends with a null pointer
};

Request read_arguments(int argc, char** argv) {
    Request request;
    int next = 1;
    for (; next < argc && argv[next][0] == '-'; next++) {
        if (strcmp(argv[next], "--") == 0) {
            next++;
            break;
        }
        if (strcmp(argv[next], "--help") == 0) {
            fputs(usage, stdout);
            exit(0);
        }
        if (strcmp(argv[next], "--journal") != 0) {
            fprintf(stderr, "virtual-ap: unknown option %s\n%s", argv[next], usage);
            exit(2);
        }
        request.journal = true;
    }
    request.command.assign(argv + next, argv + argc);
    request.command.push_back(nullptr);
    return request;
}

/// Without job control: the terminal's process group lies outside, where the shell inside cannot
/// give the terminal back to it.
void use_shell(Request& request) {
    static char shell[] = "/bin/sh";
    static char no_job_control[] = "+m";
    request.command.assign({shell, no_job_control, nullptr});
    if (isatty(STDIN_FILENO) != 0) {
        fputs(welcome, stdout);
        fflush(stdout);
        setenv("PS1", "ap# ", 1);
    }
}

/// Status of a command that cannot be started, as shells have it.
[[noreturn]] void run(const std::vector<char*>& command) {
    execvp(command[0], command.data());
    const int error = errno;
    fprintf(stderr, "virtual-ap: %s: %s\n", command[0], strerror(error));
    _exit(error == ENOENT ? 127 : 126);
}

void print_journal() {
    FILE* journal = fopen("/var/log/journal", "re");
    if (journal == nullptr) {
        return;
    }
    for (int c = 0; (c = getc(journal)) != EOF;) {
        putchar(c);
    }
    fclose(journal);
    fflush(stdout);
}

/// Runs the command in a child, prints the journal, and ends as the child did.
int run_with_journal(const std::vector<char*>& command) {
    const pid_t child = fork();
    if (child < 0) {
        perror("virtual-ap: fork");
        return 1;
    }
    if (child == 0) {
        run(command);
    }
    int status = 0;
    while (waitpid(child, &status, 0) < 0) {
    }
    print_journal();
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

} // namespace

int main(int argc, char** argv) {
    Request request = read_arguments(argc, argv);
    orlo::device::enter(orlo::device::entry_beside_program());
    if (request.command[0] == nullptr) {
        use_shell(request);
    }
    if (request.journal) {
        return run_with_journal(request.command);
    }
    run(request.command);
}
