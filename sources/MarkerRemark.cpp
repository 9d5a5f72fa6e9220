#include "MarkerRemark.h"

#include "Lines.h"
#include "MarkerCalls.h"

namespace kelvar_sources {

MarkerRemark remarkIn(std::string_view text) {
  MarkerRemark remark;
  std::size_t at = 0;
  while (at < text.size() && isBlank(text[at])) ++at;
  const std::size_t word = at;
  while (at < text.size() && isWordByte(text[at])) ++at;
  remark.word = withSingleBlanks(text.substr(word, at - word));
  while (at < text.size() && isBlank(text[at])) ++at;
  std::string_view rest = text.substr(at);
  if (!rest.starts_with('"')) {  // quotes are optional
    rest = rest.substr(0, rest.find('\n'));
    remark.label = withSingleBlanks(rest);
    return remark;
  }
  std::size_t close = 1;
  while (close < rest.size() && rest[close] != '"') close += rest[close] == '\\' ? 2U : 1U;
  remark.label = literalValue(rest.substr(0, close + 1));
  return remark;
}

}  // namespace kelvar_sources
