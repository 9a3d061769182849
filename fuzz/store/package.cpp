// SPDX-License-Identifier: MIT
#include "store/package.h"

#include "require.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace fuzz {

namespace {

// Much cheaper than a stream, and called several times for each input.
void put(const std::string& path, const std::string& bytes) {
    const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    REQUIRE(fd >= 0);
    REQUIRE(write(fd, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()));
    close(fd);
}

std::string take(const std::string& path) {
    std::string bytes;
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    struct stat info {};
    if (fd < 0 || fstat(fd, &info) != 0) {
        return bytes;
    }
    bytes.resize(static_cast<size_t>(info.st_size));
    REQUIRE(read(fd, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()));
    close(fd);
    return bytes;
}

} // namespace

Store::Store() {
    REQUIRE(mkdir(sandbox_.staged.c_str(), 0700) == 0);
}

Store& Store::instance() {
    static Store store;
    return store;
}

void Store::set_config(const std::string& bytes) const {
    put(sandbox_.config + "/p", bytes);
}

void Store::set_staged(const std::string& bytes) const {
    put(sandbox_.staged + "/p", bytes);
}

std::string Store::config() const {
    return take(sandbox_.config + "/p");
}

std::string Store::staged() const {
    return take(sandbox_.staged + "/p");
}

Loaded::Loaded() : ctx(Store::instance().open()) {
    uci_ptr ptr{};
    char name[] = "p";
    code = uci_lookup_ptr(ctx.get(), &ptr, name, false);
    package = ptr.p;
    REQUIRE((code == UCI_OK) == (package != nullptr));
}

} // namespace fuzz
