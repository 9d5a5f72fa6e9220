#include "Cell.h"

#include <array>
#include <charconv>
#include <cmath>

namespace kelvar_tool {

namespace {

struct Appending {
  std::string& out;

  void operator()(std::monostate) const {}
  void operator()(const std::string& text) const { out += text; }
  void operator()(bool value) const { out += value ? "true" : "false"; }
  void operator()(double value) const {
    if (std::isnan(value)) {
      out += "nan";  // its sign has no meaning
    } else if (value == 0 && std::signbit(value)) {
      out += "-0.0";  // without a fraction, most readers take it for an integer and lose the sign
    } else {
      number(value);
    }
  }
  template <class Integer>
  void operator()(Integer value) const {
    number(value);
  }

  template <class Number>
  void number(Number value) const {
    std::array<char, 32> digits;  // a double in its shortest form takes 24
    const auto [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(), value);
    out.append(digits.data(), end);
  }
};

}  // namespace

void append(std::string& out, const Cell& cell) {
  std::visit(Appending{out}, cell);
}

}  // namespace kelvar_tool
