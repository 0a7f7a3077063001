// What the system knows of a file beyond its bytes.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "core/base/FileURL.h"

namespace quenlio {

// A boolean, a number or something else, told as text.
using MetadataValue = std::variant<bool, std::int64_t, std::string>;

class FileMetadata {
 public:
  virtual ~FileMetadata() = default;
  // The attribute of the file, or nothing when the system has no opinion, or none yet. Any thread.
  [[nodiscard]] virtual std::optional<MetadataValue> MDItemCopyAttribute(const FileURL& url,
                                                                         std::string_view attribute) const = 0;
};

inline constexpr std::string_view kMDItemIsScreenCapture = "kMDItemIsScreenCapture";

}  // namespace quenlio
