#include <atomic>
#include <fstream>
#include <regex>
#include <thread>

#include "AnnotationFile.h"
#include "support/Damages.h"

namespace kelvar_platform::test {
namespace {

using AnnotationDatabase = AnnotationFile;

TEST_F(AnnotationDatabase, OneBadRowMakesTheWholeFileUnreadable) {
  // A copy of a table has no key, no checks and no strict types.
  const std::regex loose("^loose (\\w+):");
  const char* copied = "CREATE TABLE loose AS SELECT * FROM $1; DROP TABLE $1; ALTER TABLE loose RENAME TO $1;";
  for (const auto& [sql, want] : support::damages("annotations.txt")) {
    std::filesystem::remove(path_);
    makeThree();
    run("PRAGMA ignore_check_constraints = ON; " + std::regex_replace(sql, loose, copied));
    EXPECT_EQ(refusal([&] { (void)openAnnotationDatabase(path_); }), want) << sql;
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
