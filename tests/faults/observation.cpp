// SPDX-License-Identifier: MIT
#include "faults/observation.h"

#include "json.h"
#include "operations.h"
#include "support/access_point.h"
#include "support/descriptors.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <functional>
#include <map>
#include <memory>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/lsan_interface.h>
#endif

namespace orlo::test {

namespace {

constexpr unsigned patience = 60; // seconds; nothing here sleeps

constexpr const char* nothing = "/dev/null";
constexpr const char* long_line = "/long-line";
constexpr const char* outputs = "/outputs";

struct Inside : AccessPoint {
    using AccessPoint::staged;
    using AccessPoint::staged_value;
};

// ---- The way from the process of the run to the test ----

// Strings, each with its end; numbers and lists as strings.
class Parcel {
public:
    Parcel() = default;                                                             // to be filled
    explicit Parcel(std::string bytes) : bytes_(std::move(bytes)), filled_(true) {} // to be read

    const std::string& bytes() const { return bytes_; }

    void exchange(std::string& text) {
        if (!filled_) {
            bytes_.append(text, 0, text.find('\0'));
            bytes_ += '\0';
        } else if (next_ < bytes_.size()) {
            text = bytes_.c_str() + next_;
            next_ += text.size() + 1;
        }
    }

    template <class Number>
    void exchange_number(Number& number) {
        std::string text = std::to_string(static_cast<int>(number));
        exchange(text);
        number = static_cast<Number>(atoi(text.c_str()));
    }

    template <class Element, class Exchange>
    void exchange_list(std::vector<Element>& list, Exchange exchange_element) {
        size_t size = list.size();
        exchange_number(size);
        list.resize(size);
        for (Element& element : list) {
            exchange_element(element);
        }
    }

private:
    std::string bytes_;
    bool filled_ = false;
    size_t next_ = 0;
};

void exchange(Parcel& parcel, Observation& seen) {
    const auto text = [&](std::string& line) { parcel.exchange(line); };
    parcel.exchange(seen.answer);
    parcel.exchange(seen.outputs);
    parcel.exchange(seen.leftover);
    parcel.exchange_number(seen.blocks);
    parcel.exchange(seen.marker);
    parcel.exchange_list(seen.trace, text);
    parcel.exchange_list(seen.staged, text);
    parcel.exchange_list(seen.steps, [&](Step& step) {
        parcel.exchange_number(step.call);
        parcel.exchange_number(step.use);
        parcel.exchange(step.what);
    });
}

// ---- In the process of the run ----

// Has the steps fail that shall, and lists all that are taken.
class Watch {
public:
    explicit Watch(std::vector<Fault> faults) : faults_(std::move(faults)) {
        Door& door = Door::instance();
        door.on_call = [this](Call call, const char* what) { return on_call(call, what); };
        door.on_run = [this](const std::string& command) { return status(command); };
        door.on_read = [this](const std::string& command) { return output(command); };
        // What waits for the network waits for a script, which may be the step that failed.
        door.on_sleep = [](int sleeps) {
            usleep(500);
            if (sleeps % 50 == 0) {
                unlink("/tmp/orlo_network_restarting");
            }
        };
    }

    ~Watch() {
        Door& door = Door::instance();
        door.on_call = nullptr;
        door.on_run = nullptr;
        door.on_read = nullptr;
    }
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;

    const std::vector<Step>& steps() const { return steps_; }

private:
    bool on_call(Call call, const char* what) {
        const StoreUse use = store_use();
        steps_.push_back({call, use, use == StoreUse::none ? what : store_key()});
        const int n = ++counts_[call];
        manner_.reset();
        for (const Fault& fault : faults_) {
            if (fault.call == call && fault.n == n) {
                manner_ = fault.manner;
            }
        }
        return manner_ == Manner::fails;
    }

