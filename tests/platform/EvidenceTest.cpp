#include "Evidence.h"
#include "Files.h"
#include "ResultWriter.h"
#include "support/Cases.h"

namespace kelvar_platform::test {
namespace {

using namespace std::string_literals;

class EvidenceFiles : public Files {};

Evidence share(std::int32_t detail, std::int64_t count) {
  return {.detail = detail, .kind = EvidenceKind::share, .text = "t", .count = count};
}

TEST_F(EvidenceFiles, AreReadAsTheyWereWritten) {
  Evidence race{
      .detail = 12, .kind = EvidenceKind::race, .text = "a \"race\"\n\x01\u00e9\0"s, .object = "bins", .count = 3};
  race.places = {{.role = "write", .file = "/s/a.cpp", .line = 2147483647, .column = 14, .function = "f<int>"},
                 {.file = "b.cpp"}};
  const std::vector<Evidence> all{share(0, 9), share(0, 2), race};
  ResultWriter writer(path("survey"), RunRecord{}, {});
  writer.add(race);
  writer.add(share(0, 2));
  writer.add(share(0, 9));
  writer.finish();
  EXPECT_EQ(readEvidence(path("survey")), all);
  writeEvidence(path("survey"), {race});
  EXPECT_EQ(
      support::contentOf(path("survey/evidence.jsonl")),
      "{\"detail\": 12, \"kind\": \"race\", \"text\": \"a \\\"race\\\"\\n\\u0001\u00e9\\u0000\", \"object\": \"bins\", "
      "\"count\": 3, \"places\": [{\"role\": \"write\", \"file\": \"/s/a.cpp\", \"line\": 2147483647, \"column\": 14, "
      "\"function\": \"f<int>\"}, {\"role\": \"\", \"file\": \"b.cpp\"}]}\n");
  // A result that has none takes the place of one that had some.
  ResultWriter(path("survey"), RunRecord{}, {}).finish();
  EXPECT_TRUE(readEvidence(path("survey")).empty());
  writeEvidence(path("survey"), {race});
  writeEvidence(path("survey"), {});
  EXPECT_FALSE(std::filesystem::exists(path("survey/evidence.jsonl")));
}

TEST_F(EvidenceFiles, KeepTheGreatestCountsOfADetailThatHasTooMany) {
  std::vector<Evidence> many;
  for (std::int64_t count = 1; count <= 70; ++count) many.push_back(share(1, count));
  for (std::int64_t count = 1; count <= 64; ++count) many.push_back(share(0, count));
  writeEvidence(path(""), many);
  const std::vector<Evidence> kept = readEvidence(path(""));
  ASSERT_EQ(kept.size(), 2 * kMostEvidence);
  EXPECT_EQ(kept[63].count, 1);
  EXPECT_EQ(kept[64].count, 70);
  EXPECT_EQ(kept[126].count, 8);
  EXPECT_EQ(kept[127].text, "7 more are left out");
  EXPECT_EQ(kept[127].count, 7);
}

TEST_F(EvidenceFiles, AreRefusedWithTheLineThatIsDamaged) {
  for (const auto& [damage, parts] : support::cases("damages/evidence.txt", 18)) {
    write("evidence.jsonl", "{\"detail\":0,\"kind\":\"share\",\"text\":\"\",\"unknown\":[{}]}\n" + parts[0] + "\n");
    EXPECT_EQ(refused([&] { static_cast<void>(readEvidence(path(""))); }), "evidence.jsonl: " + parts[1]) << damage;
  }
  std::string lines;
  for (std::size_t i = 0; i <= kMostEvidence; ++i) lines += "{\"detail\":7,\"kind\":\"share\",\"text\":\"\"}\n";
  write("evidence.jsonl", lines);
  EXPECT_EQ(refused([&] { static_cast<void>(readEvidence(path(""))); }),
            "evidence.jsonl: line 65: expected at most 64 lines for detail 7");
  write("evidence.jsonl", lines.substr(0, 30));
  EXPECT_EQ(refused([&] { static_cast<void>(readEvidence(path(""))); }),
            "evidence.jsonl: line 1: expected the end of the line");
}

TEST_F(EvidenceFiles, HoldNothingThatCouldNotBeReadBack) {
  const std::pair<Evidence, std::string> cases[] = {
      {{.detail = -1}, "detail: expected an integer from 0 on"},
      {{.text = "\xff"}, "text: expected a text in UTF-8"},
      {{.count = 0}, "count: expected an integer from 1 on"},
      {{.places = {{.file = "a", .line = -2}}}, "line: expected an integer from 0 on"},
      {{.places = {{.file = "\xc0"}}}, "file: expected a text in UTF-8"},
  };
  for (const auto& [evidence, sentence] : cases) {
    EXPECT_EQ(refused([&, one = evidence] { writeEvidence(path(""), {one}); }), "evidence.jsonl: line 1, " + sentence);
  }
  EXPECT_FALSE(std::filesystem::exists(path("evidence.jsonl")));
  EXPECT_EQ(refused([&] { writeEvidence(path("gone"), {share(0, 1)}); }),
            "gone/evidence.jsonl: expected a file that can be written (No such file or directory)");
}

}  // namespace
}  // namespace kelvar_platform::test
