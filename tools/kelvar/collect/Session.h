#pragma once

#include <set>
#include <string>
#include <vector>

#include "AnchoredSites.h"
#include "Recipes.h"
#include "Request.h"
#include "StandardInput.h"

namespace kelvar_tool {

/// Makes one analysis after the other: runs the program, imports the tool's output and prints how long that took. A
/// result in the project is either complete or unchanged.
class Session {
 public:
  struct Setting {
    const Wanted& wanted;
    std::string directory;           ///< of the project or the run
    std::string folder;              ///< for the tools' output
    std::set<std::int64_t> leftOut;  ///< sites that get no figures
    std::vector<kelvar_platform::SourceRow> sources;
  };
  Session(Setting setting, const StandardInput& input, const Guard& guard, Interrupts& interrupts)
      : setting_(std::move(setting)), input_(input), guard_(guard), interrupts_(interrupts) {}

  /// Makes one analysis and reports its failure. Returns false when no further analysis makes sense: because the user
  /// interrupted the command, or a signal ended the program.
  bool make(const Recipe& recipe);

  /// The exit status of the program's first run, whose output is passed on; 0 before it.
  [[nodiscard]] int programStatus() const noexcept { return programStatus_; }
  [[nodiscard]] std::size_t made() const noexcept { return made_; }
  [[nodiscard]] std::size_t failed() const noexcept { return failed_; }

 private:
  void runAndImport(const Recipe& recipe);
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
