#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "Formats.h"
#include "Names.h"
#include "Output.h"
#include "names.h"
#include "text/JsonText.h"

namespace kelvar_tool {

namespace {

using kelvar::SummaryResult;

constexpr std::int64_t kSchemaVersion = 1;

/// An item's object as a tree: the names of the columns, split at their dots.
struct Node {
  std::string key;
  const Column* column = nullptr;  // null for an object or a list
  std::size_t cell = 0;            // index in the row's values
  bool list = false;
  std::vector<Node> children = {};
};

bool isIndex(std::string_view key) {
  return key.find_first_not_of("0123456789") == std::string_view::npos;
}

void insert(Node& parent, std::string_view path, const Column& column, std::size_t cell) {
  const std::size_t dot = path.find('.');
  const std::string key(path.substr(0, dot));
  parent.list = isIndex(key);
  if (dot == std::string_view::npos) {
    parent.children.push_back({.key = key, .column = &column, .cell = cell});
    return;
  }
  if (parent.children.empty() || parent.children.back().key != key) parent.children.push_back({.key = key});
  insert(parent.children.back(), path.substr(dot + 1), column, cell);
}

// Whether the column is chosen or, in a list, any element of it: leaving one out would shift the others.
bool isChosen(const Column& column, const std::vector<const Column*>& chosen) {
  const std::string_view name = column.name;
  const std::size_t dot = name.rfind('.');
  const bool element = dot != std::string_view::npos && isIndex(name.substr(dot + 1));
  return std::any_of(chosen.begin(), chosen.end(), [&](const Column* other) {
    return other == &column || (element && std::string_view(other->name).substr(0, dot) == name.substr(0, dot));
  });
}

Node treeOf(const std::vector<const Column*>& chosen) {
  Node root;
  std::size_t cells = 0;
  for (const Column& column : allColumns()) {
    if (chosen.empty() || isChosen(column, chosen)) insert(root, column.name, column, cells++);
  }
  return root;
}

void read(const Node& node, const Row& row, std::vector<Cell>& cells) {
  if (node.column) cells.push_back(node.column->value(row, node.column->kind));
  for (const Node& child : node.children) read(child, row, cells);
}

bool knowsNothing(const Node& node, const std::vector<Cell>& cells) {
  if (node.column) return isMissing(cells[node.cell]);
  return std::all_of(node.children.begin(), node.children.end(),
                     [&](const Node& child) { return knowsNothing(child, cells); });
}

void write(JsonText& json, const Node& node, std::string_view key, const std::vector<Cell>& cells) {
  if (node.column) {
    json.value(key, cells[node.cell]);
    return;
  }
  if (!key.empty() && knowsNothing(node, cells)) {
    json.value(key, {});
    return;
  }
  node.list ? json.beginList(key) : json.beginObject(key);
  for (const Node& child : node.children) write(json, child, node.list ? std::string_view() : child.key, cells);
  node.list ? json.endList() : json.endObject();
}

void writeItems(JsonText& json, PrintedPieces& pieces, const Loaded& loaded, const Selection& selection) {
  const Node root = treeOf(selection.columns);
  std::vector<Cell> cells;
  json.beginList("items");
  forEachRow(*loaded.data, selection.rows, [&](const Row& row) {
    cells.clear();
    read(root, row, cells);
    write(json, root, {}, cells);
    pieces.pass();
  });
  json.endList();
}

/// The metadata of a run, for a single result and for an aggregate.
struct Figure {
  const char* name;
  Cell (*value)(const SummaryResult& result);
};

template <auto operation>
Cell figure(const SummaryResult& result) {
  const auto value = (result.*operation)();
  if constexpr (std::is_same_v<decltype(value), const int>) {
    return std::int64_t{value};
  } else {
    return value;
  }
}

constexpr Figure kFigures[] = {
    {"collectionStartTime", figure<&SummaryResult::collectionTime>},
    {"collectionDuration", figure<&SummaryResult::collectionDuration>},
    {"finalizationStartTime", figure<&SummaryResult::finalizationTime>},
    {"finalizationDuration", figure<&SummaryResult::finalizationDuration>},
    {"hostName", figure<&SummaryResult::hostName>},
    {"cpuCount", figure<&SummaryResult::cpuCount>},
    {"cpuFrequency", figure<&SummaryResult::cpuFrequency>},
    {"operatingSystem", figure<&SummaryResult::operatingSystem>},
    {"applicationLog", figure<&SummaryResult::applicationLog>},
    {"collectorLog", figure<&SummaryResult::collectorLog>},
    {"commandLog", figure<&SummaryResult::commandLog>},
    {"debugInfoMissing", figure<&SummaryResult::likelyDebugInfoMissing>},
    {"processors", figure<&SummaryResult::num_processors>},
    {"kovaThreads", figure<&SummaryResult::num_kova_threads>},
    {"threadingParadigm", figure<&SummaryResult::threading_paradigm>},
    {"targetSystem", figure<&SummaryResult::target_system>},
    {"programMaxGain", figure<&SummaryResult::programMaxGain>},
};

void writeFigures(JsonText& json, const SummaryResult& result) {
  for (const Figure& figure : kFigures) json.value(figure.name, figure.value(result));
}

void writeProgram(JsonText& json, kelvar::SummaryData& data) {
  json.beginObject("program");
  json.value("processors", std::int64_t{data.num_processors()});
  json.value("kovaThreads", std::int64_t{data.num_kova_threads()});
  json.value("threadingParadigm", std::int64_t{data.threading_paradigm()});
  json.value("targetSystem", std::int64_t{data.target_system()});
  json.value("programMaxGain", data.programMaxGain());
  json.endObject();
}

void writeAggregate(JsonText& json, std::string_view key, const SummaryResult& results) {
  json.beginObject(key);
  json.value("count", std::int64_t{results.resultCount()});
  writeFigures(json, results);
  json.endObject();
}

// The status of each analysis and the aggregate of its results. There is no aggregate for the vectorization.
void writeAnalyses(JsonText& json, kelvar::SummaryData& data) {
  const kelvar_2_1_7::PerKind<const SummaryResult*> results{
      {data.surveyResult(), nullptr, data.suitabilityResult(), data.correctnessResult(), data.mapResult()}};
  json.beginObject("analyses");
  for (const digestio::SummaryDataKind kind : kelvar_2_1_7::kAllKinds) {
    json.beginObject(recordName(kind));
    json.value("status", std::string(kelvar::kStatusNames[static_cast<std::size_t>(data.summaryDataStatus(kind))]));
    if (results[kind]) {
      writeAggregate(json, "results", *results[kind]);
    } else {
      json.value("results", {});
    }
    json.endObject();
  }
  json.endObject();
}

// Every single result, in the order of reading.
void writeResults(JsonText& json, const SummaryResult& all) {
  json.beginList("results");
  for (int index = 0; index < all.resultCount(); ++index) {
    const SummaryResult& result = *all.result(index);
    json.beginObject({});
    json.value("dataKind", dataKindName(result.summaryCollection()->dataKind()));
    writeFigures(json, result);
    json.endObject();
  }
  json.endList();
}

void writeView(JsonText& json, const kelvar::SummaryData& data, const Selection& selection) {
  const RowChoice& rows = selection.rows;
  json.beginObject("view");
  json.value("ordering", orderingNames()[static_cast<std::size_t>(selection.ordering)]);
  json.value("reverse", selection.reverse);
  json.value("sites", std::int64_t{data.num_items()});
  json.value("match", rows.pattern ? Cell(rows.pattern->text()) : Cell());
  json.value("top", rows.top ? Cell(std::int64_t{*rows.top}) : Cell());
  json.value("allColumns", selection.columns.empty());
  json.endObject();
}

// The units of the quantities; all other numbers are counts, ranks or factors.
void writeUnits(JsonText& json) {
  json.beginObject("units");
  for (const Column& column : allColumns()) {
    if (!column.unit.empty()) json.value(column.name, std::string(column.unit));
  }
  json.endObject();
}

}  // namespace

void writeReport(JsonText& json, PrintedPieces& pieces, const Loaded& loaded, const Selection& selection) {
  kelvar::SummaryData& data = *loaded.data;
  json.beginList("unreadable");
  for (const std::string& complaint : loaded.complaints) json.value({}, complaint);
  json.endList();
  writeUnits(json);
  writeProgram(json, data);
  writeAnalyses(json, data);
  writeAggregate(json, "aggregate", *data.aggregateResult());
  writeResults(json, *data.aggregateResult());
  writeView(json, data, selection);
  writeItems(json, pieces, loaded, selection);
}

void printJson(const Loaded& loaded, const Selection& selection) {
  PrintedPieces pieces;
  JsonText json(pieces.text());
  json.beginObject({});
  json.value("schemaVersion", kSchemaVersion);
  writeReport(json, pieces, loaded, selection);
  if (selection.evidence) writeEvidence(json, *selection.evidence);
  json.endObject();
  pieces.text() += '\n';
  pieces.finish();
}

}  // namespace kelvar_tool
