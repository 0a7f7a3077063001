#include "core/detection/ScreenshotFileClassifier.h"

#include <regex>
#include <variant>

#include "core/platform/FileMetadata.h"

namespace quenlio {

void ScreenshotFileReadinessState::observe(std::int64_t fileSize) {
  if (fileSize <= 0) {
    stableObservationCount = 0;
  } else if (lastObservedFileSize == fileSize) {
    ++stableObservationCount;
  } else {
    stableObservationCount = 1;
  }
  lastObservedFileSize = fileSize;
}

bool ScreenshotFileClassifier::matchesFallbackNamePattern(std::string_view stem) {
  static const std::regex fallbackNamePattern(R"(^(screen ?shot|screenshot) \d{4}-\d{2}-\d{2}( at .+)?$)",
                                              std::regex::ECMAScript | std::regex::icase | std::regex::optimize);
  return std::regex_search(stem.begin(), stem.end(), fallbackNamePattern);
}

std::optional<bool> ScreenshotFileClassifier::screenCaptureMetadata(const FileMetadata& metadata, const FileURL& url) {
  const auto value = metadata.MDItemCopyAttribute(url, kMDItemIsScreenCapture);
  if (!value) {
    return std::nullopt;
  }
  if (const auto* flag = std::get_if<bool>(&*value)) {
    return *flag;
  }
  const auto* number = std::get_if<std::int64_t>(&*value);
  return number != nullptr ? std::optional(*number != 0) : std::nullopt;
}

ScreenshotFileClassifier::Answer ScreenshotFileClassifier::isScreenshot(const FileMetadata& metadata,
                                                                        const FileURL& url) {
  const auto known = screenCaptureMetadata(metadata, url);
  if (known) {
    return *known ? Answer::yes : Answer::no;
  }
  return matchesFallbackNamePattern(url.stem()) ? Answer::yes : Answer::notYet;
}

}  // namespace quenlio
