#include "Suite.h"

#include <tuple>

namespace suite {

namespace {

void tell(const std::function<Call>& listener, std::string_view subject, std::string_view operation,
          std::string_view argument = {}) {
  if (listener) listener(subject, operation, argument);
}
void called(std::string_view subject, std::string_view operation, std::string_view argument = {}) {
  tell(current.called, subject, operation, argument);
}

}  // namespace

sitenotes::locator_t at(const std::string& file, int line, int column) {
  return {toolbelt::path_t(file), line, column};
}
boost::shared_ptr<sitenotes::annotation_t> annotation(const std::string& label, const sitenotes::locator_t& place,
                                                      int kind) {
  return boost::shared_ptr<sitenotes::annotation_t>(new sitenotes::annotation_t(label, place, kind));
}

void Suite::record(const boost::shared_ptr<sitenotes::database_t>& state) {
  scanner.reset(new sitenotes::scanner_t);
  scanner->database = database("recorder");
  scanner->database->state = state;
}

struct Detail::Views {
  struct Survey final : digestio::SurveyDetail {
    double cpuTime() SUITE_CONST override { return called("view", "cpuTime"), owner->value; }
    int priority() SUITE_CONST override { return called("view", "priority"), 0; }
    int id() SUITE_CONST override { return called("view", "id"), 0; }
    const Detail* owner = nullptr;
  } survey;
  struct Loop final : digestio::SurveyVectorizationDetail {
    int state() SUITE_CONST override { return called("view", "state"), 0; }
    double selfTime() SUITE_CONST override { return called("view", "selfTime"), owner->value; }
    double totalTime() SUITE_CONST override { return called("view", "totalTime"), owner->value; }
    int id() SUITE_CONST override { return called("view", "id"), 0; }
    int priority() SUITE_CONST override { return called("view", "priority"), 0; }
    const Detail* owner = nullptr;
  } loop;
  struct Gain final : digestio::SuitabilityDetail {
    double selfTime() SUITE_CONST override { return called("view", "selfTime"), owner->value; }
    int cores() SUITE_CONST override { return called("view", "cores"), 0; }
    std::uint32_t flags() SUITE_CONST override { return called("view", "flags"), 0U; }
    double siteMaxGain() SUITE_CONST override { return called("view", "siteMaxGain"), owner->value; }
    double totalMaxGain() SUITE_CONST override { return called("view", "totalMaxGain"), owner->value; }
    const Detail* owner = nullptr;
  } gain;
  struct Faults final : digestio::CorrectnessDetail {
    int errors() SUITE_CONST override { return called("view", "errors"), static_cast<int>(owner->value); }
    int warnings(int) SUITE_CONST override { return called("view", "warnings"), 0; }
    const Detail* owner = nullptr;
  } faults;
  struct Strides final : digestio::MapDetail {
    std::int64_t strides(int) SUITE_CONST override {
      return called("view", "strides"), static_cast<std::int64_t>(owner->value);
    }
    const Detail* owner = nullptr;
  } strides;
};

Detail::Detail(std::string label, const sitenotes::locator_t& its_place, std::vector<digestio::SummaryDataKind> kinds,
               double its_value, int annotationKind, int detailKind)
    : name(std::move(label)),
      place(its_place),
      value(its_value),
      annotation_kind(annotationKind),
      detail_kind(detailKind),
      views_(std::make_shared<Views>()) {
  for (const digestio::SummaryDataKind kind : kinds) shows[kind] = true;
  std::tie(views_->survey.owner, views_->loop.owner, views_->gain.owner, views_->faults.owner, views_->strides.owner) =
      std::make_tuple(this, this, this, this, this);
}

Detail::Detail(const Detail& other)
    : Detail(other.name, other.place, {}, other.value, other.annotation_kind, other.detail_kind) {
  shows = other.shows;
}

digestio::SummaryDetailKind Detail::detailKind() const {
  return called("detail", "detailKind", name), static_cast<digestio::SummaryDetailKind>(detail_kind);
}
sitenotes::annotation_t::kind_t Detail::annotationKind() const {
  return called("detail", "annotationKind", name), static_cast<sitenotes::annotation_t::kind_t>(annotation_kind);
}
sitenotes::locator_t Detail::locator() const {
  return called("detail", "locator", name), place;
}
std::string Detail::label() const {
  return called("detail", "label", name), name;
}
Detail::Views* Detail::view(digestio::SummaryDataKind kind, std::string_view operation) const {
  called("detail", operation, name);
  const auto found = shows.find(kind);
  return found != shows.end() && found->second ? views_.get() : nullptr;
}
digestio::SurveyDetail* Detail::surveyView() const {
  Views* const views = view(kSurvey, "surveyView");
  return views != nullptr ? &views->survey : nullptr;
}
digestio::SurveyVectorizationDetail* Detail::surveyVectorizationView() const {
  Views* const views = view(kVectorization, "surveyVectorizationView");
  return views != nullptr ? &views->loop : nullptr;
}
digestio::SuitabilityDetail* Detail::suitabilityView() const {
  Views* const views = view(kSuitability, "suitabilityView");
  return views != nullptr ? &views->gain : nullptr;
}
digestio::CorrectnessDetail* Detail::correctnessView() const {
  Views* const views = view(kDependencies, "correctnessView");
  return views != nullptr ? &views->faults : nullptr;
}
digestio::MapDetail* Detail::mapView() const {
  Views* const views = view(kMap, "mapView");
  return views != nullptr ? &views->strides : nullptr;
}

namespace {

/// Reads what is written down for its path, which may still change.
class Collection final : public digestio::SummaryCollection {
 public:
  explicit Collection(const Result& result) : result_(result), kept_(result.details) {}
  ~Collection() override { tell(current.ended, "collection", "deleted"); }
  digestio::SummaryDataKind dataKind() const override { return called("collection", "dataKind"), result_.kind; }
  std::string description() const override { return "nobody asks for it"; }
  int num_processors() const override { return called("collection", "num_processors"), 0; }
  int num_kova_threads() const override { return called("collection", "num_kova_threads"), 0; }
  int threading_paradigm() const override { return called("collection", "threading_paradigm"), 7; }
  int target_system() const override { return called("collection", "target_system"), 3; }
  double programMaxGain() const override { return called("collection", "programMaxGain"), 0; }
  int detailCount() const override {
    return called("collection", "detailCount"), static_cast<int>(result_.details.size());
  }
  digestio::SummaryDetail* detail(int index) const override {
    return called("collection", "detail"), result_.details.at(static_cast<std::size_t>(index)).get();
  }

