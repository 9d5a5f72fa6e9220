#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Evidence.h"
#include "Project.h"
#include "digestio.h"
#include "text/JsonText.h"

namespace kelvar_tool {

/// What one result's figures rest on, with the details that it speaks of.
struct ResultEvidence {
  std::shared_ptr<const digestio::SummaryCollection> collection;
  std::vector<kelvar_platform::Evidence> lines;
};

/// Reads the evidence of all results. What cannot be read is left out, and appended to `complaints` as a sentence.
[[nodiscard]] std::vector<ResultEvidence> evidenceOf(const Pieces& pieces, std::vector<std::string>& complaints);

/// The list `evidence`: an object for each thing that a tool said, with the site that it said it of.
void writeEvidence(JsonText& json, const std::vector<ResultEvidence>& evidence);

}  // namespace kelvar_tool
