#include "Inputs.h"

#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <sstream>

#include "Diagnosis.h"
#include "Request.h"

namespace kelvar_import {

Folder::Folder() {
  std::string pattern = (std::filesystem::temp_directory_path() / "kelvar-import-XXXXXX").native();
  path_ = mkdtemp(pattern.data());
}

Folder::~Folder() {
  std::filesystem::remove_all(path_);
}

std::string Folder::file(const std::string& name, const std::string& text) const {
  std::ofstream(path(name), std::ios::binary) << text;
  return path(name);
}

namespace {

std::string text(const Record& record) {
  std::ostringstream out;
  out << record.weights[0] << ' ' << record.weights[1] << ' ' << record.weights[2] << ' ' << record.note;
  if (record.report != 0) out << '#' << record.report;
  for (const Place& place : record.stack) {
    out << " | " << place.function << " @ " << place.file << ':' << place.line;
    if (place.column != 0) out << ':' << place.column;
  }
  return out.str() + '\n';
}

}  // namespace

std::string recordsOf(const std::string& option, const std::string& file, const std::string& binary) {
  const auto source =
      std::find_if(sources().begin(), sources().end(), [&](const Source& one) { return one.option == option; });
  std::string records;
  try {
    Input input(file);
    source->read(input, binary, [&records](const Record& record) { records += text(record); });
  } catch (const kelvar_platform::ReadError& error) {
    return error.refusal().place + ": expected " + error.refusal().expected;
  }
  return records;
}

}  // namespace kelvar_import
