#include "Language.h"

#include <algorithm>
#include <array>

#include "Lines.h"

namespace kelvar_sources {

namespace {

struct Ending {
  std::string_view text;
  Language language;
};
constexpr std::array kEndings{
    Ending{"c", Language::c},
    Ending{"cc", Language::c},
    Ending{"cpp", Language::c},
    Ending{"cxx", Language::c},
    Ending{"c++", Language::c},
    Ending{"h", Language::c},
    Ending{"hh", Language::c},
    Ending{"hpp", Language::c},
    Ending{"hxx", Language::c},
    Ending{"h++", Language::c},
    Ending{"inl", Language::c},
    Ending{"ipp", Language::c},
    Ending{"tpp", Language::c},
    Ending{"txx", Language::c},
    Ending{"tcc", Language::c},
    Ending{"icc", Language::c},
    Ending{"cu", Language::c},
    Ending{"cuh", Language::c},
    Ending{"hip", Language::c},
    Ending{"f90", Language::freeFortran},
    Ending{"f95", Language::freeFortran},
    Ending{"f03", Language::freeFortran},
    Ending{"f08", Language::freeFortran},
    Ending{"f18", Language::freeFortran},
    Ending{"f", Language::fixedFortran},
    Ending{"for", Language::fixedFortran},
    Ending{"ftn", Language::fixedFortran},
    Ending{"f77", Language::fixedFortran},
};

}  // namespace

std::optional<Language> languageOf(std::string_view path) {
  const std::size_t slash = path.rfind('/');
  const std::string_view leaf = slash == std::string_view::npos ? path : path.substr(slash + 1);
  const std::size_t dot = leaf.rfind('.');
  if (dot == std::string_view::npos) return {};
  const std::string ending = lowered(leaf.substr(dot + 1));
  const auto* const found =
      std::find_if(kEndings.begin(), kEndings.end(), [&](const Ending& one) { return one.text == ending; });
  if (found == kEndings.end()) return {};
  return found->language;
}

bool isBinary(std::string_view bytes) {
  constexpr std::size_t kLookedAt = 8192;
  return bytes.substr(0, kLookedAt).find('\0') != std::string_view::npos;
}

}  // namespace kelvar_sources
