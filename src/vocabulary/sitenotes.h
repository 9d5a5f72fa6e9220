/// The suite's annotation database, as the library sees it. A suite that has its own header of this name puts it first
/// on the include path. Objects are shared; the library deletes none of them.
#pragma once

// In brackets: a suite's own header of this name is taken, even though ours is in this folder.
#include <toolbelt.h>

#include <boost/shared_ptr.hpp>
#include <cstdint>
#include <string>
#include <vector>

namespace sitenotes {

/// A source position: a file, a line and a column.
class locator_t {
 public:
  /// `locator_t({}, 0, 0)` is the null locator.
  locator_t(const toolbelt::path_t& file, int line, int column) noexcept;

  /// Whether it names no position: no file, line 0 and column 0.
  [[nodiscard]] bool is_null() const noexcept;
  [[nodiscard]] const toolbelt::path_t& get_file() const noexcept;
  [[nodiscard]] int get_line() const noexcept;
  [[nodiscard]] int get_column() const noexcept;

  /// Negative, zero or positive as this position is shown before, level with or after the other: by the leaf of the
  /// file, then line, column and the whole path. Texts are compared byte by byte.
  [[nodiscard]] int display_order(const locator_t& other) const noexcept;

 private:
  toolbelt::path_t file_;
  int line_;
  int column_;
};

/// One version of a site's annotation.
class annotation_t {
 public:
  /// The construct that is annotated. The nineteen kinds index the library's filter.
  enum kind_t : std::int32_t {
    parallel = 0,
    end_parallel = 1,
    task = 2,
    end_task = 3,
    taskloop = 4,
    critical = 5,
    end_critical = 6,
    pause = 7,
    resume = 8,
    shared = 9,
    private_ = 10,
    firstprivate = 11,
    reduction = 12,
    barrier = 13,
    taskwait = 14,
    atomic = 15,
    flush = 16,
    ordered = 17,
    teams = 18,
    all_kinds = 19,  ///< every kind at once, in a filter; no annotation has it
  };

  virtual ~annotation_t() = default;

  [[nodiscard]] virtual const locator_t& get_locator() const = 0;
  [[nodiscard]] virtual const std::string& get_label() const = 0;
  [[nodiscard]] virtual kind_t get_kind() const = 0;
  /// A disabled annotation gives no item.
  [[nodiscard]] virtual bool disabled() const = 0;

  /// The printable name of a kind, static text; empty for what is no kind.
  [[nodiscard]] static const char* display(kind_t kind);
};

/// One annotation database, or the state of one as it was when a result was collected.
class database_t {
 public:
  virtual ~database_t() = default;

  /// The ids of the annotated sites, which edits do not change, in the database's order.
  virtual std::vector<unsigned long> get_sequences() = 0;
  /// False for a site that was deleted.
  virtual bool is_sequence_alive(unsigned long id) = 0;
  /// The newest annotation of the site; empty if it has none.
  virtual boost::shared_ptr<annotation_t> get_latest_annotation(unsigned long id) = 0;
  /// The database as it was for the result at `path`; empty if it has none.
  virtual boost::shared_ptr<database_t> get_state(const std::string& path) = 0;
  /// Makes that state and returns it; empty if none can be made. The library passes false.
  virtual boost::shared_ptr<database_t> make_state(const std::string& path, bool) = 0;
};

/// Process-wide access to the annotation database that has the states of results.
class scanner_t {
 public:
  virtual ~scanner_t() = default;

  /// Empty if the process has none.
  [[nodiscard]] static boost::shared_ptr<scanner_t> get();
  /// Empty if the scanner has none.
  virtual boost::shared_ptr<database_t> get_database() = 0;
};

}  // namespace sitenotes
