#include "view/PlainOrderings.h"

using kelvar_2_1_7::SummaryItem;
using kelvar_2_1_7::SummaryMapping;

namespace {

const SummaryItem* left = nullptr;
const SummaryItem* right = nullptr;

double cpuTime(const SummaryItem& i) {
  return i.surveyDetail() ? i.surveyDetail()->cpuTime() : -1.0;
}
double selfTime(const SummaryItem& i) {
  return i.surveyVectorizationDetail() ? i.surveyVectorizationDetail()->selfTime() : -1.0;
}
double totalTime(const SummaryItem& i) {
  return i.surveyVectorizationDetail() ? i.surveyVectorizationDetail()->totalTime() : -1.0;
}
double loopPriority(const SummaryItem& i) {
  return i.surveyVectorizationDetail() ? i.surveyVectorizationDetail()->priority() : -1.0;
}
double gain(const SummaryItem& i, double (digestio::SuitabilityDetail::*value)() const) {
  return i.suitabilityDetail() ? (i.suitabilityDetail()->*value)() : -1.0;
}
long errors(const SummaryItem& i) {
  return i.correctnessDetail() ? i.correctnessDetail()->errors() : -1;
}
long warnings(const SummaryItem& i) {
  return i.correctnessDetail() ? long{i.correctnessDetail()->warnings(0)} + i.correctnessDetail()->warnings(1) : -1;
}

bool byLocator() {
  const SummaryItem& a = *left;
  const SummaryItem& b = *right;
  const int order = a.locator().display_order(b.locator());
  if (order != 0) return order < 0;
  if (a.annotationKind() == b.annotationKind()) return a.label() < b.label();
  if (a.detailKind() != b.detailKind()) return a.detailKind() < b.detailKind();
  if (a.detailKind() == 0) return a.annotationKind() < b.annotationKind();
  if (a.detailKind() != 2) return false;
  return selfTime(b) < selfTime(a) || (selfTime(a) == selfTime(b) && totalTime(b) < totalTime(a));
}

template <class Value>
bool descending(Value a, Value b, bool (*then)()) {
  if (a == b) return then();
  return a > b;
}
bool ascending(int a, int b) {
  return a == b ? byLocator() : a < b;
}
bool never() {
  return false;
}
bool byTotalTime() {
  return totalTime(*left) > totalTime(*right);
}
bool byWarnings() {
  return descending(warnings(*left), warnings(*right), byLocator);
}

bool byKind() {
  const SummaryItem& a = *left;
  const SummaryItem& b = *right;
  if (a.detailKind() != b.detailKind()) return a.detailKind() < b.detailKind();
  if (a.detailKind() == 0) return ascending(a.annotationKind(), b.annotationKind());
  return a.detailKind() == 2 ? descending(selfTime(a), selfTime(b), byTotalTime) : byLocator();
}

int group(int annotationKind) {
  if (annotationKind < 2 || annotationKind > 17) return 0;
  if (annotationKind < 5) return 1;
  if (annotationKind < 7) return 2;
  if (annotationKind < 9) return 3;
  return annotationKind < 13 ? 4 : 5;
}

}  // namespace

bool plainlyBefore(SummaryMapping mapping, const SummaryItem* first, const SummaryItem* second) {
  using namespace kelvar_2_1_7;
  using Suitability = digestio::SuitabilityDetail;
  if (first == nullptr) return false;
  if (second == nullptr) return true;
  left = first;
  right = second;
  const SummaryItem& a = *first;
  const SummaryItem& b = *second;
  const auto priority = [](const SummaryItem& i) {
    return i.surveyDetail() ? i.surveyDetail()->priority() : 2147483647;
  };
  const auto id = [](const SummaryItem& i) { return i.surveyDetail() ? i.surveyDetail()->id() : 2147483647; };
  const auto byGain = [&](double (Suitability::*value)() const) {
    return descending(gain(a, value), gain(b, value), byLocator);
  };
  switch (mapping) {
    case kSortKind:
      return byKind();
    case kSortLabel:
      return a.label() == b.label() ? byLocator() : a.label() < b.label();
    case kSortSurveyCpuTime:
      return descending(cpuTime(a), cpuTime(b), byLocator);
    case kSortSurveyPriority:
      return ascending(priority(a), priority(b));
    case kSortSurveyId:
      return ascending(id(a), id(b));
    case kSortSurveyVectorizationSelfTime:
      return descending(selfTime(a), selfTime(b), byTotalTime);
    case kSortSurveyVectorizationTotalTime:
      return descending(totalTime(a), totalTime(b), never);
    case kSortSurveyVectorizationPriority:
      return descending(loopPriority(a), loopPriority(b), never);
    case kSortSuitabilitySelfTime:
      return byGain(&Suitability::selfTime);
    case kSortSuitabilitySelfMaxGain:
      return byGain(&Suitability::siteMaxGain);
    case kSortSuitabilityTotalMaxGain:
      return byGain(&Suitability::totalMaxGain);
    case kSortCorrectnessErrors:
      return descending(errors(a), errors(b), byWarnings);
    case kSortCorrectnessWarnings:
      return byWarnings();
    case kSortGeneralKindLocator:
      return ascending(group(a.annotationKind()), group(b.annotationKind()));
    default:
      return byLocator();
  }
}
