#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>

#include "Annotations.h"
#include "Diagnosis.h"

namespace kelvar_platform::test {

/// An annotation database in a folder of its own: `a` (sequence 1), `b` (2) and `c` (3), and a state of `survey` as of
/// then. Goes with the test.
class AnnotationFile : public testing::Test {
 protected:
  AnnotationFile() {
    std::string pattern = testing::TempDir() + "annotations-XXXXXX";
    folder_ = mkdtemp(pattern.data());
    path_ = folder_ + "/annotations.db";
  }
  ~AnnotationFile() override { std::filesystem::remove_all(folder_); }

  void makeThree() const {
    AnnotationEditor editor(path_, AnnotationEditor::Open::createIfMissing);
    editor.add(sitenotes::annotation_t::parallel, "a", "/src/a.cpp", 1, 0);
    editor.add(sitenotes::annotation_t::task, "b", "/src/b.cpp", 2, 3);
    editor.add(sitenotes::annotation_t::teams, "c", "/src/c.cpp", 3, 0);
    editor.snapshot(folder_ + "/survey");
  }

  /// Does to the file what no editor would.
  void run(const std::string& sql) const {
    sqlite3* database = nullptr;
    ASSERT_EQ(sqlite3_open(path_.c_str(), &database), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(database, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK) << sqlite3_errmsg(database);
    sqlite3_close(database);
  }

  [[nodiscard]] AnnotationEditor editor() const { return {path_, AnnotationEditor::Open::existing}; }

  /// What `operation` was refused for, without the file; empty where it was not.
  [[nodiscard]] std::string refusal(const std::function<void()>& operation) const {
    try {
      operation();
    } catch (const ReadError& error) {
      EXPECT_EQ(std::string(error.what()).rfind(path_ + ": ", 0), 0U) << error.what();
      return std::string(error.what()).substr(path_.size() + 2);
    }
    return {};
  }

  [[nodiscard]] std::string contents() const {
    std::ostringstream out;
    out << std::ifstream(path_, std::ios::binary).rdbuf();
    return out.str();
  }

  std::string folder_;
  std::string path_;
};

/// `SEQUENCE KIND LABEL FILE:LINE:COLUMN` for each living site, `SEQUENCE dead` for the others.
inline std::string rows(sitenotes::database_t* database) {
  if (database == nullptr) return "none";
  std::ostringstream out;
  for (const unsigned long sequence : database->get_sequences()) {
    const auto annotation = database->get_latest_annotation(sequence);
    EXPECT_EQ(database->is_sequence_alive(sequence), annotation != nullptr);
    out << (out.tellp() > 0 ? ", " : "") << sequence << ' ';
    if (annotation == nullptr) {
      out << "dead";
      continue;
    }
    const sitenotes::locator_t& place = annotation->get_locator();
    out << annotation->get_kind() << ' ' << annotation->get_label() << ' ' << place.get_file().get_leaf() << ':'
        << place.get_line() << ':' << place.get_column() << (annotation->disabled() ? " disabled" : "");
  }
  return out.str();
}

}  // namespace kelvar_platform::test
