#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <unordered_map>
#include <vector>

#include "ScanPlan.h"

namespace kelvar_tool {

/// The index of no site, marker or file.
constexpr std::size_t kNothing = static_cast<std::size_t>(-1);

/// A marker in the sources, its end, and the site of the database that it belongs to.
struct Marker {
  std::size_t file = 0;
  const kelvar_sources::FoundSite* found = nullptr;
  const kelvar_sources::FoundSite* end = nullptr;  ///< null when there is none
  std::size_t site = kNothing;
};

/// The files of a plan, by number: those with sites in the database, then the other ones that were scanned.
class PlanFiles {
 public:
  struct File {
    std::string key;
    std::string name;                    ///< as the database has it
    const SourceFile* source = nullptr;  ///< null when it was not scanned
    const ScannedFile* scanned = nullptr;
    bool hasSites = false;             ///< after the scan
    std::vector<std::size_t> markers;  ///< in the order of their places

    [[nodiscard]] bool isRead() const noexcept { return scanned && scanned->read; }
  };

  /// Both must outlive this object.
  PlanFiles(const ScanInput& input, const kelvar_platform::AnchoredSites& database);

  [[nodiscard]] std::size_t size() const noexcept { return files_.size(); }
  [[nodiscard]] File& at(std::size_t file) { return files_[file]; }
  [[nodiscard]] const File& at(std::size_t file) const { return files_[file]; }
  /// The file that a site of the database is in.
  [[nodiscard]] std::size_t of(std::size_t site) const { return fileOf_[site]; }
  /// The scanned file with this key; kNothing when there is none.
  [[nodiscard]] std::size_t scannedAs(const std::string& key) const;
  [[nodiscard]] std::vector<Marker>& markers() noexcept { return markers_; }
  [[nodiscard]] const std::vector<Marker>& markers() const noexcept { return markers_; }

  /// Whether this scan decides about the sites of the file: it was read, or should have been and is gone.
  [[nodiscard]] bool isOurs(std::size_t file) const;
  /// For each file, whether it may exist: it was scanned, or is outside of the scanned tree.
  [[nodiscard]] std::vector<bool> exist() const;
  /// For each file, whether it is unchanged since the last scan.
  [[nodiscard]] std::vector<bool> areUnchanged() const;
  /// A place for each line of code of a scanned file; the file is read again on the first call.
  const std::vector<kelvar_sources::FoundSite>& linesOf(std::size_t file);
  /// Adds the changed digests of the files to `edits`.
  void record(kelvar_platform::AnchoredEdits& edits) const;

 private:
  void numberFiles();
  void gatherMarkers();
  std::size_t numbered(const std::string& key, const std::string& name);

  const ScanInput& input_;
  const kelvar_platform::AnchoredSites& database_;
  std::unordered_map<std::string, std::size_t> numbers_;  // by key
  std::vector<File> files_;
  std::vector<std::size_t> fileOf_;  // by site
  std::vector<Marker> markers_;
  std::map<std::size_t, std::vector<kelvar_sources::FoundSite>> lines_;  // by file
};

}  // namespace kelvar_tool
