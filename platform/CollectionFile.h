#pragma once

#include <string>
#include <vector>

#include "Collection.h"
#include "ResultRecords.h"

namespace kelvar_platform {

class JsonReader;
class JsonWriter;

/// Where a result keeps its collection.
[[nodiscard]] std::string collectionFile(const std::string& result);

/// Reads `file`: the program's values go into `out`, the details into `details` in the order of the file, their records
/// into the memory of `out`. The labels are valid until `in` reads its next file. Throws a ReadError at the first value
/// that does not fit.
void readCollection(JsonReader& in, const std::string& file, Collection& out, std::vector<DetailFields>& details);

/// Write the parts of a collection that is begun: the program's values, and one detail.
void writeProgram(JsonWriter& out, const ProgramRecord& program);
void writeDetail(JsonWriter& out, const DetailRecord& detail);

}  // namespace kelvar_platform
