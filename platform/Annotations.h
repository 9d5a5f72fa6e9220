#pragma once

#include <boost/shared_ptr.hpp>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "PlatformExport.h"
#include "sitenotes.h"

namespace kelvar_platform {

/// Reads the annotation database at `path`, opened read-only and within one transaction, so that what is read is one
/// revision of it. Throws ReadError; a database that breaks a rule anywhere is not read at all.
/// What it returns may be read from several threads, and knows nothing of later edits. Its states are built when they
/// are asked for, and share their annotations with it; one that make_state made is found again by get_state here, and
/// nowhere else.
[[nodiscard]] PLATFORM_EXPORT boost::shared_ptr<sitenotes::database_t> openAnnotationDatabase(const std::string& path);

/// Makes `database` the one that the process-wide scanner hands out; an empty pointer leaves the scanner with none.
PLATFORM_EXPORT void installDatabase(boost::shared_ptr<sitenotes::database_t> database);
/// Without a scanner, scanner_t::get answers an empty pointer: so it starts, and so it is again after this.
PLATFORM_EXPORT void removeScanner();

/// A site as it is written: what an edit says.
struct Site {
  std::int64_t sequence = 0;
  bool alive = true;
  bool disabled = false;
  sitenotes::annotation_t::kind_t kind = sitenotes::annotation_t::parallel;
  std::string label;
  std::string file;
  int line = 0;
  int column = 0;
};

/// Edits an annotation database. Every operation is one transaction: done whole, or not at all with a ReadError.
class PLATFORM_EXPORT AnnotationEditor {
 public:
  /// `createIfMissing` lets the first `add` make the file. Nothing is opened before the first operation.
  enum class Open { existing, createIfMissing };

  AnnotationEditor(const std::string& path, Open how);
  ~AnnotationEditor();
  AnnotationEditor(AnnotationEditor&&) noexcept;
  AnnotationEditor& operator=(AnnotationEditor&&) noexcept;

  /// The new site's sequence, one past the greatest there ever was. `announce`, where there is one, is told it while
  /// the edit can still be given up: what it throws passes through, and the site is not added.
  std::int64_t add(sitenotes::annotation_t::kind_t kind, const std::string& label, const std::string& file, int line,
                   int column, const std::function<void(std::int64_t)>& announce = {});
  /// The edits of a site are refused unless it lives.
  void move(std::int64_t sequence, const std::string& file, int line, int column);
  /// Within its file, down by so many lines; up where they are negative.
  void moveBy(std::int64_t sequence, int lines);
  void relabel(std::int64_t sequence, const std::string& label);
  void setDisabled(std::int64_t sequence, bool disabled);
  void remove(std::int64_t sequence);
  /// Every site as its newest edit has it, by sequence; `withDead` for those that were removed too. Reads the file as
  /// openAnnotationDatabase does.
  [[nodiscard]] std::vector<Site> list(bool withDead) const;
  /// Records that the result at `path`, which must not be empty, was collected on what the database says now.
  void snapshot(const std::string& path);

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

/// The name of a state in a database: `resultPath` relative to the database's directory where it lies below it, else
/// absolute; lexically normal, no trailing slash. Empty for an empty path. Relative paths start at the working
/// directory; symbolic links are not followed.
[[nodiscard]] PLATFORM_EXPORT std::string stateName(const std::string& databasePath, const std::string& resultPath);

}  // namespace kelvar_platform
