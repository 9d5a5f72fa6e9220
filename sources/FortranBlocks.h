#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelvar_sources {

/// Follows the Fortran constructs that have an end statement.
class FortranBlocks {
 public:
  struct Block {
    bool loop = false;
    bool procedure = false;
    std::string name;   ///< of a procedure
    std::string label;  ///< of a loop that ends at a labelled statement
    int number = 0;     ///< counts all blocks from 1
  };

  /// Takes a statement in lower case. Returns the blocks that it closes, the innermost first.
  std::vector<Block> take(std::string_view statement);

  /// Whether the last statement opened a loop.
  [[nodiscard]] bool openedLoop() const noexcept { return openedLoop_; }
  /// The number of the innermost open block; 0 when none is open.
  [[nodiscard]] int innermost() const noexcept { return open_.empty() ? 0 : open_.back().number; }
  /// The name of the innermost procedure; empty outside of procedures.
  [[nodiscard]] std::string procedure() const;

 private:
  void open(Block block);

  std::vector<Block> open_;
  std::vector<std::size_t> procedures_;
  int count_ = 0;
  bool openedLoop_ = false;
};

}  // namespace kelvar_sources
