#pragma once

#include <sqlite3.h>

#include <algorithm>

#include "Annotations.h"
#include "OwnFolder.h"

namespace kelvar_platform::test {

/// An annotation database in a folder of its own: `a` (sequence 1), `b` (2) and `c` (3), and a state of `survey` as of
/// then. Goes with the test.
class AnnotationFile : public OwnFolder {
 protected:
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
  template <class Operation>
  [[nodiscard]] std::string refusal(Operation operation) const {
    const std::string sentence = refused(operation);
    EXPECT_TRUE(sentence.empty() || sentence.starts_with("annotations.db: ")) << sentence;
    return sentence.substr(std::min(sentence.size(), std::string("annotations.db: ").size()));
  }
  [[nodiscard]] std::string contents() const { return OwnFolder::contents("annotations.db"); }

  const std::string path_ = path("annotations.db");
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
