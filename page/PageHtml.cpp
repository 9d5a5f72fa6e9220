#include "PageHtml.h"

#include <sys/random.h>

#include <array>
#include <cerrno>
#include <set>
#include <system_error>
#include <unordered_map>
#include <vector>

#include "Front.h"
#include "PageData.h"
#include "PageJson.h"

namespace kelvar_page {

namespace {

constexpr std::size_t kMostSourceBytes = std::size_t{2} << 20;

struct Part {
  std::string_view mark;
  std::string_view text;
};

// Replaces the marks in one pass, so that marks inside of inserted texts stay as they are.
std::string filled(std::string_view page, const std::vector<Part>& parts) {
  std::string out;
  while (!page.empty()) {
    const std::size_t at = page.find('@');
    out += page.substr(0, at);
    if (at == std::string_view::npos) break;
    page.remove_prefix(at);
    bool known = false;
    for (const Part& part : parts) {
      if (!page.starts_with(part.mark)) continue;
      out += part.text;
      page.remove_prefix(part.mark.size());
      known = true;
      break;
    }
    if (known) continue;
    out += '@';
    page.remove_prefix(1);
  }
  return out;
}

std::string page(std::string_view nonce, std::string_view policy, std::string_view data) {
  const std::string attribute = " nonce=\"" + std::string(nonce) + "\"";
  return filled(kFrontPage, {{"@POLICY@", policy},
                             {"@NONCE@", attribute},
                             {"@STYLE@", kFrontStyle},
                             {"@SCRIPT@", kFrontScript},
                             {"@DATA@", data}});
}

using Embedded = std::unordered_map<const kelvar::SummaryItem*, std::int64_t>;  // place in the file

std::vector<kelvar::SummaryItem*> firstRows(const Model& model) {
  std::vector<kelvar::SummaryItem*> rows;
  for (int index = 0; index < model.data->num_items() && rows.size() < kMostEmbedded; ++index) {
    kelvar::SummaryItem* const item = model.data->item(index);
    if (!isEnd(siteOf(*item))) rows.push_back(item);
  }
  return rows;
}

void writeOrders(PageJson& json, const Model& model, const Embedded& places) {
  json.beginList("orders");
  for (int mapping = 0; mapping < kelvar::kSummaryMappingCount; ++mapping) {
    model.data->setMapping(static_cast<kelvar::SummaryMapping>(mapping), false);
    json.beginList();
    for (int index = 0; index < model.data->num_items(); ++index) {
      const auto place = places.find(model.data->item(index));
      if (place != places.end()) json.number({}, place->second);
    }
    json.endList();
  }
  json.endList();
}

void writeSources(PageJson& json, const Model& model, const std::vector<kelvar::SummaryItem*>& rows) {
  std::set<std::string> seen;
  std::size_t bytes = 0;
  json.beginObject("sources");
  for (kelvar::SummaryItem* const item : rows) {
    const std::string file = siteOf(*item).place.get_file().get_text();
    if (bytes >= kMostSourceBytes || !seen.insert(file).second) continue;
    PageJson source;
    if (!writeSource(source, model, file) || bytes + source.json().size() > kMostSourceBytes) continue;
    bytes += source.json().size();
    json.raw(file, source.json());
  }
  json.endObject();
}

}  // namespace

std::string servedPage(std::string_view nonce) {
  return page(nonce, "", "");
}

std::string embeddedPage(const Model& model, const std::string& project, kelvar::SummaryMapping ordering,
                         bool reverse) {
  model.data->setMapping(ordering, reverse);
  const std::vector<kelvar::SummaryItem*> rows = firstRows(model);
  Embedded places;
  PageJson json;
  json.beginObject();
  writeProgram(json, model, project);
  writePictures(json, model);
  SharedTexts shared;
  json.beginList("embedded");
  for (kelvar::SummaryItem* const item : rows) {
    places.emplace(item, static_cast<std::int64_t>(places.size()));
    writeRow(json, model, siteOf(*item), shared);
  }
  json.endList();
  shared.write(json);
  const bool all = rows.size() < kMostEmbedded;
  json.number("leftOut", all ? 0 : model.overview.rows() - static_cast<std::int64_t>(rows.size()));
  json.beginObject("sites");
  for (kelvar::SummaryItem* const item : rows) {
    const Site site = siteOf(*item);
    if (model.evidence.of(site).empty()) continue;
    PageJson one;
    writeSite(one, model, site, {});
    json.raw(keyOf(site), one.json());
  }
  json.endObject();
  writeSources(json, model, rows);
  writeOrders(json, model, places);
  json.endObject();
  const std::string nonce = unguessable();
  const std::string policy =
      "<meta http-equiv=\"Content-Security-Policy\" content=\"" + contentPolicy(nonce, PageData::embedded) + "\">";
  return page(nonce, policy, json.json());
}

std::string contentPolicy(std::string_view nonce, PageData data) {
  const std::string mine = "'nonce-" + std::string(nonce) + "'";
  std::string policy =
      "default-src 'none'; script-src " + mine + "; style-src " + mine +
      "; base-uri 'none'; form-action 'none'; require-trusted-types-for 'script'; trusted-types 'none'";
  if (data == PageData::served) policy += "; connect-src 'self'; frame-ancestors 'none'";
  return policy;
}

std::string unguessable() {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::array<unsigned char, 16> bytes{};
  if (::getrandom(bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size())) {
    throw std::system_error(errno, std::generic_category(), "getrandom");
  }
  std::string text;
  for (const unsigned char byte : bytes) text += {kDigits[byte >> 4], kDigits[byte & 0xf]};
  return text;
}

}  // namespace kelvar_page
