#include "SiteSearch.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <set>

#include "PathTail.h"

namespace kelvar_page {

namespace {

template <class Number>
std::optional<Number> numberIn(std::string_view text) {
  Number number{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (text.empty() || error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

template <class Wanted>
std::vector<Site> sitesWhere(const Model& model, const Wanted& wanted) {
  std::vector<Site> found;
  for (int index = 0; index < model.data->num_items(); ++index) {
    kelvar::SummaryItem& item = *model.data->item(index);
    if (!wanted(item)) continue;
    Site site = siteOf(item);
    if (!isEnd(site)) found.push_back(std::move(site));
  }
  return found;
}

// Files whose path is `name` or ends with it, the shortest first.
std::vector<std::string> filesNamed(const Model& model, const std::string& name) {
  std::vector<std::string> found;
  for (const auto& [file, rows] : model.overview.files()) {
    if (isPathTail(name, file)) found.emplace_back(file);
  }
  std::stable_sort(found.begin(), found.end(), [](const auto& a, const auto& b) { return a.size() < b.size(); });
  return found;
}

std::vector<Site> sitesAt(const Model& model, const std::string& file, int line) {
  std::vector<Site> at;
  std::optional<Site> around;
  for (kelvar::SummaryItem* const item : model.overview.rowsIn(file)) {
    Site site = siteOf(*item);
    if (isEnd(site)) continue;
    const Region& region = model.overview.regionOf(site);
    const bool holds = site.place.get_line() < line && line <= region.lastLine;
    if (holds && (!around || region.depth > model.overview.regionOf(*around).depth)) around = site;
    if (site.place.get_line() == line) at.push_back(std::move(site));
  }
  if (at.empty() && around) at.push_back(std::move(*around));
  return at;
}

}  // namespace

Named named(const Model& model, const std::string& name) {
  if (const auto sequence = numberIn<unsigned long>(name)) {
    auto sites = sitesWhere(model, [&](kelvar::SummaryItem& item) { return item.handle() == *sequence; });
    if (!sites.empty()) return {.sites = std::move(sites), .file = {}};
  }
  auto sites = sitesWhere(model, [&](kelvar::SummaryItem& item) { return item.label() == name; });
  if (!sites.empty()) return {.sites = std::move(sites), .file = {}};
  const std::size_t colon = name.rfind(':');
  if (const auto line =
          colon != std::string::npos ? numberIn<int>(std::string_view(name).substr(colon + 1)) : std::nullopt) {
    for (const std::string& file : filesNamed(model, name.substr(0, colon))) {
      auto there = sitesAt(model, file, *line);
      if (!there.empty()) return {.sites = std::move(there), .file = {}};
    }
  }
  const std::vector<std::string> files = name.empty() ? std::vector<std::string>() : filesNamed(model, name);
  return {.sites = {}, .file = files.empty() ? std::string() : files.front()};
}

std::vector<std::string> labelsOf(const Model& model) {
  std::set<std::string> labels;
  for (int index = 0; index < model.data->num_items(); ++index) {
    const kelvar::SummaryItem& item = *model.data->item(index);
    if (item.detailKind() == digestio::kAnnotatedSite) labels.insert(item.label());
  }
  return {labels.begin(), labels.end()};
}

}  // namespace kelvar_page
