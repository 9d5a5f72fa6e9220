#include <sqlite3.h>

#include <atomic>
#include <functional>
#include <regex>
#include <sstream>
#include <thread>

#include "Annotations.h"
#include "Files.h"
#include "support/Cases.h"

namespace kelvar_platform::test {
namespace {

using sitenotes::annotation_t;

/// `SEQUENCE KIND LABEL FILE:LINE:COLUMN` for each living site, `SEQUENCE dead` for the others.
std::string rows(sitenotes::database_t* database) {
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

  /// Does to the file what no editor would.
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

  /// What `operation` was refused for, without the file; empty where it was not.
  template <class Operation>
  [[nodiscard]] std::string refusalOf(Operation operation) const {
    return std::regex_replace(refused(operation), std::regex("^annotations.db: "), "");
  }
  [[nodiscard]] std::string refusalToOpen() const {
    return refusalOf([this] { static_cast<void>(open()); });
  }

  /// What cannot be read is not written either: each edit is refused as a reader is, and leaves the file as it was.
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

TEST_F(Annotations, OneBadRowMakesTheWholeFileUnreadable) {
  // A copy of a table has no key, no checks and no strict types.
  const std::regex loose("^loose (\\w+):");
  const char* copied = "CREATE TABLE loose AS SELECT * FROM $1; DROP TABLE $1; ALTER TABLE loose RENAME TO $1;";
  for (const auto& [damage, parts] : support::cases("damages/annotations.txt", 50)) {
    makeThree();
    run("PRAGMA ignore_check_constraints = ON; " + std::regex_replace(parts[0], loose, copied));
    EXPECT_EQ(refusalToOpen(), parts[1]) << damage;
    expectNoEditBut(parts[1], damage);
  }
}

TEST_F(Annotations, RowsThatOnlyTheTableOrOnlyItsIndexHasAreMissed) {
  const struct {
    const char* damaged;  // loses its last row
    std::string want;
  } losses[] = {
      {"edit", "edit: expected 3 rows, found 2"},
      {"edit_of_sequence", "edit: expected 2 rows, found 3"},
      {"state", "state: expected 2 rows, found 1"},
      {"sqlite_autoindex_state_1", "state: expected 1 rows, found 2"},
  };
  for (const auto& [damaged, want] : losses) {
    makeThree();
    editor().snapshot(path("map"));
    loseLastRow(damaged);
    EXPECT_EQ(refusalToOpen(), want) << damaged;
    expectNoEditBut(want, damaged);
  }
}

TEST_F(Annotations, WhatIsNoDatabaseIsRefused) {
  EXPECT_EQ(refusalToOpen(), "expected a file (No such file or directory)");
  std::filesystem::create_directory(file_);
  EXPECT_EQ(refusalToOpen(), "expected a regular file");
  makeThree();
  const std::string whole = support::contentOf(file_);
  for (std::size_t size = 1; size < whole.size(); size += 1021) {
    write("annotations.db", whole.substr(0, size));
    EXPECT_NE(refusalToOpen(), "") << "cut to " << size;
  }
  write("annotations.db", "");
  EXPECT_EQ(refusalToOpen(), "application_id: expected 1802270322, found 0");
  // Of such a table SQLite says that memory ran out, which it did not.
  write("annotations.db", support::contentOf(KELVAR_SOURCE_FOLDER "/fuzz/corpus/annotations/absurd-size"));
  EXPECT_EQ(refusalToOpen(), "expected a database that fits into memory (out of memory)");
}

TEST_F(Annotations, APathThatIsTooLongIsSaidToBe) {
  const std::string name = "/annotations.db";
  const auto longPath = [&](std::size_t size) {
    std::string folder = path("deep");
    while (folder.size() + name.size() < size) {
      folder += '/' + std::string(std::min<std::size_t>(200, size - folder.size() - name.size() - 1), 'd');
    }
    std::filesystem::create_directories(folder);
    return folder + name;
  };
  const auto addAt = [&](const std::string& file) {
    return refused([&] {
      AnnotationEditor(file, AnnotationEditor::Open::createIfMissing).add(annotation_t::task, "t", "f", 1, 0);
    });
  };
  EXPECT_EQ(addAt(longPath(504)), "");
  EXPECT_EQ(rows(openAnnotationDatabase(longPath(504)).get()), "1 2 t f:1:0");
  const std::string file = longPath(505);
  const std::string want = local(file) + ": expected an absolute path of at most 504 bytes, found 505";
  EXPECT_EQ(addAt(file), want);
  EXPECT_FALSE(std::filesystem::exists(file));
  std::filesystem::copy(longPath(504), file);
  EXPECT_EQ(refused([&] { static_cast<void>(openAnnotationDatabase(file)); }), want);
  std::filesystem::create_directory_symlink(file.substr(0, file.rfind('/')), path("short"));
  EXPECT_EQ(addAt(path("short") + name), "short" + want.substr(want.find(name)));
}

TEST_F(Annotations, AStateIsTheDatabaseAsOfItsRevision) {
  makeThree();
  editor().move(2, "/src/b.cpp", 20, 0);
  editor().remove(1);
  editor().setDisabled(3, true);
  run("INSERT INTO state VALUES ('first', 1), ('before', 0), ('ahead', 99), ('/else/where', 5)");
  const auto database = open();
  const std::string newest = "1 dead, 2 2 b b.cpp:20:0, 3 18 c c.cpp:3:0 disabled";
  EXPECT_EQ(rows(database.get()), newest);
  EXPECT_FALSE(database->is_sequence_alive(0) || database->is_sequence_alive(4) ||
               database->get_latest_annotation(-1UL));

  const auto state = [&](const std::string& path) { return rows(database->get_state(path).get()); };
  EXPECT_EQ(state(path("survey")), "1 0 a a.cpp:1:0, 2 2 b b.cpp:2:3, 3 18 c c.cpp:3:0");
  EXPECT_EQ(state(path("x/.././first/")), "1 0 a a.cpp:1:0");
  EXPECT_EQ(state(path("before")), "");
  EXPECT_EQ(state(path("ahead")), newest);
  EXPECT_EQ(state("/else/where"), "1 dead, 2 2 b b.cpp:20:0, 3 18 c c.cpp:3:0");
  EXPECT_EQ(state(""), "none");
  EXPECT_EQ(state(path("map")), "none");
  EXPECT_EQ(database->get_state(path("survey"))->get_latest_annotation(3),
            database->get_state(path("first/../survey"))->get_latest_annotation(3));
  EXPECT_EQ(database->get_state(path("ahead"))->get_latest_annotation(3), database->get_latest_annotation(3));

  const std::string before = support::contentOf(file_);
  EXPECT_EQ(rows(database->make_state("", false).get()), "none");
  EXPECT_EQ(rows(database->make_state(path("map"), false).get()), newest);
  EXPECT_EQ(state(path("map")), newest);
  EXPECT_TRUE(support::contentOf(file_) == before);
  EXPECT_EQ(rows(open()->get_state(path("map")).get()), "none");
  editor().snapshot(path("map"));
  EXPECT_EQ(rows(open()->get_state(path("map")).get()), newest);
}

TEST_F(Annotations, AStateHasTheNameThatASnapshotGivesIt) {
  const std::string folder = path("").substr(0, path("").size() - 1);
  const std::string above = folder.substr(0, folder.rfind('/'));
  makeThree();
  for (const std::string& result : {path("x/..//a b/./c/"), path("..c"), path("..."), path("annotations.db"), folder,
                                    folder + "2", above, std::string("/"), std::string("//else/../where/")}) {
    editor().snapshot(result);
    EXPECT_EQ(rows(open()->get_state(result).get()), rows(open().get())) << result;
  }
  for (const std::string& name :
       {std::string(), std::string("."), std::string("./map"), std::string("map/"), std::string("a/../map"),
        std::string("a//map"), std::string("../map"), std::string("/else/"), std::string("/a/./b"), path("map")}) {
    makeThree();
    run("INSERT INTO state VALUES ('" + name + "', 1)");
    EXPECT_EQ(refusalToOpen(), "state, path \"" + name +
                                   "\": expected path without ., .. or a trailing slash, relative "
                                   "where it lies below the database's folder, else absolute");
  }
}

TEST_F(Annotations, ALinkToTheFolderLeavesWhatWasRecordedWithoutItReadable) {
  makeThree();
  std::filesystem::create_directory(path("real"));
  std::filesystem::rename(file_, path("real/annotations.db"));
  std::filesystem::create_directory_symlink(path("real"), path("link"));
  AnnotationEditor(path("real/annotations.db"), AnnotationEditor::Open::existing).snapshot(path("link/survey"));
  EXPECT_NE(rows(openAnnotationDatabase(path("link/annotations.db")).get()), "none");
}

TEST_F(Annotations, SequencesWithGapsAreFoundInAnyOrder) {
  makeThree();
  run("WITH RECURSIVE n(i) AS (VALUES (1) UNION ALL SELECT i + 1 FROM n WHERE i < 300) INSERT INTO edit "
      "(sequence, alive, disabled, kind, label, file, line, \"column\") SELECT 9 + i * i * i, 1, 0, 1, i, '', 0, 0 "
      "FROM n");
  run("UPDATE edit SET sequence = 9223372036854775807 WHERE sequence = 3");
  const auto database = open();
  EXPECT_EQ(database->get_sequences().size(), 303U);
  for (unsigned long i = 300; i >= 1; i -= i % 7 == 0 ? 3 : 1) {
    const unsigned long sequence = 9 + i * i * i;
    ASSERT_TRUE(database->is_sequence_alive(sequence)) << i;
    EXPECT_EQ(database->get_latest_annotation(sequence)->get_label(), std::to_string(i));
    EXPECT_FALSE(database->is_sequence_alive(sequence + 1)) << i;
  }
  EXPECT_EQ(database->get_latest_annotation(9223372036854775807UL)->get_label(), "c");
}

TEST_F(Annotations, AReaderSeesOneRevisionWhileAWriterWrites) {
  makeThree();
  std::atomic<bool> done = false;
  std::thread writer([&] {
    for (int line = 1; line <= 40; ++line) {
      const std::string place = std::to_string(line);
      run("PRAGMA busy_timeout = 5000; BEGIN IMMEDIATE; INSERT INTO edit VALUES (NULL, 1, 1, 0, 0, 'a', 'f', " + place +
          ", 0); INSERT INTO edit VALUES (NULL, 2, 1, 0, 0, 'b', 'f', " + place + ", 0); COMMIT");
    }
    done = true;
  });
  do {
    const auto database = open();
    const int first = database->get_latest_annotation(1)->get_locator().get_line();
    const int second = database->get_latest_annotation(2)->get_locator().get_line();
    EXPECT_TRUE(first == second || (first == 1 && second == 2)) << first << ' ' << second;
  } while (!done);
  writer.join();
}

TEST_F(Annotations, WhatIsWrittenIsReadBack) {
  makeThree();
  AnnotationEditor editing = editor();
  const std::string odd("zero\0byte \xC3\xA9", 12);
  editing.relabel(1, odd);
  editing.move(2, "/new/d.cpp", 2147483647, 9);
  editing.remove(3);
  EXPECT_EQ(editing.add(annotation_t::flush, "", "", 0, 0), 4);
  EXPECT_EQ(rows(open().get()), "1 0 " + odd + " a.cpp:1:0, 2 2 b d.cpp:2147483647:9, 3 dead, 4 16  :0:0");
  EXPECT_TRUE(open()->get_latest_annotation(4)->get_locator().is_null());
}

TEST_F(Annotations, ARefusedEditLeavesTheFileAsItWas) {
  makeThree();
  AnnotationEditor editing = editor();
  editing.remove(3);
  const std::string before = support::contentOf(file_);
  const struct {
    std::function<void()> edit;
    std::string want;
  } edits[] = {
      {[&] { editing.move(7, "f", 1, 1); }, "sequence 7: expected a living site"},
      {[&] { editing.relabel(3, "again"); }, "sequence 3: expected a living site"},
      {[&] { editing.remove(3); }, "sequence 3: expected a living site"},
      {[&] { editing.setDisabled(0, true); }, "sequence 0: expected a living site"},
      {[&] { editing.relabel(1, "\xFF"); }, "sequence 1: expected label as UTF-8 text"},
      {[&] { editing.move(1, "\xC3", 1, 1); }, "sequence 1: expected file as UTF-8 text"},
      {[&] { editing.move(1, "f", -1, 1); }, "sequence 1: expected line from 0 to 2147483647"},
      {[&] { editing.move(1, "f", 1, -1); }, "sequence 1: expected column from 0 to 2147483647"},
      {[&] { editing.add(annotation_t::all_kinds, "", "f", 1, 1); }, "new site: expected kind from 0 to 18"},
      {[&] { editing.snapshot(""); }, "state: expected a result path, as UTF-8 text"},
      {[&] { editing.snapshot("/\xFF"); }, "state: expected a result path, as UTF-8 text"},
  };
  for (const auto& [edit, want] : edits) EXPECT_EQ(refusalOf(edit), want);
  EXPECT_TRUE(support::contentOf(file_) == before);
}

TEST_F(Annotations, OnlyAnAddMakesAFileAndNeverOutOfAnothers) {
  const auto add = [&](int line) {
    AnnotationEditor(file_, AnnotationEditor::Open::createIfMissing).add(annotation_t::task, "t", "f", line, 0);
  };
  EXPECT_EQ(refusalOf([&] { editor().remove(1); }), "expected a file (No such file or directory)");
  EXPECT_EQ(refusalOf([&] { static_cast<void>(editor().list(true)); }), "expected a file (No such file or directory)");
  EXPECT_EQ(refusalOf([&] { add(-1); }), "new site: expected line from 0 to 2147483647");
  EXPECT_FALSE(std::filesystem::exists(file_));

  for (const char* foreign : {"PRAGMA application_id = 7", "CREATE TABLE theirs (x)", "PRAGMA user_version = 3"}) {
    std::filesystem::remove(file_);
    run(foreign);
    const std::string before = support::contentOf(file_);
    EXPECT_NE(refusalOf([&] { add(1); }), "") << foreign;
    EXPECT_TRUE(support::contentOf(file_) == before) << foreign;
  }
  write("annotations.db", "");  // as it stands when a first edit was cut short
  add(1);
  EXPECT_EQ(rows(open().get()), "1 2 t f:1:0");
  run("UPDATE edit SET sequence = 9223372036854775807");
  EXPECT_EQ(refusalOf([&] { add(1); }), "edit: expected room for another sequence");
}

TEST_F(Annotations, AnEditThatWasCutShortIsForAWriterToUndo) {
  makeThree();
  sqlite3* database = nullptr;
  ASSERT_EQ(sqlite3_open(file_.c_str(), &database), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(database, "PRAGMA cache_size = 1; BEGIN; DELETE FROM edit; DELETE FROM state", nullptr,
                         nullptr, nullptr),
            SQLITE_OK);
  ASSERT_EQ(sqlite3_db_cacheflush(database), SQLITE_OK);
  const std::string journal = support::contentOf(path("annotations.db-journal"));
  const std::string cut = support::contentOf(file_);
  sqlite3_close(database);
  write("annotations.db", cut);
  write("annotations.db-journal", journal);
  const std::string want = "expected a database whose last edit was finished (attempt to write a readonly database)";
  EXPECT_EQ(refusalToOpen(), want);
  EXPECT_EQ(refusalOf([&] { static_cast<void>(editor().list(false)); }), want);
  EXPECT_TRUE(support::contentOf(file_) == cut);
  editor().setDisabled(3, true);
  EXPECT_EQ(rows(open().get()), "1 0 a a.cpp:1:0, 2 2 b b.cpp:2:3, 3 18 c c.cpp:3:0 disabled");
}

TEST_F(Annotations, TheScannerHandsOutWhatIsInstalled) {
  makeThree();
  installDatabase(open());
  EXPECT_NE(sitenotes::scanner_t::get()->get_database(), nullptr);
  installDatabase(nullptr);
  EXPECT_EQ(sitenotes::scanner_t::get()->get_database(), nullptr);
  removeScanner();
  EXPECT_EQ(sitenotes::scanner_t::get(), nullptr);
}

}  // namespace
}  // namespace kelvar_platform::test
