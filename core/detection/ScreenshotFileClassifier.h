// What decides that a file is a finished screenshot: its size at rest, and what the system or its name
// say of it. Stateless; any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "core/base/FileURL.h"

namespace quenlio {

class FileMetadata;

// What the looks at one file have seen so far.
struct ScreenshotFileReadinessState {
  std::optional<std::int64_t> lastObservedFileSize;  // bytes at the latest look
  int stableObservationCount = 0;                    // looks in a row that have seen that same positive size
  bool operator==(const ScreenshotFileReadinessState&) const = default;

  // Takes in one look.
  void observe(std::int64_t fileSize);
  [[nodiscard]] bool isStable() const { return stableObservationCount >= 2; }
};

struct ScreenshotFileClassifier {
  enum class Answer { yes, no, notYet };

  // The default naming of a screenshot: "Screenshot 2026-11-15 at 21.04.33", "screen shot 2026-11-15".
  [[nodiscard]] static bool matchesFallbackNamePattern(std::string_view stem);

  // What the system says of it, or nothing.
  [[nodiscard]] static std::optional<bool> screenCaptureMetadata(const FileMetadata& metadata, const FileURL& url);

  // The system's word is final; without one the name may say yes, and otherwise it is too early to tell.
  [[nodiscard]] static Answer isScreenshot(const FileMetadata& metadata, const FileURL& url);
};

}  // namespace quenlio
