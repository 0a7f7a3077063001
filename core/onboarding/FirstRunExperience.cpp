#include "core/onboarding/FirstRunExperience.h"

#include <algorithm>
#include <array>
#include <string>

#include "core/platform/UserDefaults.h"

namespace quenlio {
namespace {
constexpr auto kRawValues = std::to_array<std::string_view>({"pending", "completed", "existingInstall"});
}

std::string_view rawValue(OnboardingProgressState state) {
  return kRawValues.at(static_cast<std::size_t>(state));
}

std::optional<OnboardingProgressState> FirstRunExperience::persistedState(const UserDefaults& defaults) {
  const auto raw = defaults.object<std::string>(progressStateKey);
  const auto found = raw ? std::ranges::find(kRawValues, *raw) : kRawValues.end();
  return found != kRawValues.end() ? std::optional(static_cast<OnboardingProgressState>(found - kRawValues.begin()))
                                   : std::nullopt;
}

bool FirstRunExperience::hasCompletedOnboarding(const UserDefaults& defaults,
                                                std::optional<OnboardingProgressState> persisted) {
  return defaults.boolForKey(legacyCompletedKey) || defaults.boolForKey(v2CompletedKey) ||
         defaults.boolForKey(v3CompletedKey) || persisted == OnboardingProgressState::completed;
}

}  // namespace quenlio
