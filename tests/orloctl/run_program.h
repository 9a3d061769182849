// SPDX-License-Identifier: MIT
// Runs a program and keeps what it printed.
#pragma once

#include <string>
#include <vector>

struct Ended {
    int status = -1; // exit status; 128 + n for signal n
    std::string out;
    std::string err;
};

struct Program {
    std::vector<std::string> words; // the first is its path
    std::string input;
    std::vector<std::string> environment; // "NAME=value", beside the test's own
};

Ended run_program(const Program& program);

std::string file_text(const std::string& path);

// A file of its own for one test, removed at the end of it.
class TemporaryFile {
public:
    explicit TemporaryFile(const std::string& text = "");
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    const std::string& path() const { return path_; }
    std::string text() const { return file_text(path_); }

private:
    std::string path_;
};
