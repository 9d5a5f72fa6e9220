#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>

#include "Diagnosis.h"
#include "digestio.h"
#include "resdir.h"

namespace kelvar_platform::test {

/// A result directory of its own for each test; goes with it.
class ResultFiles : public testing::Test {
 protected:
  ResultFiles() {
    std::string pattern = testing::TempDir() + "results-XXXXXX";
    folder_ = mkdtemp(pattern.data());
    static_cast<void>(takeRefusals());
  }
  ~ResultFiles() override { std::filesystem::remove_all(folder_); }

  void write(const std::string& name, const std::string& text) const {
    std::ofstream(folder_ + '/' + name, std::ios::binary) << text;
  }

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
    for (const Refusal& refusal : takeRefusals()) {
      const std::string sentence = refusal.sentence();
      EXPECT_EQ(sentence.rfind(folder_ + '/', 0), 0U) << sentence;
      all += sentence.substr(folder_.size() + 1);
    }
    return all;
  }

  std::string folder_;
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
    if (const auto* view = detail.surveyView()) {
      out << " | survey " << view->cpuTime() << ' ' << view->priority() << ' ' << view->id();
    }
    if (const auto* view = detail.surveyVectorizationView()) {
      out << " | vectorization " << view->state() << ' ' << view->selfTime() << ' ' << view->totalTime() << ' '
          << view->id() << ' ' << view->priority();
    }
    if (const auto* view = detail.suitabilityView()) {
      out << " | suitability " << view->selfTime() << ' ' << view->cores() << ' ' << view->flags() << ' '
          << view->siteMaxGain() << ' ' << view->totalMaxGain();
    }
    if (const auto* view = detail.correctnessView()) {
      out << " | dependencies " << view->errors() << ' ' << view->warnings(0) << ' ' << view->warnings(1);
    }
    if (const auto* view = detail.mapView()) {
      out << " | map " << view->strides(0) << ' ' << view->strides(1) << ' ' << view->strides(2);
    }
    out << '\n';
  }
  return out.str();
}

}  // namespace kelvar_platform::test
