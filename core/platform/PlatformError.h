// Why an operation of the platform failed. Failures are values: the caller logs the description and goes on.
#pragma once

#include <string>

#include "core/base/Result.h"

namespace quenlio {

struct PlatformError {
  std::string localizedDescription;  // one sentence for a person, in the user's language where the system has one
  bool operator==(const PlatformError&) const = default;
};

template <class T>
using PlatformResult = Result<T, PlatformError>;

}  // namespace quenlio
