// What becomes of sites when their sources change, and that random edits lose none.
#include <map>
#include <random>
#include <set>

#include "FindAgain.h"
#include "Labels.h"
#include "Renames.h"
#include "RulesFile.h"
#include "Scanned.h"

namespace kelvar_sources::test {
namespace {

/// Files by number, as text; sites of the first lot are looked for in the second.
class Question {
 public:
  void was(std::size_t file, const std::string& source, bool alive = true) {
    for (const FoundSite& site : scanSource(source, Language::c, allRules()).sites) {
      if (!site.isEnd) known.push_back({file, site.line, alive, fingerprintOf(site.kind, site.anchor, numbers)});
    }
  }
  void is(std::size_t file, const std::string& source) {
    for (const FoundSite& site : scanSource(source, Language::c, allRules()).sites) {
      if (!site.isEnd) seen.push_back({file, site.line, fingerprintOf(site.kind, site.anchor, numbers)});
    }
  }
  [[nodiscard]] FindResult ask(const std::vector<std::size_t>& renamed = {0, 1, 2}, bool unchanged = false) const {
    return findAgain(known, seen, renamed, std::vector<bool>(renamed.size(), unchanged));
  }

  /// `OLD>NEW step`, by known site.
  [[nodiscard]] std::string text(const FindResult& result) const {
    std::string out;
    for (std::size_t i = 0; i < known.size(); ++i) {
      const auto& [index, step, ambiguous] = result.known[i];
      out += (out.empty() ? "" : ", ") + std::to_string(known[i].line) + '>';
      out += index == FindResult::kNone ? (ambiguous ? "?" : "-")
                                        : std::to_string(seen[index].line) + ' ' + std::string(nameOf(step));
    }
    return out;
  }

  TextNumbers numbers;
  std::vector<KnownSite> known;
  std::vector<SeenSite> seen;
};

const std::string kBarrier = "#pragma omp barrier\n";

std::string function(const std::string& name, const std::string& body) {
  return "void " + name + "() {\n" + body + "}\n";
}

TEST(FindAgain, EachStepDecidesWhatTheOnesBeforeLeft) {
  const std::string site = "a = 1;\n" + kBarrier + "b = 2;\nc = 3;\n";
  const struct {
    std::string was;
    std::string is;
    const char* want;
  } rows[] = {
      {function("f", site), function("f", site), "3>3 full-key"},
      {function("f", site), "\n" + function("f", site), "3>4 full-key"},
      {function("f", site), function("f", "x();\ny();\na2();\n" + kBarrier + "b = 2;\nc = 3;\n"),
       "3>5 key-without-before"},
      {function("f", site), "\n" + function("renamed", site), "3>4 text-and-after"},
      {function("f", site), function("f", "a = 1;\n" + kBarrier + "b = 2;\nd = 3;\n"), "3>3 alignment"},
      {function("f", site), function("g", "x();\n" + kBarrier + "y();\n"), "3>-"},
      // Elsewhere nothing tells which is new: both stay, and are named.
      {"\n\n\n\n\n\n\n\n\n" + function("f", kBarrier + kBarrier + kBarrier + kBarrier + kBarrier + kBarrier + kBarrier),
       function("f", kBarrier + kBarrier + kBarrier + kBarrier + kBarrier + kBarrier + kBarrier + kBarrier),
       "11>2 full-key, 12>3 full-key, 13>4 full-key, 14>?, 15>7 full-key, 16>8 full-key, 17>9 full-key"},
      // A twin that comes before is another site.
      {function("f", site) + function("g", site), function("h", kBarrier) + function("f", site) + function("g", site),
       "3>6 key-without-before, 9>12 full-key"},
      // Two alike that become three on lines of theirs: the first two are they.
      {function("f", kBarrier + kBarrier + kBarrier + kBarrier + kBarrier + kBarrier + kBarrier + kBarrier),
       "\n" + function("f", kBarrier + kBarrier + kBarrier + kBarrier + kBarrier + kBarrier + kBarrier + kBarrier +
                                kBarrier),
       "2>3 full-key, 3>4 full-key, 4>5 full-key, 5>6 alignment, 6>7 alignment, 7>9 full-key, 8>10 full-key, 9>11 "
       "full-key"},
  };
  for (const auto& [was, is, want] : rows) {
    Question question;
    question.was(0, was);
    question.is(0, is);
    EXPECT_EQ(question.text(question.ask()), want) << is;
  }
}

TEST(FindAgain, SitesGoToOtherFilesAndComeBackFromTheDead) {
  const std::string f = function("f", "x = 1;\n" + kBarrier + "y = 2;\n");
  Question moved;
  moved.was(0, f);
  moved.is(1, "\n" + f);
  EXPECT_EQ(moved.text(moved.ask()), "3>4 elsewhere");
  EXPECT_EQ(moved.text(moved.ask({1, 1, 2})), "3>4 full-key");
  EXPECT_EQ(renamedFiles(moved.known, moved.seen, {false, true, true}, {0, 1, 2}), (std::vector<std::size_t>{1, 1, 2}));
  EXPECT_EQ(renamedFiles(moved.known, moved.seen, {true, true, true}, {0, 1, 2}), (std::vector<std::size_t>{0, 1, 2}));
  Question dead;
  dead.was(0, f, false);
  dead.is(2, f);
  EXPECT_EQ(dead.text(dead.ask()), "3>3 dead-site");
}

/// Takes lines away, doubles, swaps and changes some.
std::string edited(const std::string& source, std::mt19937& random) {
  std::vector<std::string> lines;
  for (std::size_t at = 0; at < source.size();) {
    const std::size_t end = std::min(source.find('\n', at), source.size());
    lines.push_back(source.substr(at, end - at));
    at = end + 1;
  }
  for (int i = 0; i < 4 && !lines.empty(); ++i) {
    const auto at = static_cast<std::ptrdiff_t>(random() % lines.size());
    switch (random() % 4) {
      case 0:
        lines.erase(lines.begin() + at);
        break;
      case 1: {
        const std::string line = lines[random() % lines.size()];
        lines.insert(lines.begin() + at, line);
        break;
      }
      case 2:
        std::swap(lines[static_cast<std::size_t>(at)], lines[random() % lines.size()]);
        break;
      default:
        lines[static_cast<std::size_t>(at)] += " /**/ + 1;";
    }
  }
  std::string out;
  for (const std::string& line : lines) out += line + '\n';
  return out;
}

std::string randomSource(std::mt19937& random) {
  const std::string pieces[] = {
      "#pragma omp barrier\n", "#pragma omp flush\n", "x = 1;\n", "y = 2;\n", "if (a) {\n", "}\n",
      "void f() {\n",          "void g() {\n",        "\n",       "// c\n"};
  std::string source;
  for (int i = 0; i < 30; ++i) source += pieces[random() % std::size(pieces)];
  return source;
}

TEST(FindAgain, AskedAgainOfItsAnswerItChangesNothing) {
  for (unsigned seed = 0; seed < 2000; ++seed) {
    std::mt19937 random(seed);
    const std::string was = randomSource(random);
    Question first;
    first.was(0, was);
    first.was(1, randomSource(random), false);
    first.is(0, edited(was, random));
    first.is(2, seed % 3 == 0 ? edited(was, random) : std::string());
    const FindResult result = first.ask();
    Question second = first;
    second.known.clear();
    std::set<std::size_t> taken;
    std::vector<std::size_t> want;
    const auto keep = [&](const SeenSite& site, std::size_t index) {
      second.known.push_back({site.file, site.line, true, site.print});
      want.push_back(index);
    };
    for (std::size_t i = 0; i < first.known.size(); ++i) {
      const std::size_t index = result.known[i].seen;
      if (index != FindResult::kNone) {
        EXPECT_TRUE(taken.insert(index).second) << "seed " << seed;
      } else {  // an ambiguous one stays, the others die
        second.known.push_back(first.known[i]);
        second.known.back().alive = result.known[i].ambiguous;
        want.push_back(FindResult::kNone);
      }
    }
    for (std::size_t i = 0; i < first.seen.size(); ++i) {
      if (taken.count(i) != 0 || !result.contested[i]) keep(first.seen[i], i);
    }
    std::vector<std::size_t> order(second.known.size());
    for (std::size_t i = 0; i < order.size(); ++i) order[i] = i;
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
      return std::pair(second.known[a].file, second.known[a].line) <
             std::pair(second.known[b].file, second.known[b].line);
    });
    Question sorted = second;
    for (std::size_t i = 0; i < order.size(); ++i) sorted.known[i] = second.known[order[i]];
    const FindResult again = sorted.ask({0, 1, 2}, true);
    for (std::size_t i = 0; i < order.size(); ++i) EXPECT_EQ(again.known[i].seen, want[order[i]]) << "seed " << seed;
  }
}

