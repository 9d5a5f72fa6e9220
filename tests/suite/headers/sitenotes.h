/// A suite's annotation database: plain classes that a test fills. Annotations are edited in place.
#pragma once

#include <toolbelt.h>

#include <boost/shared_ptr.hpp>
#include <cstdint>
#include <string>
#include <vector>

namespace sitenotes {

class locator_t {
 public:
  locator_t(const toolbelt::path_t& file, int line, int column);

  /// As the suite's is_null rule says; a locator that is null may have a file and a column.
  bool is_null() const;
  SUITE_PART(toolbelt::path_t) get_file() const;
  int get_line() const;
  int get_column() const;
  /// By file leaf, line and column.
  int display_order(const locator_t& other);

 private:
  toolbelt::path_t file_;
  int line_;
  int column_;
};

class annotation_t {
 public:
  SUITE_ENUM kind_t : std::int32_t{};

  annotation_t(std::string label, const locator_t& place, int kind, bool is_disabled = false);
  annotation_t(const annotation_t&) = default;
  ~annotation_t();

  const locator_t& get_locator() const;
  const std::string& get_label() const;
  kind_t get_kind() const;
  bool disabled() const;
  static SUITE_TEXT display(kind_t kind);

  /// What an edit may change at any time.
  std::string label;
  locator_t place;
  int kind;
  bool is_disabled;
};

class database_t {
 public:
#ifdef SUITE_BY_VALUE
  using id_t = unsigned long long;
#else
  using id_t = unsigned long;
#endif
  struct site {
    unsigned long id;
    boost::shared_ptr<annotation_t> latest;
    bool alive = true;
  };

  explicit database_t(std::string its_name) : name(std::move(its_name)) {}
  ~database_t();

  std::vector<id_t> get_sequences();
  bool is_sequence_alive(unsigned long id);
  boost::shared_ptr<annotation_t> get_latest_annotation(unsigned long id);
  boost::shared_ptr<database_t> get_state(const std::string& path);
  boost::shared_ptr<database_t> make_state(const std::string& path, bool);

  std::string name;
  std::vector<site> sites;              ///< in the database's order; any of it may change at any time
  bool hands_out_copies = false;        ///< each answer of get_latest_annotation is an object of its own
  boost::shared_ptr<database_t> state;  ///< what get_state answers

 private:
  const site* find(unsigned long id) const;
};

class scanner_t {
 public:
  static boost::shared_ptr<scanner_t> get();
  boost::shared_ptr<database_t> get_database();

  boost::shared_ptr<database_t> database;
};

}  // namespace sitenotes
