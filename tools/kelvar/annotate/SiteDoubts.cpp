#include "SiteDoubts.h"

#include <algorithm>
#include <filesystem>

#include "Diagnosis.h"
#include "Lines.h"
#include "Messages.h"
#include "Place.h"
#include "RegionKinds.h"
#include "scan/ScannedSources.h"

namespace kelvar_tool {

namespace {

using kelvar_platform::Site;

void doubtPlace(const Site& site, std::vector<std::string>& doubts) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(site.file, error)) {
    doubts.push_back(escaped(site.file) + " does not exist: a scan will not find the site again");
    return;
  }
  try {
    const std::string bytes = sourceBytes(site.file);
    const int lines = kelvar_sources::Lines(bytes).count();
    if (site.line <= lines && site.line > 0) return;
    doubts.push_back(escaped(site.file) + " has " + std::to_string(lines) + " lines, and no line " +
                     std::to_string(site.line));
  } catch (const kelvar_platform::ReadError& error2) {
    doubts.emplace_back(error2.what());
  }
}

}  // namespace

std::vector<std::string> doubtsOf(const Site& site, const std::vector<Site>& others) {
  std::vector<std::string> doubts;
  doubtPlace(site, doubts);
  const auto twin = std::find_if(others.begin(), others.end(), [&](const Site& other) {
    return other.kind == site.kind && other.label == site.label && other.file == site.file && other.line == site.line &&
           other.column == site.column;
  });
  if (twin != others.end()) doubts.push_back("site " + std::to_string(twin->sequence) + " is the same already");
  const bool begun = std::any_of(others.begin(), others.end(), [&](const Site& other) {
    return kelvar_2_1_7::endOf(other.kind) == site.kind && other.label == site.label && other.file == site.file &&
           other.line <= site.line;
  });
  if (kelvar_2_1_7::closesRegion(site.kind) && !begun) {
    doubts.push_back("no site before it in " + escaped(site.file) + " is " + inQuotes(site.label) +
                     ", so it ends nothing");
  }
  return doubts;
}

}  // namespace kelvar_tool
