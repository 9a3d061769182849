// SPDX-License-Identifier: MIT
#include "recorder.h"

#include <algorithm>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

#include "watch/interposing.h"

namespace orloctl {

namespace {

constexpr size_t most_output = 512; // of a command, that is kept

// An event as it goes through the pipe: the fields that a child's calls fill, one a line.
std::string packed(const Event& event) {
    Json line = json_array_new();
    append(line, json_int(static_cast<int>(event.kind)));
    append(line, json_text(event.subject));
    append(line, json_text(event.detail));
    append(line, json_int(event.number));
    append(line, json_int(event.line));
    append(line, json_bool(event.failed));
    return json_line(line);
}

Event unpacked(const json_t* line) {
    const auto number = [line](size_t i) {
        return static_cast<int>(json_integer_value(json_array_get(line, i)));
    };
    const auto text = [line](size_t i) -> std::string {
        const char* value = json_string_value(json_array_get(line, i));
        return value == nullptr ? "" : value;
    };
    Event event{static_cast<Event::Kind>(number(0)), text(1), text(2)};
    event.number = number(3);
    event.line = number(4);
    event.failed = json_is_true(json_array_get(line, 5));
    event.in_child = true;
    return event;
}

} // namespace

Recorder& Recorder::instance() {
    static Recorder recorder;
    return recorder;
}

void Recorder::start(const void* of_library, Listener listener) {
    library_ = orlo::device::object_of(of_library);
    listener_ = std::move(listener);
}

std::vector<Event> Recorder::stop() {
    library_ = nullptr;
    take_in_child();
    open_.clear(); // what is still being read will not be closed any more
    tell_whole_ones();
    told_ = 0;
    return std::exchange(events_, {});
}

bool Recorder::watches(const void* caller) const {
    if (!is_watching()) {
        return false;
    }
    static const void* const own = orlo::device::object_of(reinterpret_cast<void*>(&packed));
    const void* const object = orlo::device::object_of(caller);
    return object == library_ || object == own;
}

void Recorder::add(Event event) {
    if (to_parent_ >= 0) {
        const std::string line = packed(event);
        const ssize_t ignored = write(to_parent_, line.data(), line.size());
        static_cast<void>(ignored);
        return;
    }
    if (told_ < events_.size() && goes_on(events_.back(), event)) {
        join_event(events_.back(), event);
    } else {
        events_.push_back(std::move(event));
    }
    tell_whole_ones();
}

void Recorder::opened(const FILE* pipe, Event event) {
    if (to_parent_ < 0) {
        open_[pipe] = events_.size();
    }
    add(std::move(event));
}

void Recorder::read_line(const FILE* pipe, const char* line) {
    const auto found = open_.find(pipe);
    if (found != open_.end() && events_[found->second].detail.size() < most_output) {
        events_[found->second].detail += line;
    }
}

void Recorder::closed(const FILE* pipe, int status) {
    const auto found = open_.find(pipe);
    if (found == open_.end()) {
        return;
    }
    Event& event = events_[found->second];
    event.number = status;
    event.detail.erase(event.detail.find_last_not_of('\n') + 1);
    open_.erase(found);
    tell_whole_ones();
}

void Recorder::looked_up_for(const std::string& option) {
    if (!events_.empty() && told_ < events_.size() && events_.back().kind == Event::Kind::get &&
        events_.back().subject == option) {
        events_.pop_back();
    }
}

// The last event may go on, or be a lookup that is for writing: then the one before it is the last.
size_t Recorder::settled() const {
    size_t count = events_.size();
    if (count > 0 && events_[count - 1].kind == Event::Kind::get) {
        count--;
    }
    return count == 0 ? 0 : count - 1;
}

// In order, and what may still change not yet.
void Recorder::tell_whole_ones() {
    size_t whole = library_ == nullptr ? events_.size() : settled();
    for (const auto& [pipe, place] : open_) {
        whole = std::min(whole, place);
    }
    for (; told_ < whole; told_++) {
        if (listener_) {
            listener_(events_[told_]);
        }
    }
}

pid_t Recorder::fork_with(pid_t (*real_fork)()) {
    int ends[2] = {-1, -1};
    if (pipe2(ends, O_CLOEXEC) != 0) {
        return real_fork(); // it works unseen
    }
    const pid_t child = real_fork();
    if (child == 0) {
        to_parent_ = ends[1];
        return 0;
    }
    close(ends[1]);
    from_child_ = ends[0];
    child_ = child;
    return child;
}

// The pipe is at its end when the child is: programs that it starts do not inherit it.
void Recorder::take_in_child() {
    if (from_child_ < 0) {
        return;
    }
    FILE* lines = fdopen(std::exchange(from_child_, -1), "r");
    if (lines == nullptr) {
        return;
    }
    while (true) {
        const Json line(json_loadf(lines, JSON_DISABLE_EOF_CHECK, nullptr));
        if (line == nullptr) {
            break;
        }
        events_.push_back(unpacked(line.get()));
    }
    fclose(lines);
    int status = 0;
    waitpid(child_, &status, 0);
}

} // namespace orloctl
