// SPDX-License-Identifier: MIT
// Doing things in processes of their own: to be killed, watched, starved of disk, or to meet.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

/// Runs something in a child process; its result.
int in_child(const std::function<int()>& act);

enum class Fate { kKilled, kFinished, kUntraceable };

/// Runs something in a child process that is killed at its n-th step: a step is the way into or out
/// of a system call.
Fate killed_at(int step, const std::function<int()>& act);

/// Runs something in a child process and tells what it does to files, in order: "fsync config/p".
/// Paths are relative to a directory, the random ends of temporary names are cut off. Nothing where
/// processes cannot be traced.
std::optional<std::vector<std::string>> traced(const std::string& directory,
                                               const std::function<int()>& act);

/// Runs something in a child process that sees a small file system of its own in a directory; its
/// report. Nothing where mounts are not allowed.
/// @param options  of the tmpfs: "size=64k"
std::optional<std::string> on_small_disk(const std::string& directory, const std::string& options,
                                         const std::function<std::string()>& act);
