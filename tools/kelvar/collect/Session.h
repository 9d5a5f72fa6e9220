#pragma once

#include <set>
#include <string>
#include <vector>

#include "AnchoredSites.h"
#include "Recipes.h"
#include "Request.h"
#include "StandardInput.h"

namespace kelvar_tool {

/// Makes one analysis after the other: runs the program, imports what its tool wrote, says how long that took. Each is
/// whole in the project, or as it was before.
class Session {
 public:
  struct Setting {
    const Wanted& wanted;
    std::string directory;           ///< of the project or the run
    std::string folder;              ///< of outputs
    std::set<std::int64_t> leftOut;  ///< sites that no figure is to go to
    std::vector<kelvar_platform::SourceRow> sources;
  };
  Session(Setting setting, const StandardInput& input, const Guard& guard, Interrupts& interrupts)
      : setting_(std::move(setting)), input_(input), guard_(guard), interrupts_(interrupts) {}

  /// What went wrong is said, and the next analysis is made. Answers false where no other is worth making: a signal
  /// came, or one ended the program.
  bool make(const Recipe& recipe);

  /// Of the program's first run, whose output was passed on; 0 before it.
  [[nodiscard]] int programStatus() const noexcept { return programStatus_; }
  [[nodiscard]] std::size_t made() const noexcept { return made_; }
  [[nodiscard]] std::size_t failed() const noexcept { return failed_; }

 private:
  void makeWhole(const Recipe& recipe);
  void import(const Recipe& recipe, kelvar_import::Request request);
  kelvar_import::Request requestFor(const Recipe& recipe) const;
  [[nodiscard]] Child::Start startOf(const Recipe& recipe, int input) const;
  ChildEnd endOf(const Recipe& recipe, Child& child);
  void importFiles(const Recipe& recipe);
  void importPipe(const Recipe& recipe);
  [[nodiscard]] std::set<std::string> outputsOf(const Recipe& recipe) const;
  [[nodiscard]] std::vector<std::string> filesOf(const Recipe& recipe, pid_t process,
                                                 const std::set<std::string>& before) const;

  Setting setting_;
  const StandardInput& input_;
  const Guard& guard_;
  Interrupts& interrupts_;
  bool hasRun_ = false;
  bool programDied_ = false;
  int programStatus_ = 0;
  std::size_t made_ = 0;
  std::size_t failed_ = 0;
};

}  // namespace kelvar_tool
