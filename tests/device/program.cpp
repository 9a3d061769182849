// SPDX-License-Identifier: MIT
// Running programs from tests.
#include "program.h"

#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <map>
#include <poll.h>
#include <sstream>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace orlo::test {
namespace {

struct Pipe {
    int read_end = -1;
    int write_end = -1;
};

Pipe make_pipe() {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) {
        throw std::runtime_error("pipe");
    }
    return {ends[0], ends[1]};
}

void close_once(int& fd) {
    if (fd >= 0) {
        close(fd);
        fd = -1;
    }
}

[[noreturn]] void become(const std::vector<std::string>& words,
                         const std::vector<std::string>& settings) {
    for (const std::string& setting : settings) {
        const size_t sign = setting.find('=');
        setenv(setting.substr(0, sign).c_str(), setting.substr(sign + 1).c_str(), 1);
    }
    std::vector<char*> arguments;
    arguments.reserve(words.size() + 1);
    for (const std::string& word : words) {
        arguments.push_back(const_cast<char*>(word.c_str()));
    }
    arguments.push_back(nullptr);
    execvp(arguments[0], arguments.data());
    _exit(127);
}

/// Appends what can be read to `text`; closes the descriptor at its end.
void take(int& fd, std::string& text) {
    char buffer[4096];
    const ssize_t got = read(fd, buffer, sizeof buffer);
    if (got <= 0) {
        close_once(fd);
        return;
    }
    text.append(buffer, static_cast<size_t>(got));
}

} // namespace

Program::Program(const std::vector<std::string>& words, const std::vector<std::string>& settings,
                 Group group) {
    const Pipe in = make_pipe();
    const Pipe out = make_pipe();
    const Pipe err = make_pipe();
    id_ = fork();
    if (id_ == 0) {
        if (group == Group::Own) {
            setpgid(0, 0);
        }
        dup2(in.read_end, STDIN_FILENO);
        dup2(out.write_end, STDOUT_FILENO);
        dup2(err.write_end, STDERR_FILENO);
        become(words, settings);
    }
    close(in.read_end);
    close(out.write_end);
    close(err.write_end);
    in_ = in.write_end;
    out_ = out.read_end;
    err_ = err.read_end;
    if (id_ < 0) {
        throw std::runtime_error("fork");
    }
}

Program::~Program() {
    close_once(in_);
    close_once(out_);
    close_once(err_);
    if (id_ > 0) {
        kill(id_, SIGKILL);
        waitpid(id_, nullptr, 0);
    }
}

bool Program::has_ended() const {
    siginfo_t info{};
    waitid(P_PID, static_cast<id_t>(id_), &info, WEXITED | WNOHANG | WNOWAIT);
    return info.si_pid != 0;
}

void Program::write(const std::string& text) const {
    if (::write(in_, text.data(), text.size()) != static_cast<ssize_t>(text.size())) {
        throw std::runtime_error("write to the program");
    }
}

std::string Program::read_line() const {
    std::string line;
    char c = 0;
    while (read(out_, &c, 1) == 1 && c != '\n') {
        line += c;
    }
    return line;
}

Outcome Program::finish() {
    close_once(in_);
    Outcome outcome;
    while (out_ >= 0 || err_ >= 0) {
        pollfd ready[] = {{out_, POLLIN, 0}, {err_, POLLIN, 0}};
        poll(ready, 2, -1);
        if (ready[0].revents != 0) {
            take(out_, outcome.out);
        }
        if (ready[1].revents != 0) {
            take(err_, outcome.err);
        }
    }
    int status = 0;
    waitpid(id_, &status, 0);
    id_ = -1;
    outcome.status = WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
    return outcome;
}

Outcome run(const std::vector<std::string>& words, const std::vector<std::string>& settings) {
    return Program(words, settings).finish();
}

Outcome shell(const std::string& command) {
    return run({"/bin/sh", "-c", command});
}

bool is_possible(const std::string& launcher, const std::string& form) {
    static std::map<std::string, bool> known;
    const auto found = known.find(form);
    if (found != known.end()) {
        return found->second;
    }
    const bool possible = run({launcher, "true"}, {"ORLO_VIRTUAL_AP=" + form}).status != 77;
    known[form] = possible;
    return possible;
}

std::string read_file(const std::string& path) {
    std::ifstream file(path);
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
}

void write_file(const std::string& path, const std::string& text) {
    std::ofstream file(path);
    file << text;
}

} // namespace orlo::test
