#pragma once

#include <boost/shared_ptr.hpp>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "digestio.h"
#include "items/SummaryItems.h"
#include "resdir.h"
#include "sitenotes.h"
#include "support/FakeDetail.h"

/// Scripted collaborators, which note each call in the CallLog and throw at a CallFault. A test sets what it is about
/// and leaves the rest to defaults:
///
///     Suite suite;  // what the process finds while this lives
///     auto database = boost::make_shared<FakeDatabase>();
///     database->site(7, annotation("solver", "solver.cpp:120"));
///     suite.scanner(database);
///     suite.result("r/survey", {.kind = digestio::kSurvey,
///                               .details = {detail("solver", "solver.cpp:118").survey({.cpuTime = 2.5})}});
///     SummaryData data(database);
///     data.addSummaryData("r/survey", {});
///     EXPECT_EQ(rows(data), "+ solver solver.cpp:120 | survey ~ 2.50\n");
namespace support {

[[nodiscard]] boost::shared_ptr<sitenotes::annotation_t> annotation(std::string label, const std::string& place,
                                                                    Kind kind = sitenotes::annotation_t::parallel,
                                                                    bool disabled = false);

/// Sites in the order in which they are added; adding a site again edits it in its place.
class FakeDatabase final : public sitenotes::database_t {
 public:
  explicit FakeDatabase(std::string name = "database") : name_(std::move(name)) {}
  ~FakeDatabase() override { note(name_, "deleted"); }

  FakeDatabase& site(unsigned long handle, boost::shared_ptr<sitenotes::annotation_t> latest, bool alive = true);
  /// The answers of get_state and make_state for `path`; empty for any other.
  FakeDatabase& state(const std::string& path, boost::shared_ptr<sitenotes::database_t> database);
  FakeDatabase& makes(const std::string& path, boost::shared_ptr<sitenotes::database_t> database);

  std::vector<unsigned long> get_sequences() override { return answer(name_, "get_sequences", sequences_); }
  bool is_sequence_alive(unsigned long id) override {
    return answer(name_, "is_sequence_alive", found(sites_, id).alive, std::to_string(id));
  }
  boost::shared_ptr<sitenotes::annotation_t> get_latest_annotation(unsigned long id) override {
    return answer(name_, "get_latest_annotation", found(sites_, id).latest, std::to_string(id));
  }
  boost::shared_ptr<sitenotes::database_t> get_state(const std::string& path) override {
    return answer(name_, "get_state", found(states_, path), path);
  }
  boost::shared_ptr<sitenotes::database_t> make_state(const std::string& path, bool flag) override {
    return answer(name_, flag ? "make_state true" : "make_state false", found(makes_, path), path);
  }

 private:
  struct Site {
    boost::shared_ptr<sitenotes::annotation_t> latest;
    bool alive = false;
  };
  /// The value of the key, or a value of nothing in particular.
  template <class Key, class Value>
  static Value found(const std::map<Key, Value>& known, const Key& key) {
    const auto place = known.find(key);
    return place != known.end() ? place->second : Value();
  }
  using States = std::map<std::string, boost::shared_ptr<sitenotes::database_t>>;

  std::string name_;
  std::vector<unsigned long> sequences_;
  std::map<unsigned long, Site> sites_;
  States states_;
  States makes_;
};

/// The values of a loaded result.
struct Collection {
  digestio::SummaryDataKind kind = digestio::kSurvey;
  int processors = 0;
  int threads = 0;
  int paradigm = 7;
  int target = 3;
  double gain = 0;
  std::vector<FakeDetail> details = {};
};

/// The values of a result directory.
struct Directory {
  const char* hostName = nullptr;
  const char* operatingSystem = nullptr;
  std::uint64_t collectionStart = 0;
  std::uint64_t collectionEnd = 0;
  std::uint64_t finalizationStart = 0;
  std::uint64_t finalizationEnd = 0;
  int cpuCount = 0;
  std::uint64_t cpuFrequency = 0;
  std::string applicationLog = {};
  std::string collectorLog = {};
  std::string commandLog = {};
};

[[nodiscard]] std::unique_ptr<digestio::SummaryCollection> collection(Collection values);
[[nodiscard]] boost::shared_ptr<resdir::IResultDirectory> directory(Directory values);

/// What scanner_t::get, SummaryCollection::load and ResultDirectoryManager::open return while it lives. Without one,
/// and for unknown paths, they return nothing.
class Suite {
 public:
  Suite();
  ~Suite();
  Suite(const Suite&) = delete;  // the process has one
  Suite& operator=(const Suite&) = delete;

  /// A scanner with this database, which may be empty.
  void scanner(boost::shared_ptr<sitenotes::database_t> database);
  /// A result that can be loaded and opened.
  void result(const std::string& path, Collection collection, Directory directory = {});
  /// The two halves of a result.
  void loads(const std::string& path, Collection collection) { collections.insert_or_assign(path, collection); }
  void opens(const std::string& path, Directory directory) { directories.insert_or_assign(path, directory); }

  boost::shared_ptr<sitenotes::scanner_t> installed;
  std::map<std::string, Collection> collections;
  std::map<std::string, Directory> directories;
};

/// The analyses of which an annotated item has a record.
struct Known {
  bool survey = false;
  bool suitability = false;
  bool correctness = false;
  bool map = false;
};

/// Items without an owner, which is needed only for the newest annotation.
[[nodiscard]] std::unique_ptr<kelvar_2_1_7::SummaryItemImpl> itemFrom(
    boost::shared_ptr<sitenotes::annotation_t> annotation, unsigned long handle = 1,
    kelvar_2_1_7::SummaryDataStatus status = kelvar_2_1_7::kCurrent, Known known = {});
/// The detail has to outlive the item.
[[nodiscard]] std::unique_ptr<kelvar_2_1_7::SummaryItemImpl> itemFrom(
    FakeDetail& detail, boost::shared_ptr<sitenotes::annotation_t> annotation = {}, unsigned long handle = 0);

/// `listOf(itemFrom(...), nullptr, itemFrom(...))`
template <class... Items>
[[nodiscard]] kelvar_2_1_7::SummaryItems listOf(Items... items) {
  kelvar_2_1_7::SummaryItems list;
  (list.append(std::move(items)), ...);
  return list;
}

}  // namespace support
