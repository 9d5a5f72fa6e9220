/// Reading ahead returns the same as load, without other effects.
#include <chrono>
#include <filesystem>
#include <memory>
#include <thread>

#include "Files.h"
#include "ReadAhead.h"
#include "digestio.h"

namespace kelvar_platform::test {
namespace {

namespace fs = std::filesystem;

/// Waits, for a limited time, until no more threads run than before: a sanitizer may keep its own thread.
class OtherThreads {
 public:
  void wait() const {
    for (int tries = 0; count() > before_ && tries < 500; ++tries)
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }

 private:
  static std::ptrdiff_t count() {
    return std::distance(fs::directory_iterator("/proc/self/task"), fs::directory_iterator());
  }
  const std::ptrdiff_t before_ = count();
};

class ReadingAhead : public Files {
 protected:
  ReadingAhead() {
    for (const char* name : {"a", "b", "c"}) add(name, "null");
  }

  /// A result that is large enough to be read ahead, with one detail.
  void add(const std::string& name, const std::string& extra) const {
    write(name + "/collection.json", R"({"formatVersion":1,"dataKind":"map","details":[{"label":")" + name + "\"," +
                                         R"("extra":)" + extra + "}]}" + std::string(std::size_t{2} << 20, ' '));
  }
  [[nodiscard]] std::unique_ptr<ReadAhead> ahead(const std::string& names) const {
    std::vector<std::string> paths;
    for (const char name : names) paths.push_back(path(std::string(1, name)));
    const OtherThreads others;
    auto ahead = std::make_unique<ReadAhead>(paths);
    others.wait();
    return ahead;
  }
  /// The label of the detail, or the refusal.
  [[nodiscard]] std::string loaded(const std::string& name) const {
    const std::unique_ptr<digestio::SummaryCollection> collection(digestio::SummaryCollection::load(path(name)));
    return collection ? collection->detail(0)->label() : refusal();
  }
};

constexpr const char* kGone = "a/collection.json: expected a file that can be read (No such file or directory)";

TEST_F(ReadingAhead, WhatWasReadIsHandedOutOnceAndOnThisThread) {
  const auto ahead = this->ahead("ab");
  fs::remove(path("a/collection.json"));
  std::string elsewhere;
  std::thread([&] { elsewhere = loaded("a"); }).join();
  EXPECT_EQ(elsewhere, kGone);
  EXPECT_EQ(loaded("a"), "a");
  EXPECT_EQ(loaded("a"), kGone);
  EXPECT_EQ(loaded("b"), "b");
}

TEST_F(ReadingAhead, AnyOrderOfQuestionsHasItsAnswers) {
  for (const char* asked : {"abc", "cba", "bb", "ca", "xab", "aab", "c", ""}) {
    const auto ahead = this->ahead("abac");
    for (const char name : std::string(asked)) {
      const std::string text(1, name);
      EXPECT_EQ(loaded(text).substr(0, 1), text) << asked;
    }
  }
  EXPECT_EQ(refusal(), "");
}

TEST_F(ReadingAhead, ARefusalIsNotedWhenItsResultIsAskedFor) {
  add("b", "nul");
  fs::remove(path("c/collection.json"));
  add("d", "1]");
  const std::string refusedB = loaded("b");
  const auto ahead = this->ahead("bcda");
  EXPECT_EQ(refusal(), "");
  EXPECT_EQ(loaded("b"), refusedB);
  EXPECT_EQ(loaded("c"), "c" + std::string(kGone).substr(1));
  EXPECT_EQ(loaded("a"), "a");  // d is never loaded, so its fault is not reported
  EXPECT_EQ(refusal(), "");
}

}  // namespace
}  // namespace kelvar_platform::test
