#include "kelvar/SummaryData.h"

#include <utility>

#include "data/SummaryDataImpl.h"

namespace kelvar_2_1_7 {

SummaryData::SummaryData(boost::shared_ptr<sitenotes::database_t> database)
    : impl_(std::make_unique<Impl>(std::move(database))) {}
SummaryData::SummaryData(Impl* impl) : impl_(impl) {}
SummaryData::~SummaryData() = default;

void SummaryData::addSummaryData(std::string path, boost::shared_ptr<sitenotes::database_t> database) {
  impl_->addSummaryData(std::move(path), std::move(database));
}

SummaryDataStatus SummaryData::summaryDataStatus(digestio::SummaryDataKind kind) const {
  return impl_->summaryDataStatus(kind);
}

void SummaryData::setSummaryKindEnable(digestio::SummaryDataKind kind, bool enable) {
  impl_->setSummaryKindEnable(kind, enable);
}

void SummaryData::setSummaryDetailKindFilter(bool enable, digestio::SummaryDetailKind detailKind,
                                             sitenotes::annotation_t::kind_t annotationKind) {
  impl_->setSummaryDetailKindFilter(enable, detailKind, annotationKind);
}

void SummaryData::setMapping(SummaryMapping mapping, bool reverse) {
  impl_->setMapping(mapping, reverse);
}

void SummaryData::setSuitabilityProjectOptions(digestio::SuitabilityProjectOptions* options) {
  impl_->setSuitabilityProjectOptions(options);
}

int SummaryData::num_items() const {
  return impl_->num_items();
}
SummaryItem* SummaryData::item(int index) const {
  return impl_->item(index);
}

boost::shared_ptr<sitenotes::database_t> SummaryData::annotationDatabase() {
  return impl_->annotationDatabase();
}
std::uint64_t SummaryData::timestamp() const {
  return 0;
}

int SummaryData::threading_paradigm() {
  return impl_->threading_paradigm();
}
int SummaryData::num_processors() {
  return impl_->num_processors();
}
int SummaryData::num_kova_threads() {
  return impl_->num_kova_threads();
}
int SummaryData::target_system() const {
  return impl_->target_system();
}
double SummaryData::programMaxGain() {
  return impl_->programMaxGain();
}

bool SummaryData::hasSurveyData() {
  return impl_->hasData(kSurveyKind);
}
bool SummaryData::hasSuitabilityData() {
  return impl_->hasData(kSuitabilityKind);
}
bool SummaryData::hasCorrectnessData() {
  return impl_->hasData(kCorrectnessKind);
}
bool SummaryData::hasMAPData() {
  return impl_->hasData(kMapKind);
}

SummaryResult* SummaryData::aggregateResult() {
  return impl_->aggregateResult();
}
SummaryResult* SummaryData::surveyResult() {
  return impl_->kindResult(kSurveyKind);
}
SummaryResult* SummaryData::suitabilityResult() {
  return impl_->kindResult(kSuitabilityKind);
}
SummaryResult* SummaryData::correctnessResult() {
  return impl_->kindResult(kCorrectnessKind);
}
SummaryResult* SummaryData::mapResult() {
  return impl_->kindResult(kMapKind);
}

std::string SummaryData::asString(bool verbose) const {
  TextSink text;
  impl_->write(text, verbose);
  return std::move(text.text());
}
void SummaryData::write(bool verbose, const std::function<void(std::string_view)>& out) const {
  TextSink sink(out);
  impl_->write(sink, verbose);
}

}  // namespace kelvar_2_1_7
