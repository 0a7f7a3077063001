// Whether the user has been through the first run. Pure helpers on the defaults.
#pragma once

#include <optional>
#include <string_view>

namespace quenlio {

class UserDefaults;

enum class OnboardingProgressState { pending, completed, existingInstall };
[[nodiscard]] std::string_view rawValue(OnboardingProgressState state);

struct FirstRunExperience {
  static constexpr const char* progressStateKey = "onboarding.progressState";
  static constexpr const char* legacyCompletedKey = "onboarding.floatingThumbnail.v1.completed";
  static constexpr const char* v2CompletedKey = "onboarding.quick.v2.completed";
  static constexpr const char* v3CompletedKey = "onboarding.quick.v3.completed";

  // The state at progressStateKey; nothing when it is missing or unknown.
  [[nodiscard]] static std::optional<OnboardingProgressState> persistedState(const UserDefaults& defaults);

  // Any completed flag, or a persisted state of completed.
  [[nodiscard]] static bool hasCompletedOnboarding(const UserDefaults& defaults,
                                                   std::optional<OnboardingProgressState> persisted);
};

}  // namespace quenlio
