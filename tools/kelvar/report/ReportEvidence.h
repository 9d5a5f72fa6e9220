#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Evidence.h"
#include "Project.h"
#include "digestio.h"
#include "text/JsonText.h"

namespace kelvar_tool {

/// The evidence of one result, with the details that it refers to.
struct ResultEvidence {
  std::shared_ptr<const digestio::SummaryCollection> collection;
  std::vector<kelvar_platform::Evidence> lines;
};

/// Reads the evidence of all results. Evidence that cannot be read is left out, and a sentence added to `complaints`.
[[nodiscard]] std::vector<ResultEvidence> evidenceOf(const Pieces& pieces, std::vector<std::string>& complaints);

/// Writes the list `evidence`: an object for each statement of a tool, with its site.
void writeEvidence(JsonText& json, const std::vector<ResultEvidence>& evidence);

}  // namespace kelvar_tool
