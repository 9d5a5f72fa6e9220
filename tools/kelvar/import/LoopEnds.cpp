#include "LoopEnds.h"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <set>

#include "Brackets.h"
#include "Language.h"
#include "Lines.h"
#include "Statement.h"
#include "Token.h"

namespace kelvar_import {

namespace {

namespace fs = std::filesystem;
using kelvar_sources::Brackets;
using kelvar_sources::TokenKind;
using kelvar_sources::TokenList;

/// The `while` of the `do` loop that ends with the token; `end` where there is none.
std::size_t whileBefore(const TokenList& list, const Brackets& brackets, std::size_t end) {
  if (!list.tokens[end - 1].is(')')) return end;
  for (std::size_t i = end; i-- > 1;) {
    if (list.tokens[i].is('(') && brackets.partner(i) + 1 == end) return i - 1;
  }
  return end;
}

}  // namespace

int LoopEnds::lastLine(const std::string& file, int line, int column) {
  const auto [known, isNew] = files_.try_emplace(file);
  if (isNew) known->second = loopsOf(file);
  // Compilers name the keyword, or what stands in its brackets.
  const int upTo = column > 0 ? column : std::numeric_limits<int>::max();
  int last = 0;
  for (const Loop& loop : known->second) {
    if (loop.line == line && loop.column <= upTo) last = loop.last;
  }
  return last;
}

std::vector<LoopEnds::Loop> LoopEnds::loopsOf(const std::string& file) {
  if (kelvar_sources::languageOf(file) != kelvar_sources::Language::c) return {};
  std::error_code error;
  if (!fs::is_regular_file(file, error)) return {};
  std::ifstream in(file, std::ios::binary);
  const std::string source((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  if (source.size() >= std::numeric_limits<std::uint32_t>::max()) return {};
  const TokenList list = kelvar_sources::lexed(source);
  const Brackets brackets(list);
  const kelvar_sources::Lines lines(source);
  std::vector<Loop> loops;
  std::set<std::size_t> ends;  // each `while` that ends a loop, and begins none
  for (std::size_t i = 0; i < list.tokens.size(); ++i) {
    const kelvar_sources::Token& token = list.tokens[i];
    if (token.kind != TokenKind::word) continue;
    const std::string_view word = list.text(i);
    if ((word != "for" && word != "while" && word != "do") || ends.contains(i)) continue;
    const auto end = kelvar_sources::statementEnd(list, brackets, i, token.branch);
    if (!end) continue;
    if (word == "do") ends.insert(whileBefore(list, brackets, *end));
    loops.push_back({.line = lines.lineAt(token.offset),
                     .column = lines.columnAt(token.offset),
                     .last = lines.lineAt(list.tokens[*end].offset)});
  }
  return loops;
}

}  // namespace kelvar_import
