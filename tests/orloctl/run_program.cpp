// SPDX-License-Identifier: MIT
#include "run_program.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace {

// A nameless file that a child reads or writes in place of a standard stream.
class Stream {
public:
    Stream() : file_(tmpfile(), &fclose) {
        if (file_ == nullptr) {
            throw std::runtime_error("no temporary file");
        }
    }

    int descriptor() const { return fileno(file_.get()); }

    void fill(const std::string& text) {
        fwrite(text.data(), 1, text.size(), file_.get());
        rewind(file_.get());
    }

    std::string text() {
        rewind(file_.get());
        std::string result;
        char part[4096];
        size_t count = 0;
        while ((count = fread(part, 1, sizeof part, file_.get())) > 0) {
            result.append(part, count);
        }
        return result;
    }

private:
    std::unique_ptr<FILE, int (*)(FILE*)> file_;
};

[[noreturn]] void become(const Program& program, const Stream& in, const Stream& out,
                         const Stream& err) {
    dup2(in.descriptor(), STDIN_FILENO);
    dup2(out.descriptor(), STDOUT_FILENO);
    dup2(err.descriptor(), STDERR_FILENO);
    for (const std::string& assignment : program.environment) {
        putenv(const_cast<char*>(assignment.c_str()));
    }
    std::vector<char*> words;
    for (const std::string& word : program.words) {
        words.push_back(const_cast<char*>(word.c_str()));
    }
    words.push_back(nullptr);
    execv(words[0], words.data());
    _exit(127);
}

} // namespace

Ended run_program(const Program& program) {
    Stream in;
    Stream out;
    Stream err;
    in.fill(program.input);
    const pid_t child = fork();
    if (child == 0) {
        become(program, in, out, err);
    }
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child) {
        throw std::runtime_error("cannot run " + program.words[0]);
    }
    return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), out.text(),
            err.text()};
}

std::string file_text(const std::string& path) {
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

TemporaryFile::TemporaryFile(const std::string& text) : path_("/tmp/orloctl-test-XXXXXX") {
    const int descriptor = mkstemp(path_.data());
    if (descriptor < 0) {
        throw std::runtime_error("no temporary file");
    }
    close(descriptor);
    std::ofstream(path_) << text;
}

TemporaryFile::~TemporaryFile() {
    unlink(path_.c_str());
}
