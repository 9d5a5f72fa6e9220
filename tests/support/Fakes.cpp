#include "support/Fakes.h"

#include <algorithm>
#include <boost/make_shared.hpp>
#include <stdexcept>

#include "support/Faults.h"

namespace support {

namespace {

Suite* currentSuite = nullptr;

template <class Values>
const Values* find(const std::map<std::string, Values>& known, const std::string& path) {
  const auto found = known.find(path);
  return found != known.end() ? &found->second : nullptr;
}

struct FakeAnnotation final : sitenotes::annotation_t {
  FakeAnnotation(std::string l, const std::string& p, Kind k, bool d)
      : label(std::move(l)), place(at(p)), kind(k), isDisabled(d) {}
  const sitenotes::locator_t& get_locator() const override { return called("annotation", "get_locator"), place; }
  const std::string& get_label() const override { return called("annotation", "get_label"), label; }
  Kind get_kind() const override { return answer("annotation", "get_kind", kind); }
  bool disabled() const override { return answer("annotation", "disabled", isDisabled); }

  std::string label;
  sitenotes::locator_t place;
  Kind kind;
  bool isDisabled;
};

/// Details are in memory in reverse order, so that address order is not their order.
class FakeCollection final : public digestio::SummaryCollection {
 public:
  explicit FakeCollection(Collection values) : values_(std::move(values)) {
    std::reverse(values_.details.begin(), values_.details.end());
  }
  ~FakeCollection() override { note("collection", "deleted"); }
  digestio::SummaryDataKind dataKind() const override { return answer("collection", "dataKind", values_.kind); }
  void reserved() const override { throw std::logic_error("the reserved entry is never called"); }
  int num_processors() const override { return answer("collection", "num_processors", values_.processors); }
  int num_kova_threads() const override { return answer("collection", "num_kova_threads", values_.threads); }
  int threading_paradigm() const override { return answer("collection", "threading_paradigm", values_.paradigm); }
  int target_system() const override { return answer("collection", "target_system", values_.target); }
  double programMaxGain() const override { return answer("collection", "programMaxGain", values_.gain); }
  int detailCount() const override {
    return answer("collection", "detailCount", static_cast<int>(values_.details.size()));
  }
  digestio::SummaryDetail* detail(int index) const override {
    called("collection", "detail", std::to_string(index));
    FakeDetail& detail = values_.details.at(values_.details.size() - 1 - static_cast<std::size_t>(index));
    return detail.isMissing() ? nullptr : &detail;
  }

 private:
  mutable Collection values_;  // the interface returns mutable details from a const collection
};

class FakeDirectory final : public resdir::IResultDirectory {
 public:
  explicit FakeDirectory(Directory values) : values_(std::move(values)) {}
  ~FakeDirectory() override { note("directory", "closed"); }
  const char* hostName() override { return says("hostName", values_.hostName); }
  const char* operatingSystem(int which) override {
    return answer("directory", "operatingSystem", values_.operatingSystem, std::to_string(which));
  }
  std::uint64_t collectionStartTime() override { return says("collectionStartTime", values_.collectionStart); }
  std::uint64_t collectionEndTime() override { return says("collectionEndTime", values_.collectionEnd); }
  std::uint64_t finalizationStartTime() override { return says("finalizationStartTime", values_.finalizationStart); }
  std::uint64_t finalizationEndTime() override { return says("finalizationEndTime", values_.finalizationEnd); }
  int cpuCount() override { return says("cpuCount", values_.cpuCount); }
  std::uint64_t cpuFrequency() override { return says("cpuFrequency", values_.cpuFrequency); }
  std::string applicationLogPath() override { return says("applicationLogPath", values_.applicationLog); }
  std::string collectorLogPath() override { return says("collectorLogPath", values_.collectorLog); }
  std::string commandLogPath() override { return says("commandLogPath", values_.commandLog); }

 private:
  template <class T>
  static T says(const char* operation, T value) {
    return answer("directory", operation, value);
  }
  Directory values_;
};

class FakeScanner final : public sitenotes::scanner_t {
 public:
  explicit FakeScanner(boost::shared_ptr<sitenotes::database_t> database) : database_(std::move(database)) {}
  boost::shared_ptr<sitenotes::database_t> get_database() override {
    return answer("scanner", "get_database", database_);
  }

