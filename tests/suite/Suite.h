/// The libraries behind the five headers. They return what a test puts here, and report every call.
#pragma once

#include <digestio.h>
#include <resdir.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace suite {

constexpr digestio::SummaryDataKind kSurvey{0};
constexpr digestio::SummaryDataKind kVectorization{1};
constexpr digestio::SummaryDataKind kSuitability{2};
constexpr digestio::SummaryDataKind kDependencies{3};
constexpr digestio::SummaryDataKind kMap{4};
constexpr digestio::SummaryDataKind kKinds[] = {kSurvey, kVectorization, kSuitability, kDependencies, kMap};
constexpr sitenotes::annotation_t::kind_t kEveryAnnotationKind{19};

[[nodiscard]] sitenotes::locator_t at(const std::string& file, int line, int column = 0);
[[nodiscard]] boost::shared_ptr<sitenotes::annotation_t> annotation(const std::string& label,
                                                                    const sitenotes::locator_t& place, int kind = 2);
[[nodiscard]] inline boost::shared_ptr<sitenotes::database_t> database(const std::string& name) {
  return boost::shared_ptr<sitenotes::database_t>(new sitenotes::database_t(name));
}

/// A detail that a test may change at any time. It has the view of a kind if `shows` says so; all its views return
/// `value`.
class Detail final : public digestio::SummaryDetail {
 public:
  Detail(std::string label, const sitenotes::locator_t& place, std::vector<digestio::SummaryDataKind> kinds,
         double value = 0, int annotationKind = 2, int detailKind = 0);
  Detail(const Detail& other);

  std::string name;
  sitenotes::locator_t place;
  std::map<digestio::SummaryDataKind, bool> shows;
  double value;
  int annotation_kind;
  int detail_kind;

 private:
  struct Views;

  void attach() override {}
  void detach() override {}
  digestio::SummaryDetailKind detailKind() const override;
  sitenotes::annotation_t::kind_t annotationKind() const override;
  sitenotes::locator_t locator() const override;
  std::string label() const override;
  digestio::SurveyDetail* surveyView() const override;
  digestio::SurveyVectorizationDetail* surveyVectorizationView() const override;
  digestio::SuitabilityDetail* suitabilityView() const override;
  digestio::CorrectnessDetail* correctnessView() const override;
  digestio::MapDetail* mapView() const override;
  /// The views, where the detail has that of `kind`; a call with this name.
  [[nodiscard]] Views* view(digestio::SummaryDataKind kind, std::string_view operation) const;

  std::shared_ptr<Views> views_;
};

/// What is loaded and opened at a path.
struct Result {
  digestio::SummaryDataKind kind{};
  std::vector<std::shared_ptr<Detail>> details = {};
};

/// A call: the object, the operation and its argument.
using Call = void(std::string_view subject, std::string_view operation, std::string_view argument);

/// What the libraries find in the process. Each test starts with a new one.
struct Suite {
  boost::shared_ptr<sitenotes::scanner_t> scanner;
  std::map<std::string, Result> results;
  std::function<Call> called;                                ///< called before each operation; may throw
  std::function<Call> ended;                                 ///< called when an object is destroyed
  std::function<void()> copies_a_path;                       ///< called before each copy of a path; may throw
  std::function<bool(const sitenotes::locator_t&)> is_null;  ///< if empty: no file, line 0 and column 0

  /// Installs a scanner whose database returns `state` for every path.
  void record(const boost::shared_ptr<sitenotes::database_t>& state);
};
inline Suite current;

}  // namespace suite
