#include <atomic>
#include <thread>

#include "AnnotationFile.h"
#include "support/Cases.h"

namespace kelvar_platform::test {
namespace {

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
  // For such a table, SQLite reports out of memory, which is not true.
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