    std::optional<int> status(const std::string& command) {
        const std::optional<Manner> manner = std::exchange(manner_, std::nullopt);
        if (manner == Manner::exits) {
            return 1 << 8;
        }
        if (manner == Manner::killed) {
            return SIGKILL;
        }
        // An endless line may be taken for thousands of words, with a command for each.
        if (had_endless_) {
            return 0;
        }
        // What would go on in the background is waited for, or the library would check once or ten
        // times whether it has ended.
        return !command.empty() && command.back() == '&'
                   ? std::optional<int>(system(command.substr(0, command.size() - 1).c_str()))
                   : std::nullopt;
    }

    std::optional<std::string> output(const std::string& command) {
        const std::optional<Manner> manner = std::exchange(manner_, std::nullopt);
        if (manner == Manner::empty) {
            return nothing;
        }
        if (manner == Manner::endless) {
            had_endless_ = true;
            return long_line;
        }
        // Without what another command should have done this one may print something else.
        return std::any_of(faults_.begin(), faults_.end(),
                           [](const Fault& fault) { return fault.call == Call::system; })
                   ? std::nullopt
                   : std::optional<std::string>(known_output(command));
    }

    // Commands take most of the time, and the same one prints the same in every run.
    std::string known_output(const std::string& command) {
        const std::string key = command + " " + std::to_string(++times_[command]);
        std::string path = outputs + ("/" + std::to_string(std::hash<std::string>()(key)));
        if (access(path.c_str(), F_OK) != 0) {
            mkdir(outputs, 0755);
            const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), pclose);
            const std::unique_ptr<FILE, int (*)(FILE*)> file(fopen(path.c_str(), "we"), fclose);
            for (int c = fgetc(pipe.get()); c != EOF; c = fgetc(pipe.get())) {
                fputc(c, file.get());
            }
        }
        return path;
    }

    const std::vector<Fault> faults_;
    std::map<std::string, int> times_;
    std::optional<Manner> manner_; // of the step that is being taken
    bool had_endless_ = false;
    std::map<Call, int> counts_;
    std::vector<Step> steps_;
};

int json_blocks = 0;

void* take_json_block(size_t size) {
    void* const block = Door::instance().should_fail(Call::json) ? nullptr : malloc(size);
    json_blocks += block != nullptr ? 1 : 0;
    return block;
}

void release_json_block(void* block) {
    json_blocks -= block != nullptr ? 1 : 0;
    free(block);
}

// While it lives, JSON values have watched memory.
struct JsonDoor {
    JsonDoor() { json_set_alloc_funcs(take_json_block, release_json_block); }
    ~JsonDoor() { json_set_alloc_funcs(malloc, free); }
    JsonDoor(const JsonDoor&) = delete;
    JsonDoor& operator=(const JsonDoor&) = delete;
};

std::string unreaped() {
    siginfo_t ended = {};
    const bool any = waitid(P_ALL, 0, &ended, WEXITED | WNOHANG | WNOWAIT) == 0;
    return any ? "a child process; " : "";
}

// The library keeps the socket of its driver queries.
int kept_descriptors(const std::vector<Step>& steps) {
    return std::any_of(steps.begin(), steps.end(),
                       [](const Step& step) { return step.call == Call::ioctl; })
               ? 1
               : 0;
}

bool has_forked(const Trace& trace) {
    return std::find(trace.begin(), trace.end(), "fork") != trace.end();
}

void call_before(const Invocation& invocation, const vendor_ops& ops) {
    for (const std::string& name : invocation.before) {
        const orloctl::Operation& operation = orloctl::find_operation(name);
        std::vector<orloctl::Argument> none = orloctl::read_arguments(operation, {}, false);
        operation.call(ops, none);
    }
}

