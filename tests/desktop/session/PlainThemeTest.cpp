#include <gtest/gtest.h>
#include <optional>

#include "desktop/linux/session/PlainTheme.h"

namespace quenlio {
namespace {

constexpr const char* kTheme = "QT_QPA_PLATFORMTHEME";
constexpr const char* kDesktop = "XDG_CURRENT_DESKTOP";

// The variables as they were, afterwards.
class PlainThemeTest : public testing::Test {
 protected:
  PlainThemeTest() {
    qunsetenv(kTheme);
    qputenv(kDesktop, "GNOME");
  }
  ~PlainThemeTest() override {
    qunsetenv(kTheme);
    desktop_ ? qputenv(kDesktop, *desktop_) : qunsetenv(kDesktop);
  }

 private:
  std::optional<QByteArray> desktop_ =
      qEnvironmentVariableIsSet(kDesktop) ? std::optional(qgetenv(kDesktop)) : std::nullopt;
};

TEST_F(PlainThemeTest, namesThePortalAndNoDesktopWhileItIsThere) {
  {
    const PlainTheme theme;
    EXPECT_EQ(qgetenv(kTheme), "xdgdesktopportal");
    EXPECT_FALSE(qEnvironmentVariableIsSet(kDesktop));
  }
  EXPECT_FALSE(qEnvironmentVariableIsSet(kTheme));
  EXPECT_EQ(qgetenv(kDesktop), "GNOME");
}

TEST_F(PlainThemeTest, leavesTheUsersChoiceAlone) {
  qputenv(kTheme, "gtk3");
  const PlainTheme theme;
  EXPECT_EQ(qgetenv(kTheme), "gtk3");
  EXPECT_EQ(qgetenv(kDesktop), "GNOME");
}

TEST_F(PlainThemeTest, leavesADesktopAloneWhoseLookNeedsNoOtherToolkit) {
  qputenv(kDesktop, "KDE");
  const PlainTheme theme;
  EXPECT_FALSE(qEnvironmentVariableIsSet(kTheme));
  EXPECT_EQ(qgetenv(kDesktop), "KDE");
}

}  // namespace
}  // namespace quenlio
