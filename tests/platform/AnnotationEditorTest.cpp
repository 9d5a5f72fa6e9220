#include <functional>

#include "AnnotationFile.h"

namespace kelvar_platform::test {
namespace {

using AnnotationEditing = AnnotationFile;
using sitenotes::annotation_t;

TEST_F(AnnotationEditing, WhatIsWrittenIsReadBack) {
  makeThree();
  AnnotationEditor editing = editor();
  const std::string odd("zero\0byte \xC3\xA9", 12);
  editing.relabel(1, odd);
  editing.setDisabled(2, true);
  editing.move(2, "/new/d.cpp", 2147483647, 9);
  editing.setDisabled(2, false);
  editing.remove(3);
  EXPECT_EQ(editing.add(annotation_t::flush, "", "", 0, 0), 4);
  EXPECT_EQ(rows(openAnnotationDatabase(path_).get()),
            "1 0 " + odd + " a.cpp:1:0, 2 2 b d.cpp:2147483647:9, 3 dead, 4 16  :0:0");
  EXPECT_TRUE(openAnnotationDatabase(path_)->get_latest_annotation(4)->get_locator().is_null());

  EXPECT_EQ(editing.list(false).size(), 3U);
  const std::vector<Site> all = editing.list(true);
  ASSERT_EQ(all.size(), 4U);
  EXPECT_EQ(all[2].label + (all[2].alive ? " alive" : " dead"), "c dead");
}

TEST_F(AnnotationEditing, ASnapshotIsOfTheNewestRevision) {
  makeThree();
  AnnotationEditor editing = editor();
  editing.remove(1);
  editing.snapshot(folder_ + "/./survey/");
  editing.remove(2);
  const auto state = openAnnotationDatabase(path_)->get_state(folder_ + "/survey");
  EXPECT_EQ(rows(state.get()), "1 dead, 2 2 b b.cpp:2:3, 3 18 c c.cpp:3:0");
}

TEST_F(AnnotationEditing, ARefusedEditLeavesTheFileAsItWas) {
  makeThree();
  AnnotationEditor editing = editor();
  editing.remove(3);
  const std::string before = contents();
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
  for (const auto& [edit, want] : edits) EXPECT_EQ(refusal(edit), want);
  EXPECT_TRUE(contents() == before);
}

TEST_F(AnnotationEditing, OnlyAnAddMakesAFileAndNeverOutOfAnothers) {
  const auto open = [&] { (void)editor(); };
  const auto add = [&](int line) {
    AnnotationEditor(path_, AnnotationEditor::Open::createIfMissing).add(annotation_t::task, "t", "f", line, 0);
  };
  EXPECT_EQ(refusal(open), "expected a file (No such file or directory)");
  EXPECT_EQ(refusal([&] { add(-1); }), "new site: expected line from 0 to 2147483647");
  EXPECT_FALSE(std::filesystem::exists(path_));

  for (const char* foreign : {"PRAGMA application_id = 7", "CREATE TABLE theirs (x)", "PRAGMA user_version = 3"}) {
    std::filesystem::remove(path_);
    run(foreign);
    const std::string before = contents();
    EXPECT_NE(refusal([&] { add(1); }), "") << foreign;
    EXPECT_TRUE(contents() == before) << foreign;
  }
  std::ofstream(path_, std::ios::trunc) << "";  // as it stands when a first edit was cut short
  add(1);
  EXPECT_EQ(rows(openAnnotationDatabase(path_).get()), "1 2 t f:1:0");
  run("UPDATE edit SET sequence = 9223372036854775807");
  EXPECT_EQ(refusal([&] { add(1); }), "edit: expected room for another sequence");
}

TEST_F(AnnotationEditing, ALockThatStaysIsRefusedInTheEnd) {
  makeThree();
  sqlite3* other = nullptr;
  ASSERT_EQ(sqlite3_open(path_.c_str(), &other), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(other, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
  EXPECT_NE(refusal([&] { (void)openAnnotationDatabase(path_); }).find("that nobody keeps locked"), std::string::npos);
  sqlite3_close(other);
  EXPECT_EQ(refusal([&] { (void)openAnnotationDatabase(path_); }), "");
}

}  // namespace
}  // namespace kelvar_platform::test
