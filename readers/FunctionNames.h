#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "Demangle.h"
#include "TextNumbers.h"

namespace kelvar_readers {

/// Numbers functions by their plain names, as rows show them.
class FunctionNames {
 public:
  [[nodiscard]] std::size_t numberOf(std::string_view function) {
    const std::size_t number = asTold_.numberOf(function);
    if (number == plainOf_.size()) plainOf_.push_back(plain_.numberOf(plainName(function)));
    return plainOf_[number];
  }
  [[nodiscard]] std::string_view nameNumbered(std::size_t number) const { return plain_.textNumbered(number); }

 private:
  TextNumbers asTold_;
  TextNumbers plain_;
  std::vector<std::size_t> plainOf_;  // by the number in asTold_
};

}  // namespace kelvar_readers
