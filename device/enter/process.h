// SPDX-License-Identifier: MIT
// The processes around an access point. From outside to inside:
//
//   caller   the process that called enter(); waits and ends like the one inside
//   keeper   looks after one access point and removes it, also when the caller was killed
//   reaper   pid 1 of the namespaces; in the chroot form there is none
//   inside   returns from enter() and goes on as the program
//
// Each waits for the next one, hands signals on to it and ends with its status.
#pragma once

#include <csignal>
#include <sys/types.h>

namespace orlo::device {

/// Blocks, for the life of the object, the signals that the waiting processes hand on.
class SignalsHeld {
public:
    SignalsHeld();
    ~SignalsHeld();
    SignalsHeld(const SignalsHeld&) = delete;
    SignalsHeld& operator=(const SignalsHeld&) = delete;

private:
    sigset_t before_{};
};

/// Lets the kernel send `signal` to this process when its parent ends.
void tie_to_parent(int signal);

enum class Wait {
    ForChild,        ///< other children of this process are not ours to reap
    AndReapAll,      ///< orphans come here to be reaped
    WhileParentLives ///< as AndReapAll; the child is killed when the parent has gone
};

/// Waits until `child` has ended and returns its status, 128 + n when signal n ended it. Signals
/// sent to this process go to the child; those of the terminal have reached it already. Needs
/// SignalsHeld.
int wait_for(pid_t child, Wait manner, pid_t parent = 0);

/// Kills every child of this process, and their children as they arrive here, and reaps them.
void kill_children();

} // namespace orlo::device
