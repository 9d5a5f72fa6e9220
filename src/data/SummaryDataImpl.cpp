#include "data/SummaryDataImpl.h"

#include <algorithm>
#include <utility>

#include "items/LiveAnnotations.h"
#include "items/joining/Join.h"
#include "view/report/SummaryReport.h"

namespace kelvar_2_1_7 {

using digestio::SummaryDataKind;

const boost::shared_ptr<sitenotes::database_t>& annotationDatabaseOf(const SummaryData::Impl& owner) {
  return owner.annotationDatabase();
}

SummaryData::Impl::Impl(boost::shared_ptr<sitenotes::database_t> database) : database_(std::move(database)) {
  populateAnnotations();
}

SummaryData::Impl::~Impl() {
  // Items first, since they point to details of the results; the fields' order sees to the rest.
  visibleItems_.clear();
  hiddenItems_.clear();
}

void SummaryData::Impl::populateAnnotations() {
  viewValid_ = false;
  view_.itemsChanged();
  forEachLiveAnnotation(database_, [&](boost::shared_ptr<sitenotes::annotation_t> annotation, unsigned long handle) {
    visibleItems_.append(
        std::make_unique<SummaryItemImpl>(this, std::move(annotation), handle, kCurrent, false, false, false, false));
  });
}

// cppcheck-suppress passedByValue; the interface has it so
void SummaryData::Impl::addSummaryData(std::string path, boost::shared_ptr<sitenotes::database_t>) {
  const boost::shared_ptr<sitenotes::scanner_t> scanner = sitenotes::scanner_t::get();
  if (scanner) takeState(*scanner, path);

  auto result = std::make_unique<SummaryResultImpl>(this, path, state_);
  if (!result->loaded()) return;

  // From the join on, nothing may fail: it is all filed, or none of it.
  if (results_.size() == results_.capacity()) results_.reserve(2 * results_.size() + 1);
  aggregate_.reserveOne();
  for (AggregateSummaryResultImpl& ofKind : kindResults_) ofKind.reserveOne();
  const SummaryDataStatus status = mergeCollections(result->items());
  file(std::move(result), status);
}

void SummaryData::Impl::takeState(sitenotes::scanner_t& scanner, const std::string& path) {
  const boost::shared_ptr<sitenotes::database_t> database = scanner.get_database();
  if (!database || state_) return;
  state_ = database->get_state(path);
  if (!state_) state_ = database->make_state(path, false);
}

SummaryDataStatus SummaryData::Impl::mergeCollections(SummaryItems& incoming) {
  const SummaryDataStatus status = join(visibleItems_, incoming);
  viewValid_ = false;
  view_.itemsChanged();
  return status;
}

void SummaryData::Impl::file(std::unique_ptr<SummaryResultImpl> result, SummaryDataStatus status) noexcept {
  SummaryResultImpl& kept = *result;
  results_.push_back(std::move(result));
  aggregate_.append(&kept);
  for (const SummaryDataKind kind : kAllKinds) {
    if (!kept.carries(kind)) continue;
    kindStatus_[kind] = status;
    kindResults_[kind].append(&kept);
  }
}

void SummaryData::Impl::setSummaryKindEnable(SummaryDataKind kind, bool enable) {
  settings_.setSummaryKindEnable(kind, enable);
  viewValid_ = false;
}

void SummaryData::Impl::setSummaryDetailKindFilter(bool enable, digestio::SummaryDetailKind detailKind,
                                                   sitenotes::annotation_t::kind_t annotationKind) {
  settings_.setSummaryDetailKindFilter(enable, detailKind, annotationKind);
  viewValid_ = false;
}

void SummaryData::Impl::setMapping(SummaryMapping mapping, bool reverse) {
  settings_.setMapping(mapping, reverse);
  viewValid_ = false;
}

void SummaryData::Impl::setSuitabilityProjectOptions(digestio::SuitabilityProjectOptions*) {
  viewValid_ = false;
}

void SummaryData::Impl::rebuildIfStale() {
  if (viewValid_) return;
  view_.rebuild(settings_, visibleItems_, hiddenItems_);
  viewValid_ = true;
}

int SummaryData::Impl::num_items() {
  rebuildIfStale();
  return static_cast<int>(visibleItems_.size());
}

SummaryItem* SummaryData::Impl::item(int index) {
  rebuildIfStale();
  return visibleItems_[static_cast<std::size_t>(index)];
}

void SummaryData::Impl::write(TextSink& out, bool verbose) {
  rebuildIfStale();
  SummaryReport report{.statuses = kindStatus_,
                       .settings = settings_,
                       .items = visibleItems_,
                       .processors = num_processors(),
                       .threadingParadigm = threading_paradigm(),
                       .programMaxGain = programMaxGain(),
                       .aggregate = aggregate_,
                       .results = {}};
  for (const SummaryDataKind kind : {kSurveyKind, kSuitabilityKind, kCorrectnessKind, kMapKind}) {
    if (hasData(kind)) report.results[kind] = &kindResults_[kind];
  }
  report.write(out, verbose);
}

int SummaryData::Impl::threading_paradigm() const {
  // Callers of the whole program know 0 as "unknown"; a result's own 7 stays with results and their aggregates.
  const int paradigm = aggregate_.threading_paradigm();
  return paradigm != kUnknownParadigm ? paradigm : 0;
}

bool SummaryData::Impl::hasData(SummaryDataKind kind) const {
  return std::any_of(visibleItems_.begin(), visibleItems_.end(),
                     [kind](const auto& item) { return item && item->shows(kind); });
}

}  // namespace kelvar_2_1_7
