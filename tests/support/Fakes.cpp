#include "support/Fakes.h"

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

/// Notes the call, and gives what it answers.
template <class T>
T answer(std::string_view subject, std::string_view operation, T value) {
  called(subject, operation);
  return value;
}

struct SurveyRecord final : digestio::SurveyDetail {
  explicit SurveyRecord(Survey v) : values(v) {}
  double cpuTime() const override { return answer("survey", "cpuTime", values.cpuTime); }
  int priority() const override { return answer("survey", "priority", values.priority); }
  int id() const override { return answer("survey", "id", values.id); }
  Survey values;
};

struct VectorizationRecord final : digestio::SurveyVectorizationDetail {
  explicit VectorizationRecord(Vectorization v) : values(v) {}
  int state() const override { return answer("vectorization", "state", values.state); }
  double selfTime() const override { return answer("vectorization", "selfTime", values.selfTime); }
  double totalTime() const override { return answer("vectorization", "totalTime", values.totalTime); }
  int id() const override { return answer("vectorization", "id", values.id); }
  int priority() const override { return answer("vectorization", "priority", values.priority); }
  Vectorization values;
};

struct SuitabilityRecord final : digestio::SuitabilityDetail {
  explicit SuitabilityRecord(Suitability v) : values(v) {}
  double selfTime() const override { return answer("suitability", "selfTime", values.selfTime); }
  int cores() const override { return answer("suitability", "cores", values.cores); }
  std::uint32_t flags() const override { return answer("suitability", "flags", values.flags); }
  double siteMaxGain() const override { return answer("suitability", "siteMaxGain", values.siteMaxGain); }
  double totalMaxGain() const override { return answer("suitability", "totalMaxGain", values.totalMaxGain); }
  Suitability values;
};

struct CorrectnessRecord final : digestio::CorrectnessDetail {
  explicit CorrectnessRecord(Correctness v) : values(v) {}
  int errors() const override { return answer("correctness", "errors", values.errors); }
  int warnings(int index) const override {
    called("correctness", "warnings", std::to_string(index));
    return index == 0 ? values.warnings[0] : values.warnings[1];
  }
  Correctness values;
};

struct MapRecord final : digestio::MapDetail {
  explicit MapRecord(Strides v) : values(v) {}
  std::int64_t strides(int index) const override {
    called("map", "strides", std::to_string(index));
    if (index < 0 || index > 2) throw std::out_of_range("strides");
    return values.strides[index];
  }
  Strides values;
};

class FakeCollection final : public digestio::SummaryCollection {
 public:
  explicit FakeCollection(Collection values) : values_(std::move(values)) {}
  ~FakeCollection() override { note("collection", "deleted"); }
  digestio::SummaryDataKind dataKind() const override { return answer("collection", "dataKind", values_.kind); }
  void reserved() const override { throw std::logic_error("nobody calls the reserved entry"); }
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
    FakeDetail& detail = values_.details.at(static_cast<std::size_t>(index));
    return detail.isMissing() ? nullptr : &detail;
  }

 private:
  mutable Collection values_;  // the interface hands out what may be changed, from a constant collection
};

class FakeDirectory final : public resdir::IResultDirectory {
 public:
  explicit FakeDirectory(Directory values) : values_(std::move(values)) {}
  ~FakeDirectory() override { note("directory", "closed"); }
  const char* hostName() override { return answer("directory", "hostName", values_.hostName); }
  const char* operatingSystem(int which) override {
    called("directory", "operatingSystem", std::to_string(which));
    return values_.operatingSystem;
  }
  std::uint64_t collectionStartTime() override {
    return answer("directory", "collectionStartTime", values_.collectionStart);
  }
  std::uint64_t collectionEndTime() override { return answer("directory", "collectionEndTime", values_.collectionEnd); }
  std::uint64_t finalizationStartTime() override {
    return answer("directory", "finalizationStartTime", values_.finalizationStart);
  }
  std::uint64_t finalizationEndTime() override {
    return answer("directory", "finalizationEndTime", values_.finalizationEnd);
  }
  int cpuCount() override { return answer("directory", "cpuCount", values_.cpuCount); }
  std::uint64_t cpuFrequency() override { return answer("directory", "cpuFrequency", values_.cpuFrequency); }
  std::string applicationLogPath() override {
    return answer("directory", "applicationLogPath", values_.applicationLog);
  }
  std::string collectorLogPath() override { return answer("directory", "collectorLogPath", values_.collectorLog); }
  std::string commandLogPath() override { return answer("directory", "commandLogPath", values_.commandLog); }

