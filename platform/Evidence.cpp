#include "Evidence.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <system_error>
#include <unordered_map>
#include <utility>

#include "Diagnosis.h"
#include "JsonEscape.h"
#include "JsonFields.h"
#include "StagedDirectory.h"
#include "Utf8.h"

namespace kelvar_platform {

namespace {

namespace fs = std::filesystem;

using json::any;
using json::upTo;

constexpr std::int64_t kMaxInt = std::numeric_limits<std::int32_t>::max();
constexpr auto kAlways = true;

void readKind(JsonReader& in, JsonValue& value, Evidence& out) {
  const std::string_view name = in.text(value);
  const auto known = std::find(kEvidenceKindNames.begin(), kEvidenceKindNames.end(), name);
  if (known == kEvidenceKindNames.end()) {
    in.refuse("race, lock-order, other-finding, vectorized, missed, stride or share");
  }
  out.kind = static_cast<EvidenceKind>(known - kEvidenceKindNames.begin());
}

void readDetail(JsonReader& in, JsonValue& value, Evidence& out) {
  out.detail = static_cast<std::int32_t>(in.integer(value, 0, kMaxInt));
}

void readCount(JsonReader& in, JsonValue& value, Evidence& out) {
  out.count = in.integer(value, 1, std::numeric_limits<std::int64_t>::max());
}

constexpr auto kPlaceFields = std::to_array<JsonField<EvidencePlace>>({
    any<&EvidencePlace::role>("role"),
    any<&EvidencePlace::file>("file", kAlways),
    upTo<&EvidencePlace::line, kMaxInt>("line"),
    upTo<&EvidencePlace::column, kMaxInt>("column"),
    any<&EvidencePlace::function>("function"),
});

void readPlaces(JsonReader& in, JsonValue& value, Evidence& out) {
  in.readList(value, [&](JsonValue& element) { in.readObject(element, kPlaceFields, out.places.emplace_back()); });
}

constexpr auto kFields = std::to_array<JsonField<Evidence>>({
    {"detail", readDetail, nullptr, kAlways},
    {"kind", readKind, nullptr, kAlways},
    any<&Evidence::text>("text", kAlways),
    any<&Evidence::object>("object"),
    {"count", readCount},
    {"places", readPlaces},
});

std::string lineName(std::size_t line) {
  return "line " + std::to_string(line);
}

/// Reads the lines one after the other, reusing its memory.
class EvidenceReader {
 public:
  explicit EvidenceReader(std::string file) : file_(std::move(file)) {}

  std::vector<Evidence> read() {
    FileText text;
    text.read(file_);
    std::string_view rest = text.view();
    while (!rest.empty()) {
      ++line_;
      const std::size_t end = rest.find('\n');
      if (end == std::string_view::npos) refuse("the end of the line");
      readLine(rest.substr(0, end));
      rest.remove_prefix(end + 1);
    }
    return std::move(evidence_);
  }

 private:
  void readLine(std::string_view line) {
    Evidence& one = evidence_.emplace_back();
    try {
      in_.readLine(file_, line, kFields, one);
    } catch (const ReadError& error) {
      Refusal why = error.refusal();
      why.place = lineName(line_) + (why.place.empty() ? "" : ", ") + why.place;
      throw ReadError(why);
    }
    if (++counts_[one.detail] > kMostEvidence) {
      refuse("at most " + std::to_string(kMostEvidence) + " lines for detail " + std::to_string(one.detail));
    }
  }

  [[noreturn]] void refuse(std::string expected) const {
    throw ReadError({.file = file_, .place = lineName(line_), .expected = std::move(expected)});
  }

