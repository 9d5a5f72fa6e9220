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

/// How the paths in a tool's output are turned into the project's.
struct PathRules {
  std::vector<std::pair<std::string, std::string>> prefixes;  ///< a leading folder, and what replaces it
  std::string sourceRoot;  ///< relative paths are below it; if given, every file outside of it is a library's
};

/// The lines of an annotated site, from its annotation to the end annotation of its label, both included. A site
/// without an end annotation encloses nothing.
struct Region {
  sitenotes::annotation_t::kind_t kind = sitenotes::annotation_t::parallel;
  std::string label;
  std::string file;
  int first = 0;
  int last = 0;  ///< 0 when there is no end annotation
  int column = 0;
};

/// Finds the annotated sites around a place in the source. A tool names files as the build machine had them,
/// annotations as the project does. So a path refers to the annotated file with the longest common tail, in whole
/// components; at least the file names must be equal.
class Places {
 public:
  /// Of `sites`, those that are alive and not disabled count.
  Places(const std::vector<kelvar_platform::Site>& sites, PathRules rules);

  [[nodiscard]] const std::vector<Region>& regions() const noexcept { return regions_; }
  /// Indices of the regions around the place, innermost first. Valid as long as this object. Throws
  /// kelvar_platform::ReadError when two annotated files match the place's file equally well.
  [[nodiscard]] std::span<const std::size_t> regionsAt(const Place& place);
  /// The same for the first place of the stack that lies in a region; frames of libraries and helpers may come before
  /// it.
  [[nodiscard]] std::span<const std::size_t> regionsAt(const std::vector<const Frame*>& stack);
  /// All regions around any place of the frame, each once: code inlined into a region is part of it. Valid until the
  /// next call.
  [[nodiscard]] const std::vector<std::size_t>& regionsOf(const Frame& frame);
  /// The regions around the first line of a region, including itself; none when it has no end annotation.
  [[nodiscard]] std::span<const std::size_t> regionsAround(std::size_t region) const;
  /// The place whose function a stack outside of all regions counts for: the first with a function in the project's own
  /// files, else the first with a function; null when there is none.
  [[nodiscard]] const Place* ownPlace(const std::vector<const Frame*>& stack);
  /// The project's path of a file that a tool named.
  [[nodiscard]] const std::string& pathOf(const std::string& file);
  /// A number for the file; two files have the same number exactly when their paths are equal.
  [[nodiscard]] std::size_t numberOf(const std::string& file);
  /// The path with this number.
  [[nodiscard]] const std::string& pathNumbered(std::size_t number) const { return *paths_[number]; }
  /// Whether the file belongs to the system or a library, not to the project. False for an empty name.
  [[nodiscard]] bool isLibrary(const std::string& file);

 private:
  /// The lines from `line` up to the next segment, which all lie in the same regions.
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
  std::string fullRoot_;  // the source root as a full path; empty when there is none
  std::vector<Region> regions_;
  std::unordered_map<std::string, std::vector<Annotated>> byLeaf_;
  std::unordered_map<std::string, File> files_;           // by the tool's name for it
  std::unordered_map<std::string, std::size_t> numbers_;  // by path
  std::vector<const std::string*> paths_;                 // by number
  const std::string* lastName_ = nullptr;                 // most records name the same file as the one before
  const File* last_ = nullptr;
  struct Known {
    bool asked = false;
    std::vector<std::size_t> regions;
  };
  std::vector<Known> ofFrames_;  // by id; the first is for frames without one
};

/// What follows the last `/`.
[[nodiscard]] std::string_view leafOf(std::string_view path);

}  // namespace kelvar_readers
