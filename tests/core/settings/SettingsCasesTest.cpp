// The enumerations of the settings, and changes in place.
#include <gtest/gtest.h>

#include "tests/harness/TestPlatform.h"

namespace quenlio {
namespace {

template <class Enumeration>
std::vector<std::string_view> rawValues() {
  std::vector<std::string_view> names;
  for (const Enumeration value : allCases<Enumeration>()) {
    names.push_back(rawValue(value));
    EXPECT_EQ(fromRawValue<Enumeration>(names.back()), value);
  }
  return names;
}

using Names = std::vector<std::string_view>;

TEST(SettingCases, areListedInTheirOrderUnderTheirNames) {
  EXPECT_EQ(rawValues<IslandDurationMode>(), (Names{"timed", "neverHide", "hideWhenInactive"}));
  EXPECT_EQ(rawValues<IslandSize>(), (Names{"extraSmall", "small", "medium", "large", "xLarge"}));
  EXPECT_EQ(rawValues<IslandSide>(), (Names{"right", "left"}));
  EXPECT_EQ(rawValues<ScreenshotLocationMode>(), (Names{"auto", "manual"}));
}

TEST(SettingCases, aChangeInPlaceIsSavedToo) {
  TestPlatform platform;
  AppSettings settings(platform.settingsDependencies());
  settings.maxHistory.mutate([](std::int64_t& limit) { limit = 4; });
  EXPECT_EQ(platform.defaults.standardUserDefaults().object<std::int64_t>("settings.maxHistory"), 4);
}

}  // namespace
}  // namespace quenlio
