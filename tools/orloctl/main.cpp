// SPDX-License-Identifier: MIT
// orloctl: the command-line client of the vendor library. It loads the library as the agent does
// and calls the operations that a person asks for.
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <exception>

#include "commands.h"
#include "nearest.h"
#include "text.h"

namespace {

using namespace orloctl;

const char* const exit_codes = "Exit codes:\n"
                               "  0  done\n"
                               "  1  an operation refused or failed\n"
                               "  2  bad input or usage, no access point here, or the library "
                               "cannot be loaded\n";

std::string main_help() {
    Table table;
    for (const Command* command : all_commands()) {
        table.add({std::string("orloctl ") + command->usage, command->summary});
    }
    return "orloctl calls the operations of the access point's vendor library.\n\n" +
           table.text(2) +
           "\n'orloctl help COMMAND' describes a command. Options may stand anywhere:\n" +
           option_help("") + "\n" + exit_codes;
}

std::string command_help(const Command& command) {
    return std::string("orloctl ") + command.usage + "\n\n" + command.help() +
           "\nOptions of every command: 'orloctl --help'.\n\n" + exit_codes;
}

// "orloctl help COMMAND" is "orloctl COMMAND --help".
CommandLine with_help(CommandLine line) {
    if (line.command == "help") {
        line.help = true;
        line.command = line.words.empty() ? "" : line.words[0];
    }
    return line;
}

Exit run(const CommandLine& line, Output& output) {
    if (line.version) {
        output.print("orloctl " ORLO_VERSION "\n");
        return exit_done;
    }
    const Command* command = find_command(line.command);
    if (command == nullptr && !line.command.empty()) {
        throw Refusal("unknown command '" + line.command + "'" +
                      advice(line.command, command_names(), "'orloctl --help' lists them"));
    }
    if (line.help) {
        output.print(command == nullptr ? main_help() : command_help(*command));
        return exit_done;
    }
    if (command == nullptr) {
        throw Refusal("what shall be done? 'orloctl --help' lists the commands");
    }
    return command->run(line, output);
}

// A reader that goes away shows as a failed write. Handled, not ignored: programs that operations
// start get the usual behaviour back.
void survive_closed_pipes() {
    struct sigaction action = {};
    action.sa_handler = [](int) {};
    action.sa_flags = SA_RESTART;
    sigaction(SIGPIPE, &action, nullptr);
}

Exit checked(Exit result, const Output& output) {
    if (output.error() == 0 || output.error() == EPIPE) {
        return result;
    }
    fprintf(stderr, "orloctl: cannot write to standard output: %s\n", strerror(output.error()));
    return result == exit_done ? exit_failed : result;
}

// A sentence with the program's name; of several, each has its own line.
void print_error(const char* message) {
    for (const char* line = message; line != nullptr;) {
        const char* end = strchr(line, '\n');
        fprintf(stderr, "orloctl: %.*s\n",
                static_cast<int>(end == nullptr ? strlen(line) : static_cast<size_t>(end - line)),
                line);
        line = end == nullptr ? nullptr : end + 1;
    }
}

} // namespace

int main(int argc, char** argv) {
    survive_closed_pipes();
    try {
        Output output;
        const std::vector<std::string> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
        return checked(run(with_help(read_command_line(arguments)), output), output);
    } catch (const Refusal& refusal) {
        print_error(refusal.what());
        return exit_refused;
    } catch (const std::exception& error) {
        print_error(error.what());
        return exit_failed;
    }
}
