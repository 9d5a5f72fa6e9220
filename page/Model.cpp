#include "Model.h"

#include <utility>

#include "Figures.h"

namespace kelvar_page {

Model::Model(boost::shared_ptr<kelvar::SummaryData> summary, EvidenceIndex evidenceOfResults,
             const std::string& sourceRoot, std::vector<std::string> complaintsOfLoading, TimeUnits unitsOfTimes)
    : data(std::move(summary)),
      evidence(std::move(evidenceOfResults)),
      sources(sourceRoot),
      complaints(std::move(complaintsOfLoading)),
      units(std::move(unitsOfTimes)),
      overview(*data, [this](const Site& site) { rules.look(site); }),
      findings(rules.sentences({overview, evidence, sources, units})) {}

std::string vectorisedText(const Site& site, const EvidenceIndex& evidence) {
  if (!site.vectorised) return {};
  const bool vectorised = *site.vectorised != Vectorised::no;
  std::string text = *site.vectorised == Vectorised::partly ? "partly" : vectorised ? "yes" : "no";
  const Evidence* const line = evidence.first(site, vectorised ? EvidenceKind::vectorized : EvidenceKind::missed);
  const std::string reason = line ? reasonText(*line) : std::string();
  return reason.empty() ? text : text + ": " + reason;
}

std::string strideText(const Site& site) {
  const auto stride = strideOf(site);
  return stride ? std::string(strideName(stride->sort)) + " " + shareText(stride->share) : std::string();
}

std::string racesText(const Site& site) {
  if (!site.races) return {};
  if (*site.races > 0) return counted(*site.races, "race", "races");
  if (site.lockOrders > 0) return counted(site.lockOrders, "lock order", "lock orders");
  if (site.otherFindings > 0) return counted(site.otherFindings, "finding", "findings");
  return "none";
}

}  // namespace kelvar_page
