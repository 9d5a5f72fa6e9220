#pragma once

#include <sqlite3.h>

#include <regex>
#include <sstream>

#include "Annotations.h"
#include "Files.h"

namespace kelvar_platform::test {

using sitenotes::annotation_t;

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

/// An annotation database: `a` (sequence 1), `b` (2) and `c` (3), and a state of `survey` as of then.
class Annotations : public Files {
 protected:
  void makeThree() const {
    std::filesystem::remove_all(file_);
    AnnotationEditor editor(file_, AnnotationEditor::Open::createIfMissing);
    editor.add(annotation_t::parallel, "a", "/src/a.cpp", 1, 0);
    editor.add(annotation_t::task, "b", "/src/b.cpp", 2, 3);
    editor.add(annotation_t::teams, "c", "/src/c.cpp", 3, 0);
    editor.snapshot(path("./survey/"));
  }

  /// Damages the file in a way that no editor would.
  void run(const std::string& sql) const {
    sqlite3* database = nullptr;
    ASSERT_EQ(sqlite3_open(file_.c_str(), &database), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(database, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK) << sqlite3_errmsg(database);
    sqlite3_close(database);
  }

  /// Lowers the count of cells of a table or an index that is one page.
  void loseLastRow(const std::string& name) const {
    sqlite3* database = nullptr;
    sqlite3_stmt* query = nullptr;
    ASSERT_EQ(sqlite3_open(file_.c_str(), &database), SQLITE_OK);
    sqlite3_prepare_v2(database,
                       "SELECT (rootpage - 1) * page_size FROM sqlite_schema, pragma_page_size WHERE name = ?", -1,
                       &query, nullptr);
    sqlite3_bind_text(query, 1, name.c_str(), -1, SQLITE_STATIC);
    ASSERT_EQ(sqlite3_step(query), SQLITE_ROW) << name;
    const auto page = static_cast<std::size_t>(sqlite3_column_int64(query, 0));
    sqlite3_finalize(query);
    sqlite3_close(database);
    std::string bytes = support::contentOf(file_);
    --bytes.at(page + 4);
    write("annotations.db", bytes);
  }

  [[nodiscard]] AnnotationEditor editor() const { return {file_, AnnotationEditor::Open::existing}; }
  [[nodiscard]] boost::shared_ptr<sitenotes::database_t> open() const { return openAnnotationDatabase(file_); }

  /// The refusal of `operation`, without the file; empty if there is none.
  template <class Operation>
  [[nodiscard]] std::string refusalOf(Operation operation) const {
    return std::regex_replace(refused(operation), std::regex("^annotations.db: "), "");
  }
  [[nodiscard]] std::string refusalToOpen() const {
    return refusalOf([this] { static_cast<void>(open()); });
  }

  /// A file that cannot be read is not written either: each edit is refused as a reader is, and the file is unchanged.
  void expectNoEditBut(const std::string& want, const std::string& damage) const {
    const std::string before = support::contentOf(file_);
    EXPECT_EQ(refusalOf([&] { editor().relabel(1, "new"); }), want) << damage;
    EXPECT_EQ(refusalOf([&] { editor().add(annotation_t::task, "d", "f", 1, 0); }), want) << damage;
    EXPECT_EQ(refusalOf([&] { editor().snapshot(path("survey")); }), want) << damage;
    EXPECT_EQ(refusalOf([&] { static_cast<void>(editor().list(true)); }), want) << damage;
    EXPECT_TRUE(support::contentOf(file_) == before) << damage;
  }

  const std::string file_ = path("annotations.db");
};

}  // namespace kelvar_platform::test
