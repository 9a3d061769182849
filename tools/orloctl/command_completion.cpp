// SPDX-License-Identifier: MIT
// orloctl completion: what a shell asks when a person presses the tabulator.
#include "commands.h"
#include "completion.h"
#include "text.h"

namespace orloctl {

namespace {

Exit run(const CommandLine& line, Output& output) {
    for (const std::string& candidate : completions(line.words)) {
        output.print(candidate + "\n");
    }
    return exit_done;
}

std::string help() {
    return paragraph("Prints what may stand in the place of the last WORD, one a line; nothing "
                     "where it may be any file. The completions of bash and zsh ask it, so that "
                     "they always know every command, option, operation and record. To have "
                     "completion in a shell that has not found it by itself, load "
                     "tools/orloctl/completion/orloctl.bash; for zsh, put the folder of "
                     "tools/orloctl/completion/_orloctl into fpath before compinit.") +
           "\n  orloctl completion -- call api_set\n";
}

} // namespace

const Command completion_command = {"completion", "completion -- WORD...",
                                    "complete a command line, for shells", help, run};

} // namespace orloctl
