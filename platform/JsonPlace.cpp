#include "JsonPlace.h"

namespace kelvar_platform {

std::string JsonPlace::text() const {
  std::string text;
  for (std::size_t i = 0; i < depth_; ++i) {
    const Step& step = steps_[i];
    if (step.inList) {
      text += '[' + std::to_string(step.index) + ']';
    } else {
      if (i != 0) text += '.';
      text += step.key;
    }
  }
  return text;
}

}  // namespace kelvar_platform
