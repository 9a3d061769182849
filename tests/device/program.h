// SPDX-License-Identifier: MIT
// Running programs from tests: start, talk, wait, and what came out.
#pragma once

#include <csignal>
#include <string>
#include <sys/types.h>
#include <vector>

namespace orlo::test {

struct Outcome {
    int status = 0; ///< exit status, 128 + n when signal n ended the program
    std::string out;
    std::string err;
};

/// The process group of a program: this one's, or its own.
enum class Group { Shared, Own };

/// A started program. What it has not read or written when the object goes is lost; the program is
/// killed then.
class Program {
public:
    /// `settings` are NAME=VALUE texts for the program's environment.
    explicit Program(const std::vector<std::string>& words,
                     const std::vector<std::string>& settings = {}, Group group = Group::Shared);
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    pid_t id() const { return id_; }
    void send(int signal) const { kill(id_, signal); }
    bool has_ended() const;
    void write(const std::string& text) const;

    /// Reads standard output up to a line end.
    std::string read_line() const;

    /// Reads both outputs until nobody can write to them any more, then waits.
    Outcome finish();

private:
    pid_t id_ = -1;
    int in_ = -1;
    int out_ = -1;
    int err_ = -1;
};

Outcome run(const std::vector<std::string>& words, const std::vector<std::string>& settings = {});

/// Runs a command line in /bin/sh, as the library runs its commands.
Outcome shell(const std::string& command);

/// Whether this machine allows an access point of the form ("namespaces" or "chroot").
bool is_possible(const std::string& launcher, const std::string& form);

std::string read_file(const std::string& path);
void write_file(const std::string& path, const std::string& text);

} // namespace orlo::test
