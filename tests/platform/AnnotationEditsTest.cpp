#include <functional>

#include "AnnotationFile.h"

namespace kelvar_platform::test {
namespace {

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
        std::string("a//map"), std::string("../map"), std::string("/else/"), std::string("/a/./b")}) {
    makeThree();
    run("INSERT INTO state VALUES ('" + name + "', 1)");
    EXPECT_EQ(refusalToOpen(), "state, path \"" + name +
                                   "\": expected path without ., .. or a trailing slash, absolute "
                                   "where it does not lie below the database's folder");
  }
}

TEST_F(Annotations, WhatWasRecordedWithoutALinkIsFoundThroughIt) {
  makeThree();
  std::filesystem::create_directory(path("real"));
  std::filesystem::rename(file_, path("real/annotations.db"));
  std::filesystem::create_directory_symlink(path("real"), path("link"));
  AnnotationEditor(path("real/annotations.db"), AnnotationEditor::Open::existing).snapshot(path("link/survey"));
  const auto database = openAnnotationDatabase(path("link/annotations.db"));
  EXPECT_EQ(rows(database->get_state(path("link/survey")).get()), rows(database.get()));
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
  write("annotations.db", "");  // as after an interrupted first edit
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

}  // namespace
}  // namespace kelvar_platform::test
