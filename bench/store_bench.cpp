// SPDX-License-Identifier: MIT
// One configuration-store cycle as the library makes it, with a fresh context each time, against
// the bare system calls that such a cycle cannot do without.
#include "ratios.h"

#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <malloc.h>
#include <string>
#include <sys/file.h>
#include <sys/stat.h>
#include <uci.h>
#include <unistd.h>

namespace {

// A store of one package, of the size of a full wireless configuration: 34 sections, 1,300 options.
class Store {
public:
    explicit Store(int staged) {
        char name[] = "/dev/shm/store-XXXXXX";
        root_ = mkdtemp(name);
        mkdir(config_folder().c_str(), 0755);
        std::ofstream config(config_file());
        for (int section = 0; section < 34; section++) {
            config << "config wifi-iface 'section" << section << "'\n";
            const int options = section < 8 ? 39 : 38;
            for (int option = 0; option < options; option++) {
                config << "\toption option_" << option << " 'value " << option << "'\n";
            }
            config << "\n";
        }
        config.close();
        stage(staged);
        truncate_to_ = size_of_staged();
    }
    ~Store() {
        const std::string command = "rm -rf '" + root_ + "'";
        static_cast<void>(!system(command.c_str()));
    }
    Store(const Store&) = delete;
    Store& operator=(const Store&) = delete;

    uci_context* open() const {
        uci_context* context = uci_alloc_context();
        uci_set_confdir(context, config_folder().c_str());
        uci_set_savedir(context, staged_folder().c_str());
        return context;
    }

    bool set(std::string reference) const {
        uci_context* context = open();
        uci_ptr found;
        const bool done = uci_lookup_ptr(context, &found, reference.data(), true) == UCI_OK &&
                          uci_set(context, &found) == UCI_OK &&
                          uci_save(context, found.p) == UCI_OK;
        uci_free_context(context);
        return done;
    }

    bool get(std::string reference) const {
        uci_context* context = open();
        uci_ptr found;
        const bool done = uci_lookup_ptr(context, &found, reference.data(), true) == UCI_OK &&
                          (found.flags & uci_ptr::UCI_LOOKUP_COMPLETE) != 0;
        uci_free_context(context);
        return done;
    }

    // What a context takes that has read an option.
    size_t memory_of_context() const {
        std::string reference = "wireless.section7.option_20";
        uci_ptr found;
        const size_t before = memory_in_use();
        uci_context* context = open();
        uci_lookup_ptr(context, &found, reference.data(), true);
        const size_t after = memory_in_use();
        uci_free_context(context);
        return after - before;
    }

    // The staged changes as they were after making the store.
    void forget_last() const { static_cast<void>(!truncate(staged_file().c_str(), truncate_to_)); }

    std::string config_file() const { return config_folder() + "/wireless"; }
    std::string staged_file() const { return staged_folder() + "/wireless"; }

private:
    static size_t memory_in_use() {
        const struct mallinfo2 info = mallinfo2();
        return info.uordblks + info.hblkhd;
    }

    std::string config_folder() const { return root_ + "/config"; }
    std::string staged_folder() const { return root_ + "/staged"; }

    void stage(int count) const {
        for (int i = 0; i < count; i++) {
            set("wireless.section" + std::to_string(i % 34) + ".option_" + std::to_string(i / 34) +
                "=staged " + std::to_string(i));
        }
    }

    off_t size_of_staged() const {
        struct stat info = {};
        return stat(staged_file().c_str(), &info) == 0 ? info.st_size : 0;
    }

    std::string root_;
    off_t truncate_to_ = 0;
};

void read_all(const std::string& path, int lock) {
    static char buffer[256 * 1024];
    const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd >= 0) {
        flock(fd, lock);
        while (read(fd, buffer, sizeof buffer) > 0) {
        }
        close(fd);
    }
}

void append(const std::string& path, const std::string& line) {
    const int fd = open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0600);
    flock(fd, LOCK_EX);
    static_cast<void>(!write(fd, line.data(), line.size()));
    close(fd);
}

void set_and_save(benchmark::State& state, int staged) {
    const Store store(staged);
    for (auto step : state) {
        if (!store.set("wireless.section7.option_20=another value")) {
            state.SkipWithError("the store refused a change");
            break;
        }
        store.forget_last();
    }
}

void set_with_system_calls(benchmark::State& state, int staged) {
    const Store store(staged);
    for (auto step : state) {
        read_all(store.config_file(), LOCK_SH);
        read_all(store.staged_file(), LOCK_SH);
        append(store.staged_file(), "wireless.section7.option_20='another value'\n");
        store.forget_last();
    }
}

void get(benchmark::State& state, int staged) {
    const Store store(staged);
    for (auto step : state) {
        if (!store.get("wireless.section7.option_20")) {
            state.SkipWithError("the store did not find an option");
            break;
        }
    }
}

void get_with_system_calls(benchmark::State& state, int staged) {
    const Store store(staged);
    for (auto step : state) {
        read_all(store.config_file(), LOCK_SH);
        read_all(store.staged_file(), LOCK_SH);
    }
}

BENCHMARK_CAPTURE(set_and_save, clean, 0);
BENCHMARK_CAPTURE(set_with_system_calls, clean, 0);
BENCHMARK_CAPTURE(set_and_save, staged, 600);
BENCHMARK_CAPTURE(set_with_system_calls, staged, 600);
BENCHMARK_CAPTURE(get, clean, 0);
BENCHMARK_CAPTURE(get_with_system_calls, clean, 0);
BENCHMARK_CAPTURE(get, staged, 600);
BENCHMARK_CAPTURE(get_with_system_calls, staged, 600);

void print_memory(const char* what, int staged) {
    constexpr size_t at_most = 200'000;
    const size_t bytes = Store(staged).memory_of_context();
    printf("%-58s %10zu bytes %26s %zu\n", what, bytes, bytes <= at_most ? "within" : "MISSES",
           at_most);
}

} // namespace

int main(int argc, char** argv) {
    print_memory("store: memory of a context", 0);
    print_memory("store: memory of a context, 600 changes staged", 600);
    return orlo::bench::compare(
        argc, argv,
        {{"store: set and save", "set_and_save/clean", "set_with_system_calls/clean", 3.0},
         {"store: set and save, 600 changes staged", "set_and_save/staged",
          "set_with_system_calls/staged", 3.0},
         {"store: read", "get/clean", "get_with_system_calls/clean", 3.0},
         {"store: read, 600 changes staged", "get/staged", "get_with_system_calls/staged", 3.0}});
}
