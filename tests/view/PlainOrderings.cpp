#include "view/PlainOrderings.h"

using kelvar_2_1_7::SummaryItem;
using kelvar_2_1_7::SummaryMapping;

namespace {

const SummaryItem* left = nullptr;
const SummaryItem* right = nullptr;

template <class View, class Value>
double of(const View* view, Value (View::*value)() const) {
  return view != nullptr ? (view->*value)() : -1.0;
}
double selfTime(const SummaryItem& i) {
  return of(i.surveyVectorizationDetail(), &digestio::SurveyVectorizationDetail::selfTime);
}
double totalTime(const SummaryItem& i) {
  return of(i.surveyVectorizationDetail(), &digestio::SurveyVectorizationDetail::totalTime);
}
double warnings(const SummaryItem& i) {
  const auto* view = i.correctnessDetail();
  return view != nullptr ? double(view->warnings(0)) + view->warnings(1) : -1.0;
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

bool descending(double a, double b, bool (*then)()) {
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
  using digestio::CorrectnessDetail, digestio::SuitabilityDetail, digestio::SurveyDetail;
  using Loop = digestio::SurveyVectorizationDetail;
  if (first == nullptr) return false;
  if (second == nullptr) return true;
  left = first;
  right = second;
  const SummaryItem& a = *first;
  const SummaryItem& b = *second;
  const auto lowest = [&](int (digestio::SurveyDetail::*value)() const) {
    const auto key = [&](const SummaryItem& i) { return i.surveyDetail() ? (i.surveyDetail()->*value)() : 2147483647; };
    return ascending(key(a), key(b));
  };
  const auto highest = [&](auto* (SummaryItem::*view)() const, auto value, bool (*then)()) {
    return descending(of((a.*view)(), value), of((b.*view)(), value), then);
  };
  if (mapping == kSortKind) return byKind();
  if (mapping == kSortLabel) return a.label() == b.label() ? byLocator() : a.label() < b.label();
  if (mapping == kSortSurveyCpuTime) return highest(&SummaryItem::surveyDetail, &SurveyDetail::cpuTime, byLocator);
  if (mapping == kSortSurveyPriority) return lowest(&SurveyDetail::priority);
  if (mapping == kSortSurveyId) return lowest(&SurveyDetail::id);
  if (mapping == kSortSurveyVectorizationSelfTime) return descending(selfTime(a), selfTime(b), byTotalTime);
  if (mapping == kSortSurveyVectorizationTotalTime) return descending(totalTime(a), totalTime(b), never);
  if (mapping == kSortSurveyVectorizationPriority)
    return highest(&SummaryItem::surveyVectorizationDetail, &Loop::priority, never);
  if (mapping == kSortSuitabilitySelfTime)
    return highest(&SummaryItem::suitabilityDetail, &SuitabilityDetail::selfTime, byLocator);
  if (mapping == kSortSuitabilitySelfMaxGain)
    return highest(&SummaryItem::suitabilityDetail, &SuitabilityDetail::siteMaxGain, byLocator);
  if (mapping == kSortSuitabilityTotalMaxGain)
    return highest(&SummaryItem::suitabilityDetail, &SuitabilityDetail::totalMaxGain, byLocator);
  if (mapping == kSortCorrectnessErrors)
    return highest(&SummaryItem::correctnessDetail, &CorrectnessDetail::errors, byWarnings);
  if (mapping == kSortCorrectnessWarnings) return byWarnings();
  if (mapping == kSortGeneralKindLocator) return ascending(group(a.annotationKind()), group(b.annotationKind()));
  return byLocator();
}
