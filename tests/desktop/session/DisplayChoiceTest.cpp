// The display of these tests is an X display that can be reached.
#include <QtCore/QByteArray>
#include <gtest/gtest.h>

#include "desktop/linux/session/DisplayChoice.h"

namespace quenlio {
namespace {

// Puts a variable back when it goes.
class Variable {
 public:
  explicit Variable(const char* name) : name_(name), isSet_(qEnvironmentVariableIsSet(name)), before_(qgetenv(name)) {}
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;
  ~Variable() {
    if (isSet_) {
      qputenv(name_, before_);
    } else {
      qunsetenv(name_);
    }
  }

 private:
  const char* name_;
  bool isSet_;
  QByteArray before_;
};

class DisplayChoiceTest : public testing::Test {
 protected:
  // What is chosen where the variable has this value.
  [[nodiscard]] static QByteArray chosen(const QByteArray& given) {
    qputenv("QT_QPA_PLATFORM", given);
    isGood_ = chooseDisplay();
    return qgetenv("QT_QPA_PLATFORM");
  }

  Variable platform_{"QT_QPA_PLATFORM"};
  Variable display_{"DISPLAY"};
  inline static bool isGood_ = false;
};

TEST_F(DisplayChoiceTest, takesX11WhereItIsThere) {
  for (const char* given : {"", "xcb", "wayland", "wayland;xcb", "wayland-egl", "xcb;wayland"}) {
    EXPECT_EQ(chosen(given), "xcb") << given;
    EXPECT_TRUE(isGood_) << given;
  }
  qunsetenv("QT_QPA_PLATFORM");
  EXPECT_TRUE(chooseDisplay());
  EXPECT_EQ(qgetenv("QT_QPA_PLATFORM"), "xcb");
}

TEST_F(DisplayChoiceTest, leavesWaylandWhereNothingElseIsThere) {
  qputenv("DISPLAY", ":no-such-display");
  for (const char* given : {"wayland", "wayland;xcb"}) {
    EXPECT_EQ(chosen(given), given);
    EXPECT_TRUE(isGood_) << given;
  }
}

TEST_F(DisplayChoiceTest, tellsThatThereIsNoDisplay) {
  qputenv("DISPLAY", ":no-such-display");
  for (const char* given : {"", "xcb"}) {
    EXPECT_EQ(chosen(given), given);
    EXPECT_FALSE(isGood_) << given;
  }
}

TEST_F(DisplayChoiceTest, leavesAChoiceWithoutADisplay) {
  for (const char* display : {":no-such-display", ""}) {
    qputenv("DISPLAY", display);
    for (const char* given : {"offscreen", "minimal"}) {
      EXPECT_EQ(chosen(given), given);
      EXPECT_TRUE(isGood_) << given;
    }
  }
}

}  // namespace
}  // namespace quenlio
