// SPDX-License-Identifier: MIT
#include "faults/wrappers.h"

#include "support/access_point.h"

namespace orlo::test {

namespace {

StoreUse current = StoreUse::none;
std::string current_key;

template <class... A>
int hand_on(StoreUse use, const char* wrapper, const char* package, const char* key,
            A... arguments) {
    current = use;
    current_key = std::string(wrapper) + ":" + (package == nullptr ? "" : package);
    current_key += key == nullptr ? "" : std::string(".") + key;
    const int result =
        reinterpret_cast<int (*)(A...)>(dlsym(vendor_library(), wrapper))(arguments...);
    current = StoreUse::none;
    return result;
}

} // namespace

StoreUse store_use() {
    return current;
}

const std::string& store_key() {
    return current_key;
}

} // namespace orlo::test

using orlo::test::hand_on;
using orlo::test::StoreUse;

extern "C" {

int uciGetValue(const char* package, const char* key, char* out, size_t out_size) {
    return hand_on(StoreUse::get, __func__, package, key, package, key, out, out_size);
}

int uciSetValue(const char* package, const char* key, const char* value) {
    return hand_on(StoreUse::set, __func__, package, key, package, key, value);
}

int uciAddListElement(const char* package, const char* key, const char* value) {
    return hand_on(StoreUse::set, __func__, package, key, package, key, value);
}

int uciDelListElement(const char* package, const char* key, const char* value) {
    return hand_on(StoreUse::set, __func__, package, key, package, key, value);
}

int uciDeleteValue(const char* package, const char* key, int must_exist) {
    return hand_on(StoreUse::set, __func__, package, key, package, key, must_exist);
}

int uciCommitValue(const char* package) {
    return hand_on(StoreUse::commit, __func__, package, nullptr, package);
}

int uciRevertValue(const char* package, const char* key) {
    return hand_on(StoreUse::revert, __func__, package, key, package, key);
}

} // extern "C"
