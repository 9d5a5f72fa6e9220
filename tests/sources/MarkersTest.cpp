// What is found in sources: each row a piece of code and the sites in it.
#include "Scanned.h"

namespace kelvar_sources::test {
namespace {

struct Row {
  const char* code;
  const char* want;
};

void expectAll(std::initializer_list<Row> table, Language language = Language::c) {
  for (const Row& row : table) EXPECT_EQ(rows(row.code, language), row.want) << row.code;
}

TEST(Markers, DirectivesBelongToTheNextStatement) {
  expectAll({
      {"void f() {\n#pragma omp parallel for\nfor (;;)\nif (a)\nb();\nelse\nc();\nd();\n}", "2 parallel in f to 7\n"},
      {"void f() {\n#pragma omp parallel\n#pragma omp for\nfor (;;) {\n}\n}", "2 parallel in f to 5\n1 omp for\n"},
      {"void f() {\n# pragma  omp \\\n parallel \\\n if (x) // {\n{\n}\n}", "2 parallel in f to 6\n"},
      {"void f() {\n#pragma omp task\ndo x();\nwhile (y);\nz();\n}", "2 task in f to 4\n"},
      {"void f() {\n#pragma omp parallel\ntry {\n} catch (A) {\n} catch (B) {\n}\n}", "2 parallel in f to 6\n"},
      {"void f() {\n#pragma omp parallel\nLOOP(i, n) {\n}\ng();\n}", "2 parallel in f to 4\n"},
      {"void f() {\n#pragma omp parallel\nauto g = [&] {\n;\n};\n}", "2 parallel in f to 5\n"},
      {"void f() {\n_Pragma(\"omp critical(sum)\") { ++x;\n}\n}", "2 critical 'sum' in f to 3\n"},
      {"void f() {\n#pragma omp parallel\n}", "2 parallel in f to ?\n"},
      {"#pragma omp target teams distribute parallel for\nfor (;;);\n", "1 parallel to 2\n1 teams\n"},
      {"#pragma omp barrier\n#pragma omp taskwait\n#pragma omp flush(a)\n#pragma omp ordered\n#pragma omp atomic\n",
       "1 barrier\n2 taskwait\n3 flush\n4 ordered\n5 atomic\n"},
      // Clauses and other directives that have such words.
      {"#pragma omp for ordered\n#pragma omp cancel parallel\n#pragma omp simd\n#pragma once\n",
       "1 omp cancel\n1 omp for\n1 omp simd\n"},
      {"#pragma acc kernels loop\nfor (;;);\n#pragma acc data copy(a)\n", "1 parallel to 2\n1 acc data\n"},
  });
}

TEST(Markers, WhatNobodyCompilesIsNone) {
  expectAll({
      {"// #pragma omp barrier\n/*\n#pragma omp barrier\n*/\n", ""},
      {"auto s = \"\\\"\n#pragma omp barrier\n\";", "2 barrier\n"},  // the text ends with its line
      {"auto s = R\"x(\n#pragma omp barrier\n)\" )x\";\n#pragma omp flush\n", "4 flush\n"},
      {"// a \\\n#pragma omp barrier\n#pragma omp flush\n", "3 flush\n"},
      {"#if 0\n#pragma omp barrier\n#else\n#pragma omp flush\n#endif\n", "4 flush\n"},
      {"#if 1\n#pragma omp flush\n#elif X\n#pragma omp barrier\n#endif\n", "2 flush\n"},
      {"#if 0\n#if A\n#else\n#pragma omp barrier\n#endif\n#pragma omp barrier\n#endif\n", ""},
      {"#define CALI_MARK_BEGIN(x) \\\n CALI_MARK_BEGIN(y)\n#define F _Pragma(\"omp barrier\")\n", ""},
      {"void nvtxRangePush(const char*);\nint n = 1'000'000;\n", ""},
  });
}

TEST(Markers, OfUnbalancedBranchesTheFirstCounts) {
  expectAll({
      {"void f() {\n#ifdef A\nif (x) {\n#else\nif (y) {\n#endif\n}\n}\nvoid g() {\n#pragma omp barrier\n}",
       "10 barrier in g\n"},
      {"void f() {\n#ifdef A\n#pragma omp parallel for\n#else\n#pragma omp parallel\n#endif\nfor (;;) {\n}\n}",
       "3 parallel in f to 8\n5 parallel in f to 8\n"},
      {"#ifdef A\nint f(int a) {\n#else\nint f() {\n#endif\n#pragma omp barrier\n}", "6 barrier in f\n"},
  });
}

TEST(Markers, FunctionsAreNamedAsTheirDefinitionsAre) {
  const std::string barrier = "\n#pragma omp barrier\n}";
  const struct {
    const char* head;
    const char* want;
  } heads[] = {
      {"template <class T = A<int>> auto N::C<T>::f(int (*g)(int)) const noexcept -> int {", "N::C<T>::f"},
      {"namespace n { class A : B<C> { ~A() {", "A::~A"},
      {"A::A(int x) : a{x}, b(y), c{1, 2} {", "A::A"},
      {"struct A { bool operator()(int x) const {", "A::operator()"},
      {"__attribute__((noinline)) static int f(void) {", "f"},
      {"TEST(Suite, Name) {", "TEST(Suite, Name)"},
      {"extern \"C\" { void f() { for (;;) { auto g = [](int x) {", "f"},
      {"int table[] = {1, 2}; int f() {", "f"},
      {"class A { public: explicit A(int x) {", "A::A"},
      {"API(int) f(int x) {", "f"},
  };
  for (const auto& [head, want] : heads) {
    EXPECT_EQ(rows(head + barrier), std::string("2 barrier in ") + want + "\n") << head;
  }
}

TEST(Markers, CallsAndScopesHaveLabelsAndEnds) {
  expectAll({
      {"void f() {\nKokkos::parallel_for(\"a\" \"b\", n,\n[=](int i) {\n});\n}", "2 parallel 'ab' in f to 4\n"},
      {"void f() {\nKokkos::parallel_reduce(n, g, sum);\n}", "2 parallel in f to 2\n"},
      {"void f() {\nRAJA::forall<P<int>>(r, [=](int i) {\n});\n}", "2 parallel in f to 3\n"},
      {"void f() {\noneapi::tbb::parallel_for(a,\nb); x.parallel_for(c);\n}", "2 parallel in f to 3\n"},
      {"void f() {\nstd::for_each(std::execution::par,\na, b);\n}", "2 parallel in f to 3\n"},
      {"void f() {\nCALI_CXX_MARK_FUNCTION;\ng();\n}", "2 parallel in f to 4\n"},
      {"void f() {\nKokkos::Profiling::ScopedRegion r(\"x\");\n}", "2 parallel 'x' in f to 3\n"},
      {"void f() {\nLIKWID_MARKER_START(\"a\");\nLIKWID_MARKER_START(\"b\");\nLIKWID_MARKER_STOP(\"a\");\n"
       "LIKWID_MARKER_STOP(\"b\");\n}",
       "2 parallel 'a' in f to 4\n3 parallel 'b' in f to 5\n"},
      {"void f() {\nnvtxRangePush(\"a\");\nif (x) {\nnvtxRangePop();\nreturn;\n}\nnvtxRangePop();\n}",
       "2 parallel 'a' in f to 7\n"},
      {"void f() {\nSCOREP_USER_REGION_BEGIN(h, \"x\", 0)\nSCOREP_USER_REGION_BEGIN(k, \"y\", 0)\n"
       "SCOREP_USER_REGION_END(h)\nSCOREP_USER_REGION_END(k)\n}",
       "2 parallel 'x' in f to 4\n3 parallel 'y' in f to 5\n"},
      {"void f() {\nPAPI_hl_region_begin(\"x\");\n}", "2 parallel 'x' in f to ?\n"},
      {"void f() {\nCALLGRIND_STOP_INSTRUMENTATION;\nCALLGRIND_START_INSTRUMENTATION;\n}",
       "2 pause in f\n3 resume in f\n"},
  });
}

TEST(Markers, CommentsOfOursMarkPlainCode) {
  expectAll({
      {"void f() {\nfor (;;) {  // kelvar: parallel \"a\"\n}\n}", "2 parallel 'a' in f to 3\n"},
      {"void f() {\n// kelvar: parallel \"a\"\n/* kelvar: task \"b\" */ x(); // kelvar: end \"b\"\n// kelvar: end "
       "\"a\"\n}",
       "2 parallel 'a' in f to 4\n3 task 'b' in f to 3\n"},
      {"// kelvar: critical\n// kelvar: odd\n", "1 critical to ?\n1 kelvar: odd\n"},
  });
}

TEST(Markers, FortranHasSentinels) {
  expectAll({{"subroutine s(a)\n!$OMP PARALLEL DO &\n!$omp& private(i)\ndo i = 1, n\na(i) = 1\nend do\nend\n",
              "2 parallel in s to 6\n"},
             {"program p\n!$omp parallel\nx = \"!$omp barrier\"\n!$omp barrier\n!$omp end parallel\nend program\n",
              "2 parallel in p to 5\n4 barrier in p\n"},
             {"pure real(8) function f(x)\n!$omp critical (sum)\ny = 1\n!$omp end critical (sum)\nend function f\n",
              "2 critical 'sum' in f to 4\n"},
             {"call likwid_markerstartregion('a')\ncall likwid_markerstopregion('a')\n", "1 parallel 'a' to 2\n"},
             {"do i = 1, 2 ! x\n! kelvar: parallel \"a\"\nenddo\n", "2 parallel 'a' to 3\n"}},
            Language::freeFortran);
  expectAll(
      {{"      subroutine s\nc$omp parallel do\nc$omp+private(i)\n      do 10 i = 1, n\n   10 continue\n      end\n",
        "2 parallel in s to 5\n"}},
      Language::fixedFortran);
}

TEST(Markers, BrokenCodeEndsNothing) {
  const std::string deep(200'000, '{');
  EXPECT_EQ(rows("#pragma omp parallel\n" + deep), "1 parallel to ?\n");
  EXPECT_EQ(rows(deep + "\n#pragma omp barrier\n"), "2 barrier\n");
  // What is deeper than anybody nests is counted, so that the code behind it is told apart again.
  EXPECT_EQ(rows("void f() {\n#pragma omp parallel\n" + deep + std::string(200'000, '}') +
                 "\n}\nvoid g() {\n#pragma omp barrier\n}\n"),
            "2 parallel in f to 3\n6 barrier in g\n");
  std::string branches;
  for (int i = 0; i < 50'000; ++i) branches += "#if A\n{\n#else\n(\n";
  EXPECT_EQ(rows(branches + "#pragma omp barrier\n"), "200001 barrier\n");
  for (const char* cut :
       {"R\"(", "R\"", "\"", "'", "/*", "#", "#pragma", "#if", "_Pragma(", "#pragma omp", "\\", "// kelvar:"}) {
    EXPECT_EQ(rows(std::string("#pragma omp barrier\n") + cut).substr(0, 10), "1 barrier\n") << cut;
  }
}

TEST(Markers, AnchorsHoldWhatIsAroundASite) {
  const FileSites file = scanSource(
      "int a;\nint b;\n\nvoid f() {\n  int  c;  // c\n  // no code\n#pragma   omp \\\n   barrier\n  }\nint d;\nint "
      "\xFF;\n",
      Language::c, allRules());
  ASSERT_EQ(file.sites.size(), 1U);
  const Anchor want{.rule = "omp-barrier",
                    .text = "#pragma omp barrier",
                    .function = "f",
                    .before = "int b;\nvoid f() {\nint c; // c",
                    .after = "int d;\nint \xEF\xBF\xBD;",
                    .label = ""};
  EXPECT_EQ(file.sites[0].anchor, want);
  EXPECT_EQ(file.lines, 11);
}

TEST(Markers, EndsOfFortransBlocksAreNoAnchors) {
  const FileSites file = scanSource(
      "subroutine s\nif (a) then\nb = 1\nelse\nenddo ; end do\n!$omp barrier\nEND IF\n10 continue\nelse if (c) then\n"
      "end do ; d = 1\nelse where\ndo i = 1, 2\nend subroutine\n",
      Language::freeFortran, allRules());
  ASSERT_EQ(file.sites.size(), 1U);
  EXPECT_EQ(file.sites[0].anchor.before, "subroutine s\nif (a) then\nb = 1");
  EXPECT_EQ(file.sites[0].anchor.after, "else if (c) then\nend do ; d = 1\ndo i = 1, 2");
}

TEST(Markers, ATextWithoutFirstWordsIsNotLexed) {
  const FirstWords& words = allRules().firstWords();
  EXPECT_FALSE(words.anyIn("#pragma once\nint parallel; std::vector<int> kelvar;"));
  for (const Rule& rule : builtInRules()) {
    const std::string pattern = patternText(rule);
    const std::string word = rule.form == Form::argument ? rule.pattern : pattern;
    EXPECT_TRUE(words.anyIn(word)) << word;
    EXPECT_TRUE(words.anyIn("12345" + word)) << word;
  }
}

}  // namespace
}  // namespace kelvar_sources::test
