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
    fopen,
    fork,
    popen,
    realloc, // not under a sanitizer, which has an allocator of its own
    sendto,
    socket,
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
    void open() { open_ = true; }
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

    // Waits for the end of the child that the library forked last, which only the agent ever does.
    Child child() const;

    // Called at each sleep of the library, with the number of sleeps so far. The library never
    // really sleeps here.
    std::function<void(int)> on_sleep;

    // Called with each command that the library is about to run; a wait status that it returns
    // stands for the run.
    std::function<std::optional<int>(const std::string&)> on_run;

    // Whether the agent keeps debug lines.
    bool debug_enabled = true;

    // The time that the library sees, in seconds since 1970; 0: the real one.
    long now = 0;

    // For the functions behind the door.
    bool should_fail(Call call);
    bool expects_failure(Call call) const;
    std::string take_redirection() { return std::exchange(redirection_, std::string()); }
    void record(const std::string& line);
    pid_t fork_with(pid_t (*real_fork)());
    void listed_packages();
    void on_package(const char* verb, const std::string& package, bool failed);
    void released_context() { all_packages_ = false; }
    void slept(unsigned seconds);

private:
    static constexpr int call_count = static_cast<int>(Call::count);

    Trace lines_;
    bool open_ = false;
    std::string redirection_;
    bool all_packages_ = false;       // the context in use has listed all packages
    int calls_left_[call_count] = {}; // up to the one that fails; 0: none will
    bool always_fails_[call_count] = {};
    int sleeps_ = 0;
    pid_t child_ = -1;
    int from_child_ = -1; // the parent's end of the pipe that the child's lines come through
    int to_parent_ = -1;  // the child's end
};

} // namespace orlo::test