Observation run(const Invocation& invocation, const std::vector<Fault>& faults) {
    Door& door = Door::instance();
    const auto& ops = *static_cast<const vendor_ops*>(dlsym(vendor_library(), "Vendor_Ops"));
    const orloctl::Operation& operation = orloctl::find_operation(invocation.operation);
    std::vector<orloctl::Argument> arguments =
        orloctl::read_arguments(operation, invocation.words, true);
    {
        const Watch undisturbed({});
        call_before(invocation, ops);
    }
    door.forget();

    Observation seen;
    const int descriptors = open_descriptors(Sockets::counted);
    std::optional<orloctl::Result> result;
    {
        const Watch watch(faults);
        const JsonDoor json;
        result = operation.call(ops, arguments);
        door.on_call = nullptr;
        seen.steps = watch.steps();
    }
    seen.answer = orloctl::json_line(orloctl::result_json(*result));
    seen.answer.pop_back(); // its line end
    {
        const JsonDoor json;
        result.reset();
    }
    seen.leftover += json_blocks != 0 ? "JSON values; " : "";
    for (size_t i = 0; i < arguments.size(); i++) {
        if (operation.parameters[i].is_filled_in()) {
            seen.outputs +=
                orloctl::json_line(argument_json(operation.parameters[i], arguments[i]));
        }
    }
    seen.trace = door.trace();
    if (has_forked(seen.trace)) {
        door.child();
    }
    seen.leftover += unreaped();
    const int kept = kept_descriptors(seen.steps);
    seen.leftover +=
        open_descriptors(Sockets::counted) > descriptors + kept ? "a descriptor; " : "";
    seen.leftover += door.contexts_in_use() != 0 ? "a store context; " : "";
    seen.blocks = door.blocks_in_use();
    seen.staged = Inside::staged();
    seen.marker = Inside::staged_value(invocation.marker);
#ifdef __SANITIZE_ADDRESS__
    seen.leftover += __lsan_do_recoverable_leak_check() != 0 ? "memory; " : "";
#endif
    return seen;
}

void write_all(int file, const std::string& bytes) {
    size_t written = 0;
    while (written < bytes.size()) {
        const ssize_t size = write(file, bytes.data() + written, bytes.size() - written);
        if (size <= 0) {
            _exit(3);
        }
        written += static_cast<size_t>(size);
    }
}

std::string read_all(int file) {
    std::string bytes;
    char piece[65536];
    for (ssize_t size = read(file, piece, sizeof piece); size > 0;
         size = read(file, piece, sizeof piece)) {
        bytes.append(piece, static_cast<size_t>(size));
    }
    return bytes;
}

[[noreturn]] void run_in_child(const Invocation& invocation, const std::vector<Fault>& faults,
                               int report, int printed) {
    setpgid(0, 0);
    dup2(printed, STDOUT_FILENO);
    dup2(printed, STDERR_FILENO);
    alarm(patience);
    Observation seen = run(invocation, faults);
    Parcel parcel;
    exchange(parcel, seen);
    write_all(report, parcel.bytes());
    _exit(0);
}

std::string end_of(int status) {
    if (WIFSIGNALED(status)) {
        return std::string("ended by signal: ") + strsignal(WTERMSIG(status));
    }
    return WEXITSTATUS(status) == 0 ? "" : "exit status " + std::to_string(WEXITSTATUS(status));
}

} // namespace

Observation observe(const Invocation& invocation, const std::vector<Fault>& faults) {
    int ends[2] = {-1, -1};
    const int printed = memfd_create("printed", MFD_CLOEXEC);
    if (pipe2(ends, O_CLOEXEC) != 0 || printed < 0) {
        abort();
    }
    const pid_t child = fork();
    if (child == 0) {
        close(ends[0]);
        run_in_child(invocation, faults, ends[1], printed);
    }
    close(ends[1]);
    Parcel parcel(read_all(ends[0]));
    close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    kill(-child, SIGKILL); // what it has left in the background

    Observation seen;
    seen.end = end_of(status);
    exchange(parcel, seen);
    lseek(printed, 0, SEEK_SET);
    seen.printed = read_all(printed);
    close(printed);
    return seen;
}

} // namespace orlo::test