  std::string file_;
  JsonReader in_;
  std::size_t line_ = 0;
  std::unordered_map<std::int32_t, std::size_t> counts_;
  std::vector<Evidence> evidence_;
};

/// Groups the lines by detail, the greatest counts first, and replaces those beyond the limit by one last line.
std::vector<Evidence> cutToSize(std::vector<Evidence> evidence) {
  std::stable_sort(evidence.begin(), evidence.end(), [](const Evidence& a, const Evidence& b) {
    return a.detail != b.detail ? a.detail < b.detail : a.count > b.count;
  });
  std::vector<Evidence> kept;
  for (auto first = evidence.begin(); first != evidence.end();) {
    const auto last =
        std::find_if(first, evidence.end(), [first](const Evidence& one) { return one.detail != first->detail; });
    const auto all = static_cast<std::size_t>(last - first);
    const std::size_t room = all > kMostEvidence ? kMostEvidence - 1 : all;
    kept.insert(kept.end(), std::make_move_iterator(first),
                std::make_move_iterator(first + static_cast<std::ptrdiff_t>(room)));
    if (room < all) {
      const auto left = static_cast<std::int64_t>(all - room);
      kept.push_back({.detail = kept.back().detail,
                      .kind = (first + static_cast<std::ptrdiff_t>(room))->kind,
                      .text = std::to_string(left) + " more are left out",
                      .count = left});
    }
    first = last;
  }
  return kept;
}

/// Builds the text of the file, and refuses values that a reader would refuse.
class EvidenceText {
 public:
  explicit EvidenceText(std::string file) : file_(std::move(file)) {}

  void add(const Evidence& one) {
    ++line_;
    text_ += "{\"detail\": ";
    number(one.detail, 0, "detail");
    text_ += ", \"kind\": ";
    appendJsonText(text_, kEvidenceKindNames.at(static_cast<std::size_t>(one.kind)));
    member("text", one.text);
    if (!one.object.empty()) member("object", one.object);
    text_ += ", \"count\": ";
    number(one.count, 1, "count");
    if (!one.places.empty()) addPlaces(one.places);
    text_ += "}\n";
  }
  [[nodiscard]] const std::string& text() const { return text_; }

 private:
  void addPlaces(const std::vector<EvidencePlace>& places) {
    const char* separator = ", \"places\": [";
    for (const EvidencePlace& place : places) {
      text_ += separator;
      text_ += "{\"role\": ";
      value("role", place.role);
      member("file", place.file);
      if (place.line != 0) position("line", place.line);
      if (place.column != 0) position("column", place.column);
      if (!place.function.empty()) member("function", place.function);
      text_ += '}';
      separator = ", ";
    }
    text_ += ']';
  }

  void position(const char* key, std::int32_t value) {
    text_.append(", \"").append(key).append("\": ");
    number(value, 0, key);
  }
  void member(const char* key, const std::string& text) {
    text_.append(", \"").append(key).append("\": ");
    value(key, text);
  }
  void value(const char* key, const std::string& text) {
    if (!isUtf8(text)) refuse(key, "a text in UTF-8");
    appendJsonText(text_, text);
  }
  void number(std::int64_t value, std::int64_t least, const char* key) {
    if (value < least) refuse(key, "an integer from " + std::to_string(least) + " on");
    text_ += std::to_string(value);
  }
  [[noreturn]] void refuse(const char* key, std::string expected) const {
    throw ReadError({.file = file_, .place = lineName(line_) + ", " + key, .expected = std::move(expected)});
  }

  std::string file_;
  std::string text_;
  std::size_t line_ = 0;
};

}  // namespace

std::vector<Evidence> readEvidence(const std::filesystem::path& directory) {
  const fs::path file = directory / kEvidenceFile;
  std::error_code error;
  if (fs::symlink_status(file, error).type() == fs::file_type::not_found) return {};
  return EvidenceReader(file.string()).read();
}

void writeEvidence(const std::filesystem::path& directory, std::vector<Evidence> evidence) {
  const fs::path file = directory / kEvidenceFile;
  std::error_code error;
  if (evidence.empty()) {
    fs::remove(file, error);
    return;
  }
  EvidenceText text(file.string());
  const std::vector<Evidence> kept = cutToSize(std::move(evidence));
  for (const Evidence& one : kept) text.add(one);
  const fs::path aside = directory / ("." + std::string(kEvidenceFile) + "." + std::to_string(::getpid()));
  std::ofstream out(aside, std::ios::binary | std::ios::trunc);
  out << text.text();
  out.close();
  if (!out) {
    const std::string why = std::strerror(errno);
    fs::remove(aside, error);
    throw ReadError({.file = file.string(), .place = {}, .expected = "a file that can be written (" + why + ')'});
  }
  moveInto(aside, file);
}

}  // namespace kelvar_platform
