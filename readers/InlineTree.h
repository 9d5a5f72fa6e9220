#pragma once

#include <elfutils/libdw.h>

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "Record.h"

namespace kelvar_readers {

/// The calls that were inlined into one function, by address.
class InlineTree {
 public:
  /// `subprogram` is the function's entry; `files` are those of its unit, or null.
  InlineTree(Dwarf_Die subprogram, Dwarf_Files* files);

  /// `chain` holds the place that the line table has for `address`. Appends the places of the inlined calls around it,
  /// innermost first, and fills in the function of each place. The last one lies in the subprogram itself.
  void appendChain(std::uint64_t address, std::vector<Place>& chain) const;

 private:
  struct Call {
    std::size_t parent = 0;
    Dwarf_Die die{};
    std::string file;
    int line = 0;
    int column = 0;
  };

  void visit(Dwarf_Die* parent, std::size_t call);
  std::size_t addCall(Dwarf_Die* die, std::size_t parent);
  void paint(Dwarf_Die* die, std::size_t call);
  void paint(std::uint64_t begin, std::uint64_t end, std::size_t call);

  Dwarf_Files* files_;
  std::vector<Call> calls_;                         // the first is the subprogram
  std::map<std::uint64_t, std::size_t> innermost_;  // each entry holds up to the next address
};

}  // namespace kelvar_readers
