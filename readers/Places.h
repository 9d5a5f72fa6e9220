#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "Annotations.h"
#include "Record.h"

namespace kelvar_readers {

/// How the paths that a tool wrote become the project's.
struct PathRules {
  std::vector<std::pair<std::string, std::string>> prefixes;  ///< what a path begins with, and what it becomes
  std::string sourceRoot;  ///< what relative paths are below; with one, all that is not below it is a library's
};

/// An annotated site: from its annotation to the end annotation of its label, both lines included. One that is not
/// closed, or whose kind is never closed, encloses nothing.
struct Region {
  sitenotes::annotation_t::kind_t kind = sitenotes::annotation_t::parallel;
  std::string label;
  std::string file;
  int first = 0;
  int last = 0;  ///< 0 where it is not closed
  int column = 0;
};

/// Tells which annotated sites enclose a place of the source. A tool names a file as the build machine had it, and the
/// annotations as the project does: the annotated file with the longest common tail is meant, by whole components, and
/// the leaf's name at least. Where neither of two files has a folder in which they differ, the leaf decides.
class Places {
 public:
  /// `sites` are the living ones of an annotation database.
  Places(const std::vector<kelvar_platform::Site>& sites, PathRules rules);

  [[nodiscard]] const std::vector<Region>& regions() const noexcept { return regions_; }
  /// Indices of the regions around the place, innermost first. Valid until the object goes.
  [[nodiscard]] std::span<const std::size_t> regionsAt(const Place& place);
  /// The same for the first place of a stack that lies in one: a library's frames and helpers stand before it.
  [[nodiscard]] std::span<const std::size_t> regionsAt(const std::vector<const Frame*>& stack);
  /// All regions that the places of a frame lie in, each once: what is inlined into a region is a part of it.
  [[nodiscard]] const std::vector<std::size_t>& regionsOf(const Frame& frame);
  /// The regions around the beginning of a region, itself among them; none where it is not closed.
  [[nodiscard]] std::span<const std::size_t> regionsAround(std::size_t region) const;
  /// The place of a stack whose function it counts for, where no region encloses it: the first of the project's own,
  /// else the first that has a function; null where none has.
  [[nodiscard]] const Place* ownPlace(const std::vector<const Frame*>& stack);
  /// The path of a file as the project has it.
  [[nodiscard]] const std::string& pathOf(const std::string& file);
  /// A number for the file: equal for equal paths alone.
  [[nodiscard]] std::size_t numberOf(const std::string& file);
  /// The path of that number.
  [[nodiscard]] const std::string& pathNumbered(std::size_t number) const { return *paths_[number]; }
  /// Whether the file is the system's or a library's, not the project's. A file without a name is no one's.
  [[nodiscard]] bool isLibrary(const std::string& file);

 private:
  /// From `line` to the next segment's, the same regions enclose all.
  struct Segment {
    std::int64_t line = 0;
    std::vector<std::size_t> regions;
  };
  using Segments = std::vector<Segment>;
  /// A file that has annotations.
  struct Annotated {
    std::string path;
    std::vector<std::string> components;  // of the normal path
    Segments segments;
  };
  struct File {
    std::string path;
    std::size_t number = 0;
    bool library = false;
    const Segments* segments = nullptr;
  };

  static std::span<const std::size_t> regionsIn(const Segments* segments, int line);
  void pairUp(const std::vector<kelvar_platform::Site>& sites);
  void cutIntoSegments();
  const File& fileNamed(const std::string& name);
  File described(const std::string& name);
  [[nodiscard]] std::string mapped(const std::string& name) const;
  [[nodiscard]] bool isBelowRoot(const std::string& path) const;
  [[nodiscard]] const Segments* segmentsOf(const std::string& path) const;

  PathRules rules_;
  std::string fullRoot_;  // the source root as a full path; empty where there is none
  std::vector<Region> regions_;
  std::unordered_map<std::string, std::vector<Annotated>> byLeaf_;
  std::unordered_map<std::string, File> files_;           // by the name that a tool has for it
  std::unordered_map<std::string, std::size_t> numbers_;  // by path
  std::vector<const std::string*> paths_;                 // by number
  const std::string* lastName_ = nullptr;                 // records come in runs of one file
  const File* last_ = nullptr;
  struct Known {
    bool asked = false;
    std::vector<std::size_t> regions;
  };
  std::vector<Known> ofFrames_;  // by id; the first is for those without
};

/// What follows the last `/`.
[[nodiscard]] std::string_view leafOf(std::string_view path);

}  // namespace kelvar_readers
