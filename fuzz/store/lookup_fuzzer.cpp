// SPDX-License-Identifier: MIT
// Texts that name something in the store, "package.section.option=value", and what is done with
// them. The first byte chooses the action. What a change makes of the package in memory is what
// everybody reads from the store afterwards.
#include "require.h"
#include "store/model.h"
#include "store/package.h"

#include <cstring>

using fuzz::Loaded;
using fuzz::Names;
using fuzz::Store;

namespace {

const std::string config = "\nconfig a 'b'\n\toption x '1'\n\tlist l '1'\n\tlist l '2'\n"
                           "\nconfig a\n\toption q '9'\n\n";

using Change = int (*)(uci_context*, uci_ptr*);
const Change changes[] = {uci_set, uci_add_list, uci_del_list, uci_delete, uci_revert};

void check_lookup(int code, const uci_ptr& ptr) {
    REQUIRE(code == UCI_OK || code == UCI_ERR_INVAL || code == UCI_ERR_NOTFOUND ||
            code == UCI_ERR_PARSE);
    if (code != UCI_OK) {
        return;
    }
    REQUIRE((ptr.flags & uci_ptr::UCI_LOOKUP_DONE) != 0);
    REQUIRE(ptr.p != nullptr && ptr.last != nullptr);
    const void* const deepest = ptr.o != nullptr   ? static_cast<const void*>(&ptr.o->e)
                                : ptr.s != nullptr ? static_cast<const void*>(&ptr.s->e)
                                                   : static_cast<const void*>(&ptr.p->e);
    REQUIRE(ptr.last == deepest);
    REQUIRE(ptr.o == nullptr || ptr.s != nullptr);
    const bool complete = (ptr.flags & uci_ptr::UCI_LOOKUP_COMPLETE) != 0;
    const bool found = ptr.option != nullptr    ? ptr.o != nullptr
                       : ptr.section != nullptr ? ptr.s != nullptr
                                                : true;
    REQUIRE(complete == found);
}

// Two changes cannot be written down so that a reader accepts them, and have always been staged
// nevertheless: of a section that is named by a position which does not exist, and a list element
// of a section without an option.
bool is_lost_when_staged(const uci_ptr& ptr, Change change) {
    const bool no_name = (ptr.flags & uci_ptr::UCI_LOOKUP_EXTENDED) != 0 && ptr.s == nullptr;
    return no_name || (change == uci_add_list && ptr.option == nullptr);
}

// The name leads out of the store, where nothing is staged and a save writes at once.
bool names_a_path(const std::string& text) {
    return text.substr(0, text.find_first_of(".=")).find('/') != std::string::npos;
}

// The change, and what everybody sees of it before and after a commit.
void check_change(Loaded& loaded, uci_ptr& ptr, Change change) {
    const Store& store = Store::instance();
    const bool is_lost = is_lost_when_staged(ptr, change);
    const int code = change(loaded.ctx.get(), &ptr);
    REQUIRE(code >= UCI_OK && code <= UCI_ERR_NOTFOUND);
    const std::string changed = fuzz::model(*ptr.p, Names::all);
    REQUIRE(uci_save(loaded.ctx.get(), ptr.p) == UCI_OK);
    REQUIRE(store.config() == config);
    if (code != UCI_OK || is_lost) {
        return;
    }
    const bool can_be_written = fuzz::types_can_be_written(*ptr.p);
    REQUIRE(fuzz::model(*Loaded().package, Names::all) == changed);
    REQUIRE(uci_commit(loaded.ctx.get(), &ptr.p, false) == UCI_OK);
    if (can_be_written) {
        REQUIRE(fuzz::model(*Loaded().package, Names::written) ==
                fuzz::model(*ptr.p, Names::written));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 1) {
        return 0;
    }
    Store::instance().set_config(config);
    Store::instance().set_staged("");
    std::string text = fuzz::bytes_of(data + 1, size - 1);
    text.resize(strlen(text.c_str()));
    if (names_a_path(text)) {
        return 0;
    }
    Loaded loaded;
    uci_ptr ptr{};
    std::string pieces = text; // the lookup cuts it up
    const bool extended = (data[0] & 0x80) == 0;
    const int found = uci_lookup_ptr(loaded.ctx.get(), &ptr, pieces.data(), extended);
    check_lookup(found, ptr);
    if (found == UCI_OK) {
        check_change(loaded, ptr, changes[data[0] % (sizeof changes / sizeof changes[0])]);
    }
    return 0;
}