 private:
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

FakeAnnotation::FakeAnnotation(std::string label, const std::string& place, Kind kind, bool disabled)
    : label_(std::move(label)), place_(at(place)), kind_(kind), disabled_(disabled) {}
const sitenotes::locator_t& FakeAnnotation::get_locator() const {
  called("annotation", "get_locator");
  return place_;
}
const std::string& FakeAnnotation::get_label() const {
  called("annotation", "get_label");
  return label_;
}
Kind FakeAnnotation::get_kind() const {
  return answer("annotation", "get_kind", kind_);
}
bool FakeAnnotation::disabled() const {
  return answer("annotation", "disabled", disabled_);
}

boost::shared_ptr<sitenotes::annotation_t> annotation(std::string label, const std::string& place, Kind kind,
                                                      bool disabled) {
  return boost::make_shared<FakeAnnotation>(std::move(label), place, kind, disabled);
}

FakeDatabase::~FakeDatabase() {
  note(name_, "deleted");
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

std::vector<unsigned long> FakeDatabase::get_sequences() {
  return answer(name_, "get_sequences", sequences_);
}
bool FakeDatabase::is_sequence_alive(unsigned long id) {
  called(name_, "is_sequence_alive", std::to_string(id));
  const auto found = sites_.find(id);
  return found != sites_.end() && found->second.alive;
}
boost::shared_ptr<sitenotes::annotation_t> FakeDatabase::get_latest_annotation(unsigned long id) {
  called(name_, "get_latest_annotation", std::to_string(id));
  const auto found = sites_.find(id);
  return found != sites_.end() ? found->second.latest : nullptr;
}
boost::shared_ptr<sitenotes::database_t> FakeDatabase::get_state(const std::string& path) {
  called(name_, "get_state", path);
  const auto* found = find(states_, path);
  return found != nullptr ? *found : nullptr;
}
boost::shared_ptr<sitenotes::database_t> FakeDatabase::make_state(const std::string& path, bool flag) {
  called(name_, flag ? "make_state true" : "make_state false", path);
  const auto* found = find(makes_, path);
  return found != nullptr ? *found : nullptr;
}

FakeDetail& FakeDetail::kind(digestio::SummaryDetailKind kind) {
  kind_ = kind;
  return *this;
}
FakeDetail& FakeDetail::reports(Kind kind) {
  reported_ = kind;
  return *this;
}
FakeDetail& FakeDetail::survey(Survey values) {
  survey_ = std::make_shared<SurveyRecord>(values);
  return *this;
}
FakeDetail& FakeDetail::vectorization(Vectorization values) {
  vectorization_ = std::make_shared<VectorizationRecord>(values);
  return *this;
}
FakeDetail& FakeDetail::suitability(Suitability values) {
  suitability_ = std::make_shared<SuitabilityRecord>(values);
  return *this;
}
FakeDetail& FakeDetail::correctness(Correctness values) {
  correctness_ = std::make_shared<CorrectnessRecord>(values);
  return *this;
}
FakeDetail& FakeDetail::map(Strides values) {
  map_ = std::make_shared<MapRecord>(values);
  return *this;
}
FakeDetail& FakeDetail::missing() {
  missing_ = true;
  return *this;
}

digestio::SummaryDetailKind FakeDetail::detailKind() const {
  return answer("detail", "detailKind", kind_);
}
Kind FakeDetail::annotationKind() const {
  return answer("detail", "annotationKind", reported_);
}
sitenotes::locator_t FakeDetail::locator() const {
  return answer("detail", "locator", place_);
}
std::string FakeDetail::label() const {
  return answer("detail", "label", label_);
}
digestio::SurveyDetail* FakeDetail::surveyView() const {
  return answer("detail", "surveyView", survey_.get());
}
digestio::SurveyVectorizationDetail* FakeDetail::surveyVectorizationView() const {
  return answer("detail", "surveyVectorizationView", vectorization_.get());
}
digestio::SuitabilityDetail* FakeDetail::suitabilityView() const {
  return answer("detail", "suitabilityView", suitability_.get());
}
digestio::CorrectnessDetail* FakeDetail::correctnessView() const {
  return answer("detail", "correctnessView", correctness_.get());
}
digestio::MapDetail* FakeDetail::mapView() const {
  return answer("detail", "mapView", map_.get());
}

FakeDetail detail(std::string label, const std::string& place) {
  return {std::move(label), place};
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