 private:
  const Result& result_;
  std::vector<std::shared_ptr<Detail>> kept_;
};

class Directory final : public resdir::IResultDirectory {
 public:
  ~Directory() override { tell(current.ended, "directory", "closed"); }
  const char* hostName() SUITE_CONST override { return called("directory", "hostName"), nullptr; }
  const char* userName() SUITE_CONST override { return "nobody asks for it"; }
  const char* operatingSystem(int) SUITE_CONST override { return called("directory", "operatingSystem"), nullptr; }
  std::uint64_t collectionStartTime() SUITE_CONST override { return called("directory", "collectionStartTime"), 0U; }
  std::uint64_t collectionEndTime() SUITE_CONST override { return called("directory", "collectionEndTime"), 0U; }
  std::uint64_t finalizationStartTime() SUITE_CONST override {
    return called("directory", "finalizationStartTime"), 0U;
  }
  std::uint64_t finalizationEndTime() SUITE_CONST override { return called("directory", "finalizationEndTime"), 0U; }
  int cpuCount() SUITE_CONST override { return called("directory", "cpuCount"), 0; }
  std::uint64_t cpuFrequency() SUITE_CONST override { return called("directory", "cpuFrequency"), 0U; }
  std::string applicationLogPath() SUITE_CONST override { return called("directory", "applicationLogPath"), ""; }
  std::string collectorLogPath() SUITE_CONST override { return called("directory", "collectorLogPath"), ""; }
  std::string commandLogPath() SUITE_CONST override { return called("directory", "commandLogPath"), ""; }
};

}  // namespace
}  // namespace suite

namespace toolbelt {

path_t::path_t() = default;
path_t::path_t(std::string text) : folder_(text.substr(0, text.rfind('/') + 1)), leaf_(text.substr(folder_.size())) {}
path_t::path_t(const path_t& other) {
  *this = other;
}
path_t& path_t::operator=(const path_t& other) {
  if (suite::current.copies_a_path) suite::current.copies_a_path();
  folder_ = other.folder_;
  leaf_ = other.leaf_;
  return *this;
}
path_t::~path_t() = default;
SUITE_PART(std::string) path_t::get_leaf() SUITE_CONST {
  return leaf_;
}

}  // namespace toolbelt

