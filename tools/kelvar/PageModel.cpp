#include "PageModel.h"

#include <string>
#include <utility>
#include <vector>

#include "Messages.h"
#include "TimeSource.h"

namespace kelvar_tool {

namespace {

/// The source of the times. Shares refer to the time in rows, so a considerable time outside of all rows is named too.
std::string timesText(const Pieces& pieces, const kelvar_page::Model& model) {
  constexpr double kMatters = 0.01;
  const std::string source = timeSourceOf(pieces);
  std::string text = source.empty() ? source : "times by " + source;
  const double placeless = placelessTimeOf(pieces);
  if (placeless > kMatters * model.overview.wholeTime()) {
    text += "; another " + kelvar_page::timeText(placeless, model.units.survey) +
            " is in code whose source is not known, and in no share";
  }
  return text;
}

}  // namespace

std::unique_ptr<kelvar_page::Model> modelOf(const Loaded& loaded, const Pieces& pieces, const std::string& sourceRoot) {
  kelvar_page::EvidenceIndex evidence;
  std::vector<std::string> damaged;
  evidence.read(*loaded.data, pieces.results, damaged);
  for (const std::string& complaint : damaged) say(complaint);
  std::vector<std::string> complaints = loaded.complaints;
  complaints.insert(complaints.end(), damaged.begin(), damaged.end());
  auto model = std::make_unique<kelvar_page::Model>(loaded.data, std::move(evidence), sourceRoot, std::move(complaints),
                                                    unitsOf(pieces));
  model->timeSource = timesText(pieces, *model);
  return model;
}

}  // namespace kelvar_tool
