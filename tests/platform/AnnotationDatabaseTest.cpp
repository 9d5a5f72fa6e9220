#include <atomic>
#include <fstream>
#include <thread>

#include "AnnotationFile.h"

namespace kelvar_platform::test {
namespace {

using AnnotationDatabase = AnnotationFile;

const std::string kUnchecked = "PRAGMA ignore_check_constraints = ON; ";
/// Copies have no key, no checks and no strict types.
const std::string kLooseEdit =
    "CREATE TABLE loose AS SELECT * FROM edit; DROP TABLE edit; ALTER TABLE loose RENAME TO edit; ";
const std::string kLooseState =
    "CREATE TABLE loose AS SELECT * FROM state; DROP TABLE state; ALTER TABLE loose RENAME TO state; ";

TEST_F(AnnotationDatabase, OneBadRowMakesTheWholeFileUnreadable) {
  struct Damage {
    std::string sql;
    std::string want;
  };
  const Damage damages[] = {
      {"PRAGMA application_id = 7", "application_id: expected 1802270322, found 7"},
      {"PRAGMA user_version = 2", "user_version: expected 1, found 2"},
      {"DROP TABLE edit", "edit: expected a table of this name"},
      {"DROP TABLE state", "state: expected a table of this name"},
      {"ALTER TABLE edit RENAME TO old; CREATE VIEW edit AS SELECT * FROM old", "edit: expected a table of this name"},
      {"ALTER TABLE edit RENAME COLUMN label TO title", "no such column: label"},
      {"ALTER TABLE edit RENAME COLUMN \"column\" TO col", "no such column: edit.column"},
      {"UPDATE edit SET revision = -4 WHERE revision = 3", "edit, revision -4: expected revision from 1 up"},
      {kUnchecked + "UPDATE edit SET sequence = 0 WHERE revision = 2", "edit, revision 2: expected sequence from 1 up"},
      {kUnchecked + "UPDATE edit SET alive = 2 WHERE revision = 1", "edit, revision 1: expected alive from 0 to 1"},
      {kUnchecked + "UPDATE edit SET disabled = -1 WHERE revision = 3", "revision 3: expected disabled from 0 to 1"},
      {kUnchecked + "UPDATE edit SET kind = 19 WHERE revision = 3", "edit, revision 3: expected kind from 0 to 18"},
      {kUnchecked + "UPDATE edit SET kind = 4294967296", "edit, revision 1: expected kind from 0 to 18"},
      {kUnchecked + "UPDATE edit SET line = 2147483648", "edit, revision 1: expected line from 0 to 2147483647"},
      {kUnchecked + "UPDATE edit SET \"column\" = 4294967297", "revision 1: expected column from 0 to 2147483647"},
      {"UPDATE edit SET label = CAST(x'41ff' AS TEXT)", "edit, revision 1: expected label as UTF-8 text"},
      {"UPDATE edit SET file = CAST(x'eda080' AS TEXT)", "edit, revision 1: expected file as UTF-8 text"},
      {"INSERT INTO edit VALUES (4, 1, 0, 0, 0, CAST(x'c0' AS TEXT), '', 0, 0)", "revision 4: expected label as"},
      {kLooseEdit + "UPDATE edit SET label = NULL WHERE revision = 2",
       "edit, revision 2: expected label as UTF-8 text"},
      {kLooseEdit + "UPDATE edit SET file = x'41' WHERE revision = 2", "edit, revision 2: expected file as UTF-8 text"},
      {kLooseEdit + "UPDATE edit SET alive = 'yes' WHERE revision = 2", "revision 2: expected alive from 0 to 1"},
      {kLooseEdit + "UPDATE edit SET line = 1.5 WHERE revision = 2", "edit, revision 2: expected line from 0 to"},
      {kLooseEdit + "UPDATE edit SET revision = NULL WHERE revision = 2", "edit, row 1: expected revision from 1 up"},
      {kLooseEdit + "UPDATE edit SET revision = 2 WHERE revision = 3", "edit, revision 2: expected one row a revision"},
      {kUnchecked + "UPDATE state SET revision = -1", "state, path \"survey\": expected revision from 0 up"},
      {"INSERT INTO state VALUES (CAST(x'80' AS TEXT), 1)", "state, path \"\\x80\": expected path as UTF-8 text"},
      {kLooseState + "UPDATE state SET path = NULL", "state, row 1: expected path as UTF-8 text"},
      {kLooseState + "UPDATE state SET revision = 'x'", "state, path \"survey\": expected revision from 0 up"},
      {kLooseState + "INSERT INTO state VALUES ('survey', 2)", "state, path \"survey\": expected one row a path"},
  };
  for (const Damage& damage : damages) {
    std::filesystem::remove(path_);
    makeThree();
    run(damage.sql);
    const std::string got = refusal([&] { (void)openAnnotationDatabase(path_); });
    EXPECT_NE(got.find(damage.want), std::string::npos) << damage.sql << "\n  gave: " << got;
  }
}

TEST_F(AnnotationDatabase, WhatIsNoDatabaseIsRefused) {
  const auto open = [&] { (void)openAnnotationDatabase(path_); };
  EXPECT_EQ(refusal(open), "expected a file (No such file or directory)");
  std::filesystem::create_directory(path_);
  EXPECT_EQ(refusal(open), "expected a regular file");
  std::filesystem::remove(path_);
  std::ofstream(path_) << "";
  EXPECT_EQ(refusal(open), "application_id: expected 1802270322, found 0");
  std::ofstream(path_) << std::string(4096, '{');
  EXPECT_EQ(refusal(open), "expected an SQLite 3 database (file is not a database)");

  std::filesystem::remove(path_);
  makeThree();
  const std::string whole = contents();
  for (std::size_t size = 1; size < whole.size(); size += 1021) {
    std::ofstream(path_, std::ios::binary) << whole.substr(0, size);
    EXPECT_NE(refusal(open), "") << "cut to " << size;
  }
  for (std::size_t page = 1; page * 4096 < whole.size(); ++page) {  // whatever a damaged file says, nothing crashes
    std::string damaged = whole;
    for (std::size_t i = 0; i < 64; ++i) damaged[page * 4096 + i] = static_cast<char>(i * 37 + page);
    std::ofstream(path_, std::ios::binary) << damaged;
    (void)refusal(open);
  }
}

/// Of such a table SQLite says that memory ran out, which it did not.
TEST_F(AnnotationDatabase, ATableOfAbsurdSizeIsAFaultOfTheFile) {
  std::filesystem::copy_file(KELVAR_SOURCE_FOLDER "/fuzz/corpus/annotations/absurd-size", path_);
  EXPECT_EQ(refusal([&] { (void)openAnnotationDatabase(path_); }),
            "expected a database that fits into memory (out of memory)");
}

TEST_F(AnnotationDatabase, AStateIsTheDatabaseAsOfItsRevision) {
  makeThree();
  editor().move(2, "/src/b.cpp", 20, 0);
  editor().remove(1);
  editor().setDisabled(3, true);
  run("INSERT INTO state VALUES ('first', 1), ('before', 0), ('ahead', 99), ('', 2), ('/else/where', 5)");
  const auto database = openAnnotationDatabase(path_);
  const std::string newest = "1 dead, 2 2 b b.cpp:20:0, 3 18 c c.cpp:3:0 disabled";
  EXPECT_EQ(rows(database.get()), newest);
  EXPECT_FALSE(database->is_sequence_alive(0) || database->is_sequence_alive(4) ||
               database->get_latest_annotation(-1UL));

  const auto state = [&](const std::string& path) { return rows(database->get_state(path).get()); };
  EXPECT_EQ(state(folder_ + "/survey"), "1 0 a a.cpp:1:0, 2 2 b b.cpp:2:3, 3 18 c c.cpp:3:0");
  EXPECT_EQ(state(folder_ + "/x/.././first/"), "1 0 a a.cpp:1:0");
  EXPECT_EQ(state(folder_ + "/before"), "");
  EXPECT_EQ(state(folder_ + "/ahead"), newest);
  EXPECT_EQ(state("/else/where"), "1 dead, 2 2 b b.cpp:20:0, 3 18 c c.cpp:3:0");
  EXPECT_EQ(state(""), "none");
  EXPECT_EQ(state(folder_ + "/map"), "none");
  EXPECT_EQ(database->get_state(folder_ + "/survey")->get_latest_annotation(3),
            database->get_state(folder_ + "/first/../survey")->get_latest_annotation(3));
  EXPECT_EQ(database->get_state(folder_ + "/ahead")->get_latest_annotation(3), database->get_latest_annotation(3));

  const std::string before = contents();
  EXPECT_EQ(rows(database->make_state("", false).get()), "none");
  EXPECT_EQ(rows(database->make_state(folder_ + "/map", false).get()), newest);
  EXPECT_EQ(state(folder_ + "/map"), newest);
  EXPECT_TRUE(contents() == before);
  EXPECT_EQ(rows(openAnnotationDatabase(path_)->get_state(folder_ + "/map").get()), "none");
}

TEST_F(AnnotationDatabase, SequencesWithGapsAreFoundInAnyOrder) {
  makeThree();
  run("WITH RECURSIVE n(i) AS (VALUES (1) UNION ALL SELECT i + 1 FROM n WHERE i < 300) INSERT INTO edit "
      "(sequence, alive, disabled, kind, label, file, line, \"column\") SELECT 9 + i * i * i, 1, 0, 1, i, '', 0, 0 "
      "FROM n");
  run("UPDATE edit SET sequence = 9223372036854775807 WHERE sequence = 3");
  const auto database = openAnnotationDatabase(path_);
  EXPECT_EQ(database->get_sequences().size(), 303U);
  for (unsigned long i = 300; i >= 1; i -= i % 7 == 0 ? 3 : 1) {
    const unsigned long sequence = 9 + i * i * i;
    ASSERT_TRUE(database->is_sequence_alive(sequence)) << i;
    EXPECT_EQ(database->get_latest_annotation(sequence)->get_label(), std::to_string(i));
    EXPECT_FALSE(database->is_sequence_alive(sequence + 1)) << i;
  }
  EXPECT_EQ(database->get_latest_annotation(9223372036854775807UL)->get_label(), "c");
}

TEST_F(AnnotationDatabase, AReaderSeesOneRevisionWhileAWriterWrites) {
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
    const auto database = openAnnotationDatabase(path_);
    const int first = database->get_latest_annotation(1)->get_locator().get_line();
    const int second = database->get_latest_annotation(2)->get_locator().get_line();
    EXPECT_TRUE(first == second || (first == 1 && second == 2)) << first << ' ' << second;
  } while (!done);
  writer.join();
}

TEST_F(AnnotationDatabase, ManyThreadsMayAskOne) {
  makeThree();
  const auto database = openAnnotationDatabase(path_);
  installDatabase(database);
  std::vector<std::thread> readers;
  for (int reader = 0; reader < 4; ++reader) {
    readers.emplace_back([&, reader] {
      const auto shared = sitenotes::scanner_t::get()->get_database();
      (void)shared->make_state(folder_ + "/map" + std::to_string(reader % 2), false);
      EXPECT_EQ(rows(shared.get()), rows(shared->get_state(folder_ + "/survey").get()));
    });
  }
  for (std::thread& reader : readers) reader.join();
  installDatabase(nullptr);
  EXPECT_EQ(sitenotes::scanner_t::get()->get_database(), nullptr);
  removeScanner();
  EXPECT_EQ(sitenotes::scanner_t::get(), nullptr);
}

}  // namespace
}  // namespace kelvar_platform::test
