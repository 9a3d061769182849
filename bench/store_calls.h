// The library's calls of the configuration store: recorded while an operation runs, and made again
// without the operation. That is the floor of what the operation can cost.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace orlo::bench {

struct StoreCall {
    enum class Kind { open, look_up, set, add_to_list, erase, save, close };
    Kind kind;
    std::string text; // what is looked up: "wireless.wifi0.channel=36"
};

// What an operation asks of the store. Ends the program when it makes a call that is not in Kind.
std::vector<StoreCall> store_calls_of(const std::function<void()>& operation);

// Makes the same calls; ends the program when one of them fails.
void repeat(const std::vector<StoreCall>& calls);

// The same as a person would type it: a line of "uci" for each edit.
std::string as_script(const std::vector<StoreCall>& calls);

} // namespace orlo::bench
