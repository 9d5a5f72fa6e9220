#include "view/report/SummaryReport.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <ctime>
#include <limits>
#include <string>

#include "names.h"
#include "view/ordering/Orderings.h"
#include "view/report/FormattedPiece.h"
#include "view/report/ItemTable.h"

namespace kelvar_2_1_7 {

using digestio::SummaryDataKind;

namespace {

constexpr std::size_t kPieceSize = 1024;

using TimeText = std::array<char, 32>;

/// A time as UTC; "N/A" for none, and for one that the calendar cannot express.
TimeText timeText(std::uint64_t time) {
  constexpr TimeText kNone{"N/A"};
  if (time > static_cast<std::uint64_t>(std::numeric_limits<std::time_t>::max())) return kNone;
  const auto seconds = static_cast<std::time_t>(time);
  std::tm parts{};
  if (seconds == 0 || gmtime_r(&seconds, &parts) == nullptr) return kNone;
  TimeText text{};
  return std::strftime(text.data(), text.size(), "%a %b %d %H:%M:%S %Y", &parts) != 0 ? text : kNone;
}

void appendTimes(std::string& out, const char* label, std::uint64_t time, std::uint64_t duration) {
  appendPiece<kPieceSize>(out, "%s started: %s\nElapsed: %ld\n", label, timeText(time).data(),
                          static_cast<long>(duration));
}

void appendTimes(std::string& out, const SummaryResult& result) {
  const std::uint64_t collectionTime = result.collectionTime();
  const std::uint64_t collectionDuration = result.collectionDuration();
  appendTimes(out, "Collection", collectionTime, collectionDuration);
  const std::uint64_t finalizationTime = result.finalizationTime();
  const std::uint64_t finalizationDuration = result.finalizationDuration();
  appendTimes(out, "Finalization", finalizationTime, finalizationDuration);
}

// Precision cuts texts to what a piece can hold: printf counts all that it would print, and fails past an int.
void appendHost(std::string& out, const SummaryResult& result) {
  const std::string hostName = result.hostName();
  const int cpuCount = result.cpuCount();
  const unsigned long long cpuFrequency = result.cpuFrequency();
  appendPiece<kPieceSize>(out, "\nhostname: %.1023s\ncpu count: %d\ncpu freq: %llu\n", hostName.c_str(), cpuCount,
                          cpuFrequency);
}

void appendSystem(std::string& out, const SummaryResult& result) {
  const std::string operatingSystem = result.operatingSystem();
  const std::string applicationLog = result.applicationLog();
  const std::string collectorLog = result.collectorLog();
  const std::string commandLog = result.commandLog();
  const bool debugMissing = result.likelyDebugInfoMissing();
  appendPiece<kPieceSize>(out,
                          "\nos: %.1023s\napp log: %.1023s\ncoll log: %.1023s\ncmd log: %.1023s\ndebug missing: %d\n",
                          operatingSystem.c_str(), applicationLog.c_str(), collectorLog.c_str(), commandLog.c_str(),
                          static_cast<int>(debugMissing));
}

/// The kinds that have a block of their own, in its order; vectorization shows in the table alone.
struct KindBlock {
  SummaryDataKind kind;
  const char* name;
};
constexpr std::array<KindBlock, 4> kKindBlocks{{{kSurveyKind, "Survey"},
                                                {kSuitabilityKind, "Suitability"},
                                                {kCorrectnessKind, "Dependencies"},
                                                {kMapKind, "MAP"}}};

void appendSettings(std::string& out, const SummaryReport& report) {
  for (const SummaryDataKind kind : kAllKinds) {
    appendPiece<kPieceSize>(out, "%s - %s\n", kKindNames[static_cast<std::size_t>(kind)],
                            kStatusNames[static_cast<std::size_t>(report.statuses[kind])]);
  }
  out += "display: ";
  out += displayName(report.settings.mapping());
  if (report.settings.isReversed()) out += " (reverse)";
  out += "\n\n";
}

Columns columnsOf(const SummaryReport& report, bool verbose) {
  Columns columns{verbose, {}};
  for (const SummaryDataKind kind : kAllKinds) columns.shown[kind] = report.statuses[kind] != kNotPresent;
  return columns;
}

void appendFigures(std::string& out, const SummaryReport& report) {
  appendPiece<kPieceSize>(out, "\nnum procs: %d\nparadigm: %d\nprog max gain: %f\n", report.processors,
                          report.threadingParadigm, report.programMaxGain);
  appendPiece<kPieceSize>(out, "\naggregate results: %d\n", report.aggregate.resultCount());
  appendTimes(out, report.aggregate);
  appendHost(out, report.aggregate);
  appendSystem(out, report.aggregate);
  out += "\nCollection Details\n";
  for (const KindBlock& block : kKindBlocks) {
    const SummaryResult* const result = report.results[block.kind];
    if (result == nullptr) continue;
    appendPiece<kPieceSize>(out, "\n%s results: %d\n", block.name, result->resultCount());
    appendTimes(out, *result);
  }
}

}  // namespace

void SummaryReport::write(TextSink& out, bool verbose) const {
  if (verbose) appendSettings(out.text(), *this);
  writeTable(out, items, columnsOf(*this, verbose));
  appendFigures(out.text(), *this);
  out.finish();
}

}  // namespace kelvar_2_1_7
