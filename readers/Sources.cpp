#include "Sources.h"

#include <algorithm>

namespace kelvar_readers {

void Reading::remark(const std::string& sentence) {
  if (std::find(remarks.begin(), remarks.end(), sentence) == remarks.end()) remarks.push_back(sentence);
}

}  // namespace kelvar_readers
