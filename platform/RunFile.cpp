#include "RunFile.h"

#include "JsonFields.h"

namespace kelvar_platform {

namespace {

using json::any;

constexpr auto kRunFields = std::to_array<JsonField<RunRecord>>({
    json::formatVersion<RunRecord>(),
    any<&RunRecord::hostName>("hostName"),
    any<&RunRecord::operatingSystem>("operatingSystem"),
    any<&RunRecord::collectionStartTime>("collectionStartTime"),
    any<&RunRecord::collectionEndTime>("collectionEndTime"),
    any<&RunRecord::finalizationStartTime>("finalizationStartTime"),
    any<&RunRecord::finalizationEndTime>("finalizationEndTime"),
    json::upTo<&RunRecord::cpuCount, std::numeric_limits<std::int32_t>::max()>("cpuCount"),
    any<&RunRecord::cpuFrequency>("cpuFrequency"),
    any<&RunRecord::applicationLog>("applicationLog"),
    any<&RunRecord::collectorLog>("collectorLog"),
    any<&RunRecord::commandLog>("commandLog"),
});

}  // namespace

RunRecord readRunFile(const std::string& file) {
  RunRecord run;
  JsonReader().readDocument(file, kRunFields, run);
  return run;
}

void writeRunFile(const std::filesystem::path& file, const std::filesystem::path& name, const RunRecord& run) {
  JsonWriter out(file.string(), name.string());
  out.beginObject({});
  json::writeFields(out, kRunFields, run);
  out.endObject();
  out.close();
}

}  // namespace kelvar_platform
