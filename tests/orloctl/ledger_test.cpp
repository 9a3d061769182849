// SPDX-License-Identifier: MIT
// Telling committed changes from discarded ones.
#include "ledger.h"

#include <gmock/gmock.h>

using namespace orloctl;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using Kind = StagedChange::Kind;

const StagedChange radio_on = {Kind::set, "wireless.wifi1.disabled", "0"};
const StagedChange channel_40 = {Kind::set, "wireless.wifi1.channel", "40"};
const StagedChange not_forced = {Kind::set, "orloagent.wifi1.forceDisable", "off"};

Store quiet_store() {
    Store store;
    store.values = {{"wireless.wifi1.disabled", {"1"}},
                    {"wireless.wifi1.channel", {"auto"}},
                    {"orloagent.wifi1.forceDisable", {"on"}}};
    return store;
}

// A store with these changes, staged or (like committed ones) only in the values.
Store changed(Store store, const std::vector<StagedChange>& changes, bool staged) {
    for (const StagedChange& change : changes) {
        if (change.kind == Kind::remove) {
            store.values.erase(change.key);
        } else {
            store.values[change.key] = {change.value};
        }
        if (staged) {
            store.staged.push_back(change);
        }
    }
    return store;
}

} // namespace

TEST(Ledger, a_staged_change_is_neither_committed_nor_discarded) {
    Ledger ledger(quiet_store());
    ledger.succeeded(changed(quiet_store(), {radio_on}, true));
    EXPECT_THAT(ledger.staged(), ElementsAre("wireless.wifi1.disabled=0"));
    EXPECT_THAT(ledger.committed(), IsEmpty());
    EXPECT_THAT(ledger.discarded(), IsEmpty());
}

TEST(Ledger, what_an_operation_that_succeeded_no_longer_leaves_staged_is_committed) {
    Ledger ledger(quiet_store());
    ledger.succeeded(changed(quiet_store(), {radio_on}, true));
    // commits the package with a change of its own, stages one of another package
    const Store committed = changed(quiet_store(), {radio_on, channel_40}, false);
    ledger.succeeded(changed(committed, {not_forced}, true));
    EXPECT_THAT(ledger.committed(),
                ElementsAre("wireless.wifi1.disabled=0", "wireless.wifi1.channel=40"));
    EXPECT_THAT(ledger.staged(), ElementsAre("orloagent.wifi1.forceDisable=off"));
}

TEST(Ledger, what_an_operation_that_failed_discarded_is_discarded) {
    Ledger ledger(quiet_store());
    ledger.succeeded(changed(quiet_store(), {radio_on}, true));
    ledger.failed(quiet_store(), quiet_store()); // it discarded everything itself
    EXPECT_THAT(ledger.discarded(), ElementsAre("wireless.wifi1.disabled=0"));
    EXPECT_THAT(ledger.committed(), IsEmpty());
    EXPECT_THAT(ledger.staged(), IsEmpty());
}

TEST(Ledger, what_was_left_staged_and_is_then_discarded_counts_too) {
    Ledger ledger(quiet_store());
    ledger.failed(changed(quiet_store(), {not_forced}, true), quiet_store());
    EXPECT_THAT(ledger.discarded(), ElementsAre("orloagent.wifi1.forceDisable=off"));
}

TEST(Ledger, an_operation_may_commit_before_it_fails) {
    Ledger ledger(quiet_store());
    ledger.succeeded(changed(quiet_store(), {radio_on}, true));
    const Store committed = changed(quiet_store(), {radio_on, channel_40}, false);
    ledger.failed(changed(committed, {not_forced}, true), committed);
    EXPECT_THAT(ledger.committed(),
                ElementsAre("wireless.wifi1.disabled=0", "wireless.wifi1.channel=40"));
    EXPECT_THAT(ledger.discarded(), ElementsAre("orloagent.wifi1.forceDisable=off"));
}

TEST(Ledger, what_cannot_be_discarded_stays_staged) {
    Ledger ledger(quiet_store());
    const Store stuck = changed(quiet_store(), {not_forced}, true);
    ledger.failed(stuck, stuck);
    EXPECT_THAT(ledger.staged(), ElementsAre("orloagent.wifi1.forceDisable=off"));
    EXPECT_THAT(ledger.discarded(), IsEmpty());
    EXPECT_THAT(ledger.committed(), IsEmpty());
}

TEST(Ledger, a_committed_removal_is_shown_with_a_minus) {
    const StagedChange removal = {Kind::remove, "wireless.wifi1.channel", ""};
    Ledger ledger(quiet_store());
    ledger.succeeded(changed(quiet_store(), {removal}, false));
    EXPECT_THAT(ledger.committed(), ElementsAre("-wireless.wifi1.channel"));
}

TEST(StagedChange, reads_as_in_a_list_of_changes) {
    const std::string key = "p.s.o";
    EXPECT_EQ((StagedChange{Kind::set, key, "v"}.text()), "p.s.o=v");
    EXPECT_EQ((StagedChange{Kind::remove, key, ""}.text()), "-p.s.o");
    EXPECT_EQ((StagedChange{Kind::add, "p.s", "type"}.text()), "+p.s=type");
    EXPECT_EQ((StagedChange{Kind::add_element, key, "v"}.text()), "p.s.o+=v");
    EXPECT_EQ((StagedChange{Kind::remove_element, key, "v"}.text()), "p.s.o-=v");
    EXPECT_EQ((StagedChange{Kind::rename, key, "n"}.text()), "@p.s.o=n");
    EXPECT_EQ((StagedChange{Kind::reorder, "p.s", "0"}.text()), "^p.s=0");
}