 private:
  boost::shared_ptr<sitenotes::database_t> database_;
};

}  // namespace

sitenotes::locator_t at(const std::string& place) {
  const std::size_t line = place.find(':');
  if (line == std::string::npos) return {toolbelt::path_t(place), 0, 0};
  const std::size_t column = place.find(':', line + 1);
  return {toolbelt::path_t(place.substr(0, line)), std::stoi(place.substr(line + 1)),
          column == std::string::npos ? 0 : std::stoi(place.substr(column + 1))};
}

boost::shared_ptr<sitenotes::annotation_t> annotation(std::string label, const std::string& place, Kind kind,
                                                      bool disabled) {
  return boost::make_shared<FakeAnnotation>(std::move(label), place, kind, disabled);
}

FakeDatabase& FakeDatabase::site(unsigned long handle, boost::shared_ptr<sitenotes::annotation_t> latest, bool alive) {
  if (sites_.insert_or_assign(handle, Site{std::move(latest), alive}).second) sequences_.push_back(handle);
  return *this;
}
FakeDatabase& FakeDatabase::state(const std::string& path, boost::shared_ptr<sitenotes::database_t> database) {
  states_[path] = std::move(database);
  return *this;
}
FakeDatabase& FakeDatabase::makes(const std::string& path, boost::shared_ptr<sitenotes::database_t> database) {
  makes_[path] = std::move(database);
  return *this;
}

std::unique_ptr<digestio::SummaryCollection> collection(Collection values) {
  return std::make_unique<FakeCollection>(std::move(values));
}
boost::shared_ptr<resdir::IResultDirectory> directory(Directory values) {
  return boost::make_shared<FakeDirectory>(std::move(values));
}

Suite::Suite() {
  currentSuite = this;
}
Suite::~Suite() {
  currentSuite = nullptr;
}
void Suite::scanner(boost::shared_ptr<sitenotes::database_t> database) {
  installed = boost::make_shared<FakeScanner>(std::move(database));
}
void Suite::result(const std::string& path, Collection collection, Directory directory) {
  loads(path, std::move(collection));
  opens(path, std::move(directory));
}

std::unique_ptr<kelvar_2_1_7::SummaryItemImpl> itemFrom(boost::shared_ptr<sitenotes::annotation_t> annotation,
                                                        unsigned long handle, kelvar_2_1_7::SummaryDataStatus status,
                                                        Known known) {
  return std::make_unique<kelvar_2_1_7::SummaryItemImpl>(nullptr, std::move(annotation), handle, status, known.survey,
                                                         known.suitability, known.correctness, known.map);
}
std::unique_ptr<kelvar_2_1_7::SummaryItemImpl> itemFrom(FakeDetail& detail,
                                                        boost::shared_ptr<sitenotes::annotation_t> annotation,
                                                        unsigned long handle) {
  return std::make_unique<kelvar_2_1_7::SummaryItemImpl>(nullptr, &detail, std::move(annotation), handle);
}

}  // namespace support

// What the library expects of the process.
namespace sitenotes {
boost::shared_ptr<scanner_t> scanner_t::get() {
  support::called("scanner", "get");
  return support::currentSuite != nullptr ? support::currentSuite->installed : nullptr;
}
}  // namespace sitenotes

namespace digestio {
SummaryCollection* SummaryCollection::load(std::string path) {
  support::called("load", path);
  if (support::currentSuite == nullptr) return nullptr;
  const support::Collection* values = support::find(support::currentSuite->collections, path);
  return values != nullptr ? support::collection(*values).release() : nullptr;
}
}  // namespace digestio

namespace resdir {
toolbelt::sptr_t<IResultDirectory> ResultDirectoryManager::open(const char* path, bool flag, const char* text) {
  support::called("open", flag || text != nullptr ? "otherwise than agreed" : path);
  if (support::currentSuite == nullptr) return nullptr;
  const support::Directory* values = support::find(support::currentSuite->directories, path);
  return values != nullptr ? support::directory(*values) : nullptr;
}
}  // namespace resdir
