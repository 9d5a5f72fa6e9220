#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelvar_sources {

/// Follows the constructs of Fortran that have an end of their own.
class FortranBlocks {
 public:
  struct Block {
    bool loop = false;
    bool procedure = false;
    std::string name;   ///< of a procedure
    std::string label;  ///< of a loop that ends at a labelled statement
    int number = 0;     ///< counts all blocks from 1
  };

  /// Takes a statement in small letters. Answers the blocks that it closes, the innermost first.
  std::vector<Block> take(std::string_view statement);

  /// Whether the statement that came last opened a loop.
  [[nodiscard]] bool openedLoop() const noexcept { return openedLoop_; }
  /// Of the innermost open block; 0 where none is open.
  [[nodiscard]] int innermost() const noexcept { return open_.empty() ? 0 : open_.back().number; }
  /// Of the innermost procedure; empty outside of all.
  [[nodiscard]] std::string procedure() const;

 private:
  void open(Block block);

  std::vector<Block> open_;
  std::vector<std::size_t> procedures_;
  int count_ = 0;
  bool openedLoop_ = false;
};

}  // namespace kelvar_sources
