// SPDX-License-Identifier: MIT
// The parser of staged changes: whatever the file holds, the package loads; a commit makes the
// configuration what readers saw before it, or touches nothing; a revert drops all changes or none.
#include "require.h"
#include "store/model.h"
#include "store/package.h"

using fuzz::Loaded;
using fuzz::Names;
using fuzz::Store;

namespace {

const std::string config = "\nconfig a 'b'\n\toption x '1'\n\tlist l '1'\n\tlist l '2'\n"
                           "\nconfig a\n\toption q '9'\n"
                           "\nconfig type 'other'\n\toption x 'it'\\''s'\n\n";

std::string model_of_config() {
    static const std::string known = [] {
        Store::instance().set_config(config);
        Store::instance().set_staged("");
        return fuzz::model(*Loaded().package, Names::all);
    }();
    return known;
}

void check_revert(const std::string& input, const char* what) {
    const Store& store = Store::instance();
    store.set_staged(input);
    Loaded loaded;
    uci_ptr ptr{};
    std::string text = what;
    REQUIRE(uci_lookup_ptr(loaded.ctx.get(), &ptr, text.data(), true) == UCI_OK);
    REQUIRE(uci_revert(loaded.ctx.get(), &ptr) == UCI_OK);
    REQUIRE(store.config() == config);
    if (store.staged().empty()) {
        REQUIRE(fuzz::model(*ptr.p, Names::all) == model_of_config());
    } else {
        // The package that revert gives back is the one that everybody sees.
        REQUIRE(fuzz::model(*ptr.p, Names::all) == fuzz::model(*Loaded().package, Names::all));
    }
}

void check_commit(const std::string& input) {
    const Store& store = Store::instance();
    store.set_staged(input);
    std::string seen;
    bool can_be_written = false;
    {
        const Loaded reader;
        seen = fuzz::model(*reader.package, Names::written);
        can_be_written = fuzz::types_can_be_written(*reader.package);
    }
    {
        Loaded loaded;
        REQUIRE(uci_commit(loaded.ctx.get(), &loaded.package, false) == UCI_OK);
        REQUIRE(fuzz::model(*loaded.package, Names::written) == seen);
    }
    if (!store.staged().empty()) {
        REQUIRE(store.config() == config);
        REQUIRE(store.staged().compare(0, input.size(), input) == 0);
    }
    if (can_be_written) {
        REQUIRE(fuzz::model(*Loaded().package, Names::written) == seen);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const Store& store = Store::instance();
    const std::string input = fuzz::bytes_of(data, size);
    const std::string base = model_of_config();
    store.set_config(config);
    store.set_staged(input);
    {
        const Loaded first;
        const Loaded second;
        REQUIRE(first.code == UCI_OK);
        REQUIRE(fuzz::model(*first.package, Names::all) ==
                fuzz::model(*second.package, Names::all));
        REQUIRE(fuzz::staged_changes(*first.package) == fuzz::staged_changes(*second.package));
    }
    REQUIRE(store.staged() == input);
    check_revert(input, "p.b.x");
    check_revert(input, "p");
    check_commit(input);
    return 0;
}
