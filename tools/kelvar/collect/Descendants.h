#pragma once

#include <sys/types.h>

#include <cstddef>
#include <initializer_list>
#include <string>

namespace kelvar_tool {

/// Makes this process the parent of all its descendants that lose their parent, so that a program cannot leave one
/// behind by leaving its process group.
void adoptOrphans() noexcept;

/// Kills all children of this process except `spared`, and all that become its children by that. Returns how many of
/// them were running.
std::size_t endAdopted(std::initializer_list<pid_t> spared);

/// The number of running children except `spared`.
[[nodiscard]] std::size_t runningChildren(std::initializer_list<pid_t> spared);

/// The first process stopped by a signal among `root` and its descendants; 0: none.
[[nodiscard]] pid_t stoppedAmong(pid_t root);

/// The command name of a process; empty when it is gone.
[[nodiscard]] std::string nameOfProcess(pid_t process);

}  // namespace kelvar_tool