TEST(Labels, TheSmallestNumberThatIsFree) {
  Labels labels;
  labels.take(sitenotes::annotation_t::parallel, "f: parallel 2");
  EXPECT_EQ(labels.give(sitenotes::annotation_t::parallel, "f", "a.c"), "f: parallel");
  EXPECT_EQ(labels.give(sitenotes::annotation_t::parallel, "f", "a.c"), "f: parallel 3");
  EXPECT_EQ(labels.give(sitenotes::annotation_t::barrier, "", "a.c"), "a.c: barrier");
}

TEST(RulesFile, AProjectsOwnMarkersAreLikeOurs) {
  const std::string text =
      "rules:\n- {name: loop, pattern: MY_LOOP(, kind: end-task, label: literal 2, end: until MY_END}\n"
      "- {name: mine, pattern: '#pragma my region', kind: parallel, end: statement}\n";
  std::vector<Rule> rules = rulesIn(text, builtInRules());
  const RuleSet set(rules);
  EXPECT_EQ(rows(scanSource("void f() {\nMY_LOOP(1, \"x\") ;\n#pragma my region x\n;\n}", Language::c, set)),
            "2 end task 'x' in f\n3 parallel in f to 4\n");
  const struct {
    const char* text;
    const char* want;
  } damages[] = {
      {"a: [", "line 2: expected YAML (did not find expected node content)"},
      {"", "line 1: expected a list under 'rules'"},
      {"rules: 1", "line 1: expected a list under 'rules'"},
      {"- {name: a, pattern: F(}", "line 1: expected a rule with 'kind'"},
      {"- {name: a b, pattern: F(, kind: task}", "line 1: expected name: a name without blanks"},
      {"- {name: omp-task, pattern: F(, kind: task}", "line 1: expected a name that no other rule has, not 'omp-task'"},
      {"- {name: a, pattern: F(, kind: task, end: never}",
       "line 1: expected end: 'none', 'statement', 'call', 'block', 'until NAME' or 'handle NAME'"},
      {"- {name: a, colour: F}", "line 1: expected name, pattern, kind, label, end or on-request, not 'colour'"},
      {"- {name: a, name: b}", "line 1: expected 'name' once in a rule"},
  };
  for (const auto& [damage, want] : damages) {
    std::string said;
    try {
      static_cast<void>(rulesIn(damage, builtInRules()));
    } catch (const RulesError& error) {
      said = error.what();
    }
    EXPECT_EQ(said, want) << damage;
  }
}

}  // namespace
}  // namespace kelvar_sources::test