namespace sitenotes {

locator_t::locator_t(const toolbelt::path_t& file, int line, int column) : file_(file), line_(line), column_(column) {}
bool locator_t::is_null() const {
  if (suite::current.is_null) return suite::current.is_null(*this);
  toolbelt::path_t file = file_;
  return file.get_leaf().empty() && line_ == 0 && column_ == 0;
}
SUITE_PART(toolbelt::path_t) locator_t::get_file() const {
  return file_;
}
int locator_t::get_line() const {
  return line_;
}
int locator_t::get_column() const {
  return column_;
}
int locator_t::display_order(const locator_t& other) {
  toolbelt::path_t theirs = other.file_;
  const int order = file_.get_leaf().compare(theirs.get_leaf());
  if (order != 0) return order;
  return line_ != other.line_ ? line_ - other.line_ : column_ - other.column_;
}

annotation_t::annotation_t(std::string its_label, const locator_t& its_place, int its_kind, bool its_disabled)
    : label(std::move(its_label)), place(its_place), kind(its_kind), is_disabled(its_disabled) {}
annotation_t::~annotation_t() {
  suite::tell(suite::current.ended, "annotation", label);
}
const locator_t& annotation_t::get_locator() const {
  return suite::called("annotation", "get_locator", label), place;
}
const std::string& annotation_t::get_label() const {
  return suite::called("annotation", "get_label", label), label;
}
annotation_t::kind_t annotation_t::get_kind() const {
  return suite::called("annotation", "get_kind", label), static_cast<kind_t>(kind);
}
bool annotation_t::disabled() const {
  return suite::called("annotation", "disabled", label), is_disabled;
}
SUITE_TEXT annotation_t::display(kind_t kind) {
  return static_cast<int>(kind) == 2 ? "a task" : "another";
}

database_t::~database_t() {
  suite::tell(suite::current.ended, "database", name);
}
std::vector<database_t::id_t> database_t::get_sequences() {
  suite::called(name, "get_sequences");
  std::vector<id_t> ids;
  for (const site& each : sites) ids.push_back(each.id);
  return ids;
}
bool database_t::is_sequence_alive(unsigned long id) {
  suite::called(name, "is_sequence_alive", std::to_string(id));
  const site* const found = find(id);
  return found != nullptr && found->alive;
}
boost::shared_ptr<annotation_t> database_t::get_latest_annotation(unsigned long id) {
  suite::called(name, "get_latest_annotation", std::to_string(id));
  const site* const found = find(id);
  if (found == nullptr || !found->latest || !hands_out_copies) return found != nullptr ? found->latest : nullptr;
  return boost::shared_ptr<annotation_t>(new annotation_t(*found->latest));
}
boost::shared_ptr<database_t> database_t::get_state(const std::string& path) {
  return suite::called(name, "get_state", path), state;
}
boost::shared_ptr<database_t> database_t::make_state(const std::string& path, bool) {
  return suite::called(name, "make_state", path), nullptr;
}
const database_t::site* database_t::find(unsigned long id) const {
  for (const site& each : sites) {
    if (each.id == id) return &each;
  }
  return nullptr;
}

boost::shared_ptr<scanner_t> scanner_t::get() {
  return suite::called("scanner", "get"), suite::current.scanner;
}
boost::shared_ptr<database_t> scanner_t::get_database() {
  return suite::called("scanner", "get_database"), database;
}

}  // namespace sitenotes

digestio::SummaryCollection* digestio::SummaryCollection::load(std::string path) {
  suite::called("load", path);
  const auto found = suite::current.results.find(path);
  return found != suite::current.results.end() ? new suite::Collection(found->second) : nullptr;
}

toolbelt::sptr_t<resdir::IResultDirectory> resdir::ResultDirectoryManager::open(const char* path, bool, const char*) {
  suite::called("open", path);
  const bool found = suite::current.results.count(path) != 0;
  return toolbelt::sptr_t<IResultDirectory>(found ? new suite::Directory : nullptr);
}
