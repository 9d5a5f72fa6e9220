#include "Labels.h"

namespace kelvar_sources {

namespace {

std::string keyOf(Kind kind, const std::string& label) {
  return std::to_string(kind) + ' ' + label;
}

}  // namespace

void Labels::take(Kind kind, const std::string& label) {
  taken_.insert(keyOf(kind, label));
}

bool Labels::tryTake(Kind kind, const std::string& label) {
  return taken_.insert(keyOf(kind, label)).second;
}

std::string Labels::give(Kind kind, const std::string& function, const std::string& place) {
  const std::string plain = (function.empty() ? place : function) + ": " + sitenotes::annotation_t::display(kind);
  int& number = next_.try_emplace(keyOf(kind, plain), 1).first->second;
  while (true) {
    std::string label = number == 1 ? plain : plain + ' ' + std::to_string(number);
    ++number;
    if (taken_.insert(keyOf(kind, label)).second) return label;
  }
}

}  // namespace kelvar_sources
