#include "PageModel.h"

#include <string>
#include <utility>
#include <vector>

#include "Messages.h"
#include "TimeSource.h"

namespace kelvar_tool {

std::unique_ptr<kelvar_page::Model> modelOf(const Loaded& loaded, const Pieces& pieces, const std::string& sourceRoot) {
  kelvar_page::EvidenceIndex evidence;
  std::vector<std::string> damaged;
  evidence.read(*loaded.data, pieces.results, damaged);
  for (const std::string& complaint : damaged) say(complaint);
  std::vector<std::string> complaints = loaded.complaints;
  complaints.insert(complaints.end(), damaged.begin(), damaged.end());
  auto model = std::make_unique<kelvar_page::Model>(loaded.data, std::move(evidence), sourceRoot, std::move(complaints),
                                                    unitsOf(pieces));
  if (const std::string source = timeSourceOf(pieces); !source.empty()) model->timeSource = "times by " + source;
  return model;
}

}  // namespace kelvar_tool
