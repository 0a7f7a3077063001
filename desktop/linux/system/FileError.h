// The sentence that tells a person why an operation on a file failed. Any thread.
#pragma once

#include <string>
#include <string_view>
#include <system_error>

#include "core/base/FileURL.h"
#include "core/platform/PlatformError.h"

namespace quenlio {

// The file “NAME” could not be moved: No space left on device.
[[nodiscard]] inline PlatformError fileError(const FileURL& url, std::string_view whatFailed, int errorNumber) {
  std::string text = "The file “" + url.lastPathComponent() + "” ";
  text.append(whatFailed).append(": ").append(std::generic_category().message(errorNumber)).append(".");
  return {.localizedDescription = std::move(text)};
}

}  // namespace quenlio
