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

/// Reads the annotation database at `path`, opened read-only and within one transaction, so that one revision is read.
/// Throws ReadError; a database that breaks a rule anywhere is not read at all. The returned database may be read from
/// several threads and does not see later edits. Its states are built on first use and share their annotations with it.
/// A state that make_state made is found by get_state of the same object only; the file does not change.
[[nodiscard]] PLATFORM_EXPORT boost::shared_ptr<sitenotes::database_t> openAnnotationDatabase(const std::string& path);

/// Makes `database` the one that the process-wide scanner returns; it may be empty.
PLATFORM_EXPORT void installDatabase(boost::shared_ptr<sitenotes::database_t> database);
/// Removes the scanner: scanner_t::get returns an empty pointer, as at the start of the process.
PLATFORM_EXPORT void removeScanner();

/// A site as an edit writes it.
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

/// Edits an annotation database. Every operation is one transaction: it is done completely, or throws a ReadError and
/// changes nothing.
class PLATFORM_EXPORT AnnotationEditor {
 public:
  /// `createIfMissing` lets the first `add` make the file. Nothing is opened before the first operation.
  enum class Open { existing, createIfMissing };

  AnnotationEditor(const std::string& path, Open how);
  ~AnnotationEditor();
  AnnotationEditor(AnnotationEditor&&) noexcept;
  AnnotationEditor& operator=(AnnotationEditor&&) noexcept;

  /// Returns the new site's sequence, one more than the greatest there ever was. `announce`, if any, is called with it
  /// before the commit: if it throws, the exception passes through and the site is not added.
  std::int64_t add(sitenotes::annotation_t::kind_t kind, const std::string& label, const std::string& file, int line,
                   int column, const std::function<void(std::int64_t)>& announce = {});
  /// Edits of a site that is not alive are refused.
  void move(std::int64_t sequence, const std::string& file, int line, int column);
  /// Moves the site down by `lines` in its file, or up if negative.
  void moveBy(std::int64_t sequence, int lines);
  void relabel(std::int64_t sequence, const std::string& label);
  void setDisabled(std::int64_t sequence, bool disabled);
  void remove(std::int64_t sequence);
  /// Every site as of its newest edit, by sequence; with `withDead`, removed sites too. Reads the file as
  /// openAnnotationDatabase does.
  [[nodiscard]] std::vector<Site> list(bool withDead) const;
  /// Records that the result at `path`, which must not be empty, was collected on the current revision.
  void snapshot(const std::string& path);

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

/// The name of a state in a database: `resultPath` relative to the database's directory if it is below it, else
/// absolute; lexically normal, no trailing slash. Empty for an empty path. Relative paths start at the working
/// directory; symbolic links are not followed.
[[nodiscard]] PLATFORM_EXPORT std::string stateName(const std::string& databasePath, const std::string& resultPath);

}  // namespace kelvar_platform
