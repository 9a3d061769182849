// SPDX-License-Identifier: MIT
// orloctl preview: what a description would do, without doing it.
#include "application.h"
#include "commands.h"
#include "description.h"
#include "library.h"
#include "preview.h"
#include "text.h"
#include "throw_away.h"

namespace orloctl {

namespace {

Exit run(const CommandLine& line, Output& output) {
    if (line.words.size() != 1) {
        throw Refusal("'orloctl preview' takes one FILE; \"-\" reads standard input");
    }
    const std::string& path = line.words[0];
    const std::string source = path == "-" ? "standard input" : path;
    const std::string text = read_file(path);
    const Description description = read_description(text, source, !line.raw);
    Secrets secrets(line.show_keys);
    secrets.learn(parse_json(text, source).get());

    const Library library = load_library(line); // its files lie outside
    const Configuration configuration = read_configuration(line.config);
    enter_throw_away(configuration);

    Noise noise(line.verbose);
    Preview preview(library, std::move(secrets), noise);
    Application application(library, plan(description, !line.no_save), preview.watcher());
    const bool applied = application.run();
    output.print(line.json ? json_document(preview.json(application, configuration.source))
                           : preview.text(application, configuration.source, Paint(output)));
    return applied ? exit_done : exit_failed;
}

std::string help() {
    return paragraph("Shows what 'orloctl apply' would do with the same FILE: applies it in a "
                     "virtual access point of its own, which is gone afterwards, and touches "
                     "nothing else. It starts with a copy of the configuration in DIR; without "
                     "--config, of that of the access point on which it runs, with what is staged "
                     "there, or elsewhere of the sample configuration.") +
           "\n" +
           paragraph("Operation by operation: each option that gets another value (OPTION: OLD -> "
                     "NEW, in the order of staging; writes that change nothing are left out), each "
                     "command that would run, what else takes effect, each service that restarts, "
                     "each message that tells of an error. Then, after an operation "
                     "that refuses, its reason, what would be in force all the same and what "
                     "would not be done; and a line that sums up.") +
           "\n" +
           paragraph("The driver is a simulated one in the state of the sample device, or of the "
                     "virtual access point on which this runs: what depends on channels in use or "
                     "on stations may differ on the device. Keys, secrets and passwords are shown "
                     "as ******** unless --show-keys is given.") +
           "\n" +
           paragraph("It needs namespaces, or root and chroot, and the root of the virtual access "
                     "point, which it finds in the build folder or installed. Waiting is cut "
                     "short. With --json: the same for programs. Exit code 1: an operation would "
                     "refuse.") +
           "\nExamples:\n"
           "  orloctl preview examples/office.json\n"
           "  orloctl preview office.json --config backup/etc/config --json\n"
           "\nOptions:\n" +
           option_help("preview");
}

} // namespace

const Command preview_command = {"preview", "preview FILE [--config DIR] [--no-save]",
                                 "show what apply would do, and do nothing", help, run};

} // namespace orloctl
