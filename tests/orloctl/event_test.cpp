// SPDX-License-Identifier: MIT
// Events and the recorder that keeps them in order.
#include "event.h"

#include <gmock/gmock.h>

#include "recorder.h"

using namespace orloctl;
using testing::ElementsAre;
using testing::IsEmpty;
using Kind = Event::Kind;

namespace {

Event command(const std::string& line) {
    return {Kind::run, line};
}

Event wait(int seconds) {
    Event event{Kind::sleep, ""};
    event.number = seconds;
    return event;
}

Event message(int level, const std::string& text) {
    Event event{Kind::log, "api_x", text};
    event.number = level;
    return event;
}

std::vector<std::string> shown(const std::vector<Event>& events) {
    std::vector<std::string> lines;
    lines.reserve(events.size());
    for (const Event& event : events) {
        lines.push_back(event_name(event.kind) + std::string(" ") +
                        event_text(event, Secrets(false)));
    }
    return lines;
}

class Recording : public testing::Test {
protected:
    void start() {
        recorder.start(&recorder, [this](const Event& event) { told.push_back(event); });
    }

    Recorder& recorder = Recorder::instance();
    std::vector<Event> told;
};

} // namespace

TEST(Event, services_are_those_that_the_apply_script_restarts) {
    EXPECT_THAT(
        restarted_services(command("/usr/bin/orloagent_apply_settings.sh network-5 log_relay-0 &")),
        ElementsAre("network", "log_relay"));
    EXPECT_THAT(restarted_services(command("/usr/bin/orloagent_apply_settings.sh &")), IsEmpty());
    EXPECT_THAT(restarted_services(command("reboot")), IsEmpty());
}

TEST(Event, an_error_is_a_message_of_that_level_or_that_begins_so) {
    EXPECT_TRUE(is_error_message(message(1, "something went wrong")));
    EXPECT_TRUE(is_error_message(message(5, "error: something went wrong")));
    EXPECT_TRUE(is_error_message(message(5, "Error: something")));
    EXPECT_FALSE(is_error_message(message(5, "no error here")));
    EXPECT_FALSE(is_error_message(command("error")));
}

TEST(Event, secrets_are_learnt_from_options_and_not_from_log_lines) {
    Secrets secrets(false);
    learn({Kind::set, "wireless.wifi0vap0.key", "open sesame", "old sesame"}, secrets);
    learn({Kind::log, "write_key", "a whole message"}, secrets);
    EXPECT_EQ(event_text({Kind::run, "x 'open sesame' 'old sesame' a whole message"}, secrets),
              "x '********' '********' a whole message");
}

TEST(Event, a_text_stays_one_line) {
    Event event{Kind::read, "cat\x07", "two\nlines"};
    EXPECT_EQ(event_text(event, Secrets(false)), "cat? -> 'two\\nlines'");
    event.number = 2;
    EXPECT_EQ(event_text(event, Secrets(false)), "cat? -> 'two\\nlines' (exit status 2)");
}

TEST_F(Recording, waiting_second_by_second_is_one_event) {
    start();
    recorder.add(wait(1));
    recorder.add(wait(1));
    recorder.add(command("a"));
    recorder.add(wait(3));
    EXPECT_THAT(shown(recorder.stop()), ElementsAre("sleep 2 s", "run a", "sleep 3 s"));
    EXPECT_THAT(shown(told), ElementsAre("sleep 2 s", "run a", "sleep 3 s"));
}

TEST_F(Recording, packages_that_are_committed_together_are_one_event) {
    start();
    recorder.add({Kind::get, "network"});
    recorder.looked_up_for("network");
    recorder.add({Kind::commit, "network"});
    recorder.add({Kind::get, "wireless"});
    recorder.looked_up_for("wireless");
    recorder.add({Kind::commit, "wireless"});
    EXPECT_THAT(shown(recorder.stop()), ElementsAre("commit network, wireless"));
    EXPECT_THAT(shown(told), ElementsAre("commit network, wireless"));
}

TEST_F(Recording, a_failure_stands_alone) {
    start();
    recorder.add({Kind::commit, "network"});
    Event failed{Kind::commit, "wireless"};
    failed.failed = true;
    recorder.add(failed);
    EXPECT_THAT(shown(recorder.stop()), ElementsAre("commit network", "commit wireless (failed)"));
}

TEST_F(Recording, a_lookup_for_writing_is_none) {
    start();
    recorder.add({Kind::get, "a.b.c"});
    recorder.add({Kind::get, "d.e.f"});
    recorder.looked_up_for("d.e.f");
    recorder.add({Kind::set, "d.e.f", "1"});
    EXPECT_THAT(shown(recorder.stop()),
                ElementsAre("get a.b.c = (none)", "set d.e.f: (none) -> '1'"));
}

TEST_F(Recording, a_command_is_told_when_it_has_been_read) {
    const auto* const pipe = reinterpret_cast<const FILE*>(&recorder);
    start();
    recorder.opened(pipe, {Kind::read, "ls"});
    recorder.add(message(5, "meanwhile"));
    recorder.read_line(pipe, "file\n");
    EXPECT_THAT(told, IsEmpty());
    recorder.closed(pipe, 0);
    recorder.stop();
    EXPECT_THAT(shown(told), ElementsAre("read ls -> 'file'", "log api_x:0: meanwhile"));
}
