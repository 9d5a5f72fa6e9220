#pragma once

#include <functional>
#include <memory>

#include "OwnFolder.h"
#include "digestio.h"
#include "resdir.h"

namespace kelvar_platform::test {

/// A result directory in a folder of its own.
class ResultFiles : public OwnFolder {
 protected:
  ResultFiles() { static_cast<void>(takeRefusals()); }

  [[nodiscard]] std::unique_ptr<digestio::SummaryCollection> load(const std::string& text) const {
    write("collection.json", text);
    return std::unique_ptr<digestio::SummaryCollection>(digestio::SummaryCollection::load(folder_));
  }
  [[nodiscard]] toolbelt::sptr_t<resdir::IResultDirectory> open(const std::string& text) const {
    write("result.json", text);
    return resdir::ResultDirectoryManager::open(folder_.c_str(), false, nullptr);
  }

  /// The one refusal since the last call, without the folder; empty where there was none.
  [[nodiscard]] std::string refusal() const {
    std::string all;
    for (const Refusal& refusal : takeRefusals()) all += local(refusal.sentence());
    return all;
  }
};

/// A line for each detail: kinds, label, place, then each record that stands there.
inline std::string rows(const digestio::SummaryCollection& collection) {
  std::ostringstream out;
  out.precision(17);
  for (int i = 0; i < collection.detailCount(); ++i) {
    const digestio::SummaryDetail& detail = *collection.detail(i);
    const sitenotes::locator_t place = detail.locator();
    out << detail.detailKind() << ' ' << detail.annotationKind() << " '" << detail.label() << "' "
        << place.get_file().get_text() << ':' << place.get_line() << ':' << place.get_column();
    // The values that a record gives, unless the detail has none.
    const auto record = [&out](const char* name, const auto* view, auto... values) {
      if (view == nullptr) return;
      out << " | " << name;
      ((out << ' ' << std::invoke(values, view)), ...);
    };
    const auto warnings = [](int index) { return [index](const auto* view) { return view->warnings(index); }; };
    const auto strides = [](int index) { return [index](const auto* view) { return view->strides(index); }; };
    using Survey = digestio::SurveyDetail;
    record("survey", detail.surveyView(), &Survey::cpuTime, &Survey::priority, &Survey::id);
    using Loop = digestio::SurveyVectorizationDetail;
    record("vectorization", detail.surveyVectorizationView(), &Loop::state, &Loop::selfTime, &Loop::totalTime,
           &Loop::id, &Loop::priority);
    using Gain = digestio::SuitabilityDetail;
    record("suitability", detail.suitabilityView(), &Gain::selfTime, &Gain::cores, &Gain::flags, &Gain::siteMaxGain,
           &Gain::totalMaxGain);
    record("dependencies", detail.correctnessView(), &digestio::CorrectnessDetail::errors, warnings(0), warnings(1));
    record("map", detail.mapView(), strides(0), strides(1), strides(2));
    out << '\n';
  }
  return out.str();
}

}  // namespace kelvar_platform::test
