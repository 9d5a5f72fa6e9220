#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "Sources.h"
#include "support/Scratch.h"

namespace kelvar_page {
namespace {

namespace fs = std::filesystem;

TEST(Sources, NothingOutsideOfTheRootIsOpened) {
  const support::Scratch scratch;
  const fs::path root = scratch.path() / "root";
  fs::create_directories(root / "src");
  std::ofstream(root / "src" / "a.cpp") << "one\r\ntwo";
  std::ofstream(scratch.path() / "secret") << "secret";
  fs::create_symlink(scratch.path() / "secret", root / "out");
  fs::create_directory_symlink(scratch.path(), root / "up");
  fs::create_symlink(root / "src" / "a.cpp", root / "in");

  const Sources sources(root.string());
  const auto read = [&](const std::string& file) {
    const auto* const lines = sources.linesOf(file);
    std::string text = lines ? "" : "none";
    for (std::size_t at = 0; lines && at < lines->size(); ++at) text += (at ? "|" : "") + (*lines)[at];
    return text;
  };
  struct Case {
    std::string file;
    const char* want;
  };
  for (const auto& [file, want] : {Case{"src/a.cpp", "one|two"},
                                   {"/build/of/someone/src/a.cpp", "one|two"},
                                   {"a.cpp", "none"},
                                   {"in", "one|two"},
                                   {(root / "src/a.cpp").string(), "one|two"},
                                   {"./src/../src/a.cpp", "one|two"},
                                   {"../secret", "none"},
                                   {"src/../../secret", "none"},
                                   {(scratch.path() / "secret").string(), "none"},
                                   {"out", "none"},
                                   {"up/secret", "none"},
                                   {"/x/up/secret", "none"},
                                   {"src", "none"},
                                   {"", "none"},
                                   {"/", "none"},
                                   {std::string("src/a.cpp\0", 10), "none"},
                                   {"/etc/passwd", "none"}}) {
    EXPECT_EQ(read(file), want) << file;
  }
  EXPECT_EQ(Sources((scratch.path() / "missing").string()).linesOf("src/a.cpp"), nullptr);
}

}  // namespace
}  // namespace kelvar_page
