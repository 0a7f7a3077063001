// What state.json and events.jsonl hold. Field names are the keys in the files.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "core/base/Date.h"

namespace quenlio {

struct QuenlioReleaseTestPermissionSnapshot {
  bool screenRecordingGranted = false;
  bool desktopFolderReadable = false;
  bool operator==(const QuenlioReleaseTestPermissionSnapshot&) const = default;
};

struct QuenlioReleaseTestState {
  std::string runID;
  std::optional<std::string> appVersion;
  std::optional<Date> launchedAt;
  std::optional<Date> lastUpdatedAt;
  bool onboardingVisible = false;
  std::optional<std::string> onboardingState;
  std::optional<std::string> onboardingCurrentStep;
  bool installPromptVisible = false;
  bool firstRunRecoveryApplied = false;
  bool firstRunRecoveryForcedPending = false;
  std::optional<std::string> firstRunRecoveryAction;
  std::string onboardingScreenshotRecoveryResult = "notAttempted";
  std::int64_t screenshotCount = 0;
  std::optional<std::string> latestScreenshotPath;
  std::optional<std::string> selectedScreenshotPath;
  bool floatingThumbnailDisabledRequested = false;
  bool statusItemVisible = false;
  std::optional<std::string> lastInteractiveScreenshotTrigger;
  QuenlioReleaseTestPermissionSnapshot permissionState;

  bool operator==(const QuenlioReleaseTestState&) const = default;
};

using EventMetadata = std::map<std::string, std::string>;

struct QuenlioReleaseTestEvent {
  Date timestamp;
  std::string name;
  EventMetadata metadata;
};

// JSON, pretty-printed with sorted keys; an absent value has no key, and dates are ISO 8601 with whole seconds.
[[nodiscard]] std::string encode(const QuenlioReleaseTestState& state);
[[nodiscard]] std::string encode(const QuenlioReleaseTestEvent& event);

// The reverse of encode(). Nothing when a key that is always there is missing, or a value is of another type.
[[nodiscard]] std::optional<QuenlioReleaseTestState> decodeState(std::string_view text);

}  // namespace quenlio
