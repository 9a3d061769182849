// SPDX-License-Identifier: MIT
// The parser of configuration files: what is refused is never overwritten; what is read can be
// changed, committed and read again, and is the same.
#include "require.h"
#include "store/model.h"
#include "store/package.h"

using fuzz::Loaded;
using fuzz::Names;
using fuzz::Store;

namespace {

// A change was staged while the file was a good one, which then became the input.
void commit_onto(const std::string& input, int code_of_input) {
    const Store& store = Store::instance();
    const std::string change = "p.probe.kept='yes'\n";
    store.set_config("config probe probe\n");
    store.set_staged(change);
    Loaded before;
    store.set_config(input);
    const int code = uci_commit(before.ctx.get(), &before.package, false);
    REQUIRE(code == code_of_input);
    if (code != UCI_OK) {
        REQUIRE(store.config() == input);
        REQUIRE(store.staged() == change);
    }
    store.set_staged("");
}

void act(int (*change)(uci_context*, uci_ptr*), std::string what) {
    Loaded loaded;
    uci_ptr ptr{};
    REQUIRE(uci_lookup_ptr(loaded.ctx.get(), &ptr, what.data(), true) == UCI_OK);
    REQUIRE(change(loaded.ctx.get(), &ptr) == UCI_OK);
    REQUIRE(uci_save(loaded.ctx.get(), ptr.p) == UCI_OK);
    REQUIRE(uci_commit(loaded.ctx.get(), &ptr.p, false) == UCI_OK);
    REQUIRE(Store::instance().staged().empty());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const Store& store = Store::instance();
    const std::string input = fuzz::bytes_of(data, size);
    store.set_config(input);
    store.set_staged("");
    std::string read;
    bool can_be_written = false;
    int code = 0;
    {
        const Loaded loaded;
        code = loaded.code;
        REQUIRE(code == UCI_OK || code == UCI_ERR_PARSE);
        if (code == UCI_OK) {
            read = fuzz::model(*loaded.package, Names::all);
            can_be_written = fuzz::types_can_be_written(*loaded.package);
        }
    }
    REQUIRE(store.config() == input);
    commit_onto(input, code);
    if (code != UCI_OK || !can_be_written) {
        return 0;
    }
    store.set_config(input);
    const std::string probe = "zz_probe_of_the_fuzzer";
    act(uci_set, "p." + probe + "=probe");
    act(uci_delete, "p." + probe);
    const std::string written = store.config();
    REQUIRE(fuzz::model(*Loaded().package, Names::all) == read);
    act(uci_set, "p." + probe + "=probe");
    act(uci_delete, "p." + probe);
    REQUIRE(store.config() == written);
    return 0;
}
