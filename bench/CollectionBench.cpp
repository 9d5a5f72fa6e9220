#include <simdjson.h>

#include <filesystem>
#include <memory>

#include "LoadedProject.h"
#include "Measure.h"
#include "Program.h"
#include "ProjectOnDisk.h"

namespace kelvar_bench {

namespace {

using digestio::SummaryDataKind;

std::size_t detailCount(std::size_t sites, SummaryDataKind kind) {
  static std::size_t counted = 0;
  static kelvar_2_1_7::PerKind<std::size_t> counts{};
  if (counted != sites) {
    const GeneratedProject project(sites, kSeed);
    for (const SummaryDataKind each : kelvar_2_1_7::kAllKinds) counts[each] = project.details(each).size();
    counted = sites;
  }
  return counts[kind];
}

namespace ondemand = simdjson::ondemand;

/// Visits every value without storing it. Returns the total size of the scalars; throws the parser's errors.
std::size_t walk(ondemand::value value) {
  std::size_t seen = 0;
  switch (value.type()) {
    case ondemand::json_type::object:
      for (ondemand::field field : value.get_object()) seen += walk(field.value());
      return seen;
    case ondemand::json_type::array:
      for (ondemand::value each : value.get_array()) seen += walk(each);
      return seen;
    default:
      return value.raw_json_token().size();
  }
}

std::size_t walkFile(const std::string& file) {
  ondemand::parser parser;
  const simdjson::padded_string text = simdjson::padded_string::load(file);
  ondemand::document document = parser.iterate(text);
  std::size_t seen = 0;
  for (ondemand::field field : document.get_object()) seen += walk(field.value());
  return seen;
}

}  // namespace

void registerCollection(std::size_t sites) {
  for (const SummaryDataKind kind : kelvar_2_1_7::kAllKinds) {
    const std::string name = std::filesystem::path(resultPath(kind)).filename().string();
    const auto items = [=] { return detailCount(sites, kind); };
    measure(
        "collection/" + name, sites, items,
        [=] { return std::filesystem::path(collectionFile(sites, kind)).parent_path().string(); },
        [](const std::string& path) {
          return std::unique_ptr<digestio::SummaryCollection>(digestio::SummaryCollection::load(path));
        });
    measure(
        "parse/" + name, sites, items, [=] { return collectionFile(sites, kind); },
        [](const std::string& file) {
          auto parser = std::make_unique<simdjson::dom::parser>();
          if (parser->load(file).error() != simdjson::SUCCESS) parser.reset();
          return parser;
        });
    measure(
        "walk/" + name, sites, items, [=] { return collectionFile(sites, kind); }, walkFile);
  }
}

}  // namespace kelvar_bench
