#pragma once

#include <sys/types.h>

#include <cstddef>
#include <initializer_list>
#include <string>

namespace kelvar_tool {

/// Makes this process the parent of all processes below it that lose theirs, so that a program cannot leave one behind
/// by leaving its process group.
void adoptOrphans() noexcept;

/// Kills the children of this process, but for those spared, and what becomes its child by that. Answers how many of
/// them were running.
std::size_t endAdopted(std::initializer_list<pid_t> spared);

/// How many children are running, without those spared.
[[nodiscard]] std::size_t runningChildren(std::initializer_list<pid_t> spared);

/// The first process that a signal has stopped, of this one and all below it; 0: none.
[[nodiscard]] pid_t stoppedAmong(pid_t root);

/// What a process is called; empty where it is gone.
[[nodiscard]] std::string nameOfProcess(pid_t process);

}  // namespace kelvar_tool
