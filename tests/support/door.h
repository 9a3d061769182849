// SPDX-License-Identifier: MIT
// The door: every way in which the library reaches out of itself, watched and made to fail on
// demand. The test program defines the functions that the library calls (log, store, shell, files,
// sleep, processes); calls from elsewhere in the process pass through unseen. A caller is known by
// its return address: a call that ends a function of the library, with nothing to do behind it, is
// taken for its caller's.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <sys/types.h>
#include <utility>
#include <vector>

namespace orlo::test {

// What the library did, one line each:
//
//     log api_set_Channel: Entering... radio:0 channel:6     module 5, level 5
//     log 7/0 api_save_config: ...                           any other module and level
//     set wireless.wifi0.channel=6                           add, del, delete: likewise
//     commit wireless                                        or "commit all", "revert all"
//     run /usr/sbin/iwconfig wdev0 commit
//     read ifconfig | grep ...
//     send 137 bytes to 127.0.0.1:36000
//     sleep 3
//     unlink /tmp/radio_setting
//     fork                                               see Door::child()
//
// What failed ends in " (failed)".
using Trace = std::vector<std::string>;

enum class Call {
    access,
    calloc, // memory: not under a sanitizer, which has an allocator of its own
    fopen,
    fork,
    g_file_test,
    ioctl, // a request to the driver
    json,  // memory of a JSON value, where a test has it asked for
    open,
    popen,
    realloc,
    sendto,
    socket,
    strdup,
    system,
    uci_add_list,
    uci_alloc_context,
    uci_commit,
    uci_del_list,
    uci_delete,
    uci_list_configs,
    uci_lookup_ptr,
    uci_revert,
    uci_save,
    uci_set,
    unlink,
    count
};

// What a child of the library did on its side of a fork, and the exit status that it ended with: -1
// when a signal ended it.
struct Child {
    Trace trace;
    int status = -1;
};

class Door {
public:
    static Door& instance();

    // From now on calls are watched: what came before was the way into the access point.
    void open();
    bool is_open() const { return open_; }

    // Makes the n-th call from now fail as the real one would; 1 is the next.
    void fail(Call call, int n = 1);

    // Makes every call from now on fail.
    void fail_always(Call call);

    // Everything since the last forget(), or the lines of some kinds only: {"set", "run"}.
    const Trace& trace() const { return lines_; }
    Trace trace(const std::vector<std::string>& kinds) const;

    // What an operation has logged itself, at module 5 and level 5, without its name.
    Trace log_of(const std::string& operation) const;

    void forget() { lines_.clear(); }

    // Lets the library's next fopen open another file.
    void redirect(const std::string& path) { redirection_ = path; }

    // Blocks of memory that the library has taken from the heap itself and nobody has released;
    // counted while on_call is set, and not under a sanitizer.
    int blocks_in_use() const { return block_count_; }

    // Uses of the configuration store that have begun and not ended.
    int contexts_in_use() const { return contexts_; }

    // Waits for the end of the child that the library forked last, which only the agent ever does.
    Child child() const;

    // Called at each sleep of the library, with the number of sleeps so far. The library never
    // really sleeps here.
    std::function<void(int)> on_sleep;

    // Called with each command that the library is about to run; a wait status that it returns
    // stands for the run.
    std::function<std::optional<int>(const std::string&)> on_run;

    // Called with each command whose output the library is about to read; the file that it names
    // stands for that output, and no command is run.
    std::function<std::optional<std::string>(const std::string&)> on_read;

    // Called at each call of the library that fail() knows, with what is asked of it (a command, a
    // path, an option); makes it fail by saying so.
    std::function<bool(Call, const char*)> on_call;

    // Whether the agent keeps debug lines.
    bool debug_enabled = true;

    // The time that the library sees, in seconds since 1970; 0: the real one.
    long now = 0;

    // For the functions behind the door.
    bool should_fail(Call call, const char* what = "");
    bool expects_failure(Call call) const;
    bool watches_memory() const { return on_call != nullptr || fails_memory(); }
    void* allocated(void* memory);
    void released(const void* memory);
    std::string take_redirection() { return std::exchange(redirection_, std::string()); }
    void record(const std::string& line);
    pid_t fork_with(pid_t (*real_fork)());
    void listed_packages();
    void on_package(const char* verb, const std::string& package, bool failed);
    void allocated_context() { contexts_++; }
    void released_context() {
        contexts_--;
        all_packages_ = false;
    }
    void slept(unsigned seconds);

private:
    bool fails_memory() const;

    static constexpr int call_count = static_cast<int>(Call::count);

    Trace lines_;
    bool open_ = false;
    std::string redirection_;
    bool all_packages_ = false;       // the context in use has listed all packages
    int calls_left_[call_count] = {}; // up to the one that fails; 0: none will
    bool always_fails_[call_count] = {};
    int sleeps_ = 0;
    const void* blocks_[4096] = {}; // no container: it would itself take and release memory
    int block_count_ = 0;
    int contexts_ = 0;
    pid_t child_ = -1;
    int from_child_ = -1; // the parent's end of the pipe that the child's lines come through
    int to_parent_ = -1;  // the child's end
};

} // namespace orlo::test
