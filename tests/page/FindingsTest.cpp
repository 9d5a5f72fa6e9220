#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Findings.h"
#include "Sources.h"

namespace kelvar_page {
namespace {

Site parallel(const std::string& label, double gain, std::int64_t races) {
  Site site;
  site.label = label;
  site.current = true;
  site.gain = gain;
  site.cores = 8;
  site.races = races;
  return site;
}

/// The sentences on these rows, each after its rule.
std::vector<std::string> sentencesOn(const std::vector<Site>& rows) {
  const kelvar::SummaryData none{boost::shared_ptr<sitenotes::database_t>()};
  Findings findings;
  for (const Site& row : rows) findings.look(row);
  std::vector<std::string> sentences;
  const Overview overview(none);
  for (const Finding& finding : findings.sentences({overview, EvidenceIndex(), Sources(std::string()), TimeUnits()})) {
    sentences.push_back(finding.rule + ": " + finding.sentence);
  }
  return sentences;
}

using Sentences = std::vector<std::string>;

TEST(Findings, BeginWithTheGreatestGainThatDoesNotRace) {
  EXPECT_EQ(sentencesOn({parallel("racy", 7, 2), parallel("second", 1.2, 0), parallel("first", 3, 0)}),
            (Sentences{
                "begin: Begin with 'first' (?): is said to make the program 3.00x as fast on 8 cores, and has no race.",
                "race: 'racy' (?) is said to gain 7.00x, but has 2 races: mend that before it runs in parallel."}));
}

TEST(Findings, ARaceIsNamedWhereNothingGains) {
  EXPECT_EQ(sentencesOn({parallel("idle", 1.04, 0), parallel("racy", 1.04, 1), parallel("too", 1.02, 1)}),
            Sentences{"race: 'racy' (?) has 1 race: mend that before it runs in parallel. 1 other site has races as "
                      "well."});
}

TEST(Findings, CountTheOthersThatARuleHoldsFor) {
  Site vector = parallel("vector", 1, 1);
  vector.vectorised = Vectorised::partly;
  EXPECT_EQ(
      sentencesOn({vector, vector, vector}),
      Sentences{"conflict: 'vector' (?) is vectorised, yet has 1 race: one of the two results is of another build, "
                "or the vector code races. The same holds for 2 other sites."});
}

TEST(Findings, TimesThatDifferByMoreThanHalfAreAConflictOnlyWhereTheyMatter) {
  Site site = parallel("twice", 1, 0);
  site.surveyTime = 3;
  site.suitabilityTime = 1;
  EXPECT_EQ(sentencesOn({site}), Sentences{});  // no share of the whole is known
}

TEST(Findings, AnEndIsNoRow) {
  Site end = parallel("end", 9, 0);
  end.kind = sitenotes::annotation_t::end_parallel;
  EXPECT_EQ(sentencesOn({end}), Sentences{});
}

}  // namespace
}  // namespace kelvar_page
