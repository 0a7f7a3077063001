#include <QtGui/QKeyEvent>
#include <QtWidgets/QPushButton>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "desktop/linux/session/QtEventMonitors.h"

#include "tests/desktop/session/Desk.h"

namespace quenlio {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Space is its own, as Qt's buttons do not say by themselves.
class Button final : public QPushButton {
 public:
  using QPushButton::QPushButton;

 protected:
  bool event(QEvent* event) override {
    if (event->type() == QEvent::ShortcutOverride && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Space) {
      event->accept();
      return true;
    }
    return QPushButton::event(event);
  }
};

class QtEventMonitorsTest : public testing::Test {
 protected:
  void SetUp() override {
    QObject::connect(&button_, &QPushButton::clicked, &button_, [&clicks = clicks_] { ++clicks; });
    window_.resize(200, 100);
    window_.show();
    window_.activateWindow();
    ASSERT_TRUE(waitUntil([this] { return window_.isActiveWindow() && focusedWindow() == window_.winId(); }));
  }

  QWidget window_;
  Button button_{&window_};
  QtEventMonitors monitors_;
  std::vector<std::string> heard_;
  int clicks_ = 0;
  Subscription monitor_ = monitors_.addLocalMonitorForKeyDown([&heard = heard_](const KeyEvent& key) {
    heard.push_back(key.charactersIgnoringModifiers.value_or(""));
    return true;
  });
};

TEST_F(QtEventMonitorsTest, aButtonThatHasTheKeyboardKeepsItsOwnKeys) {
  button_.setFocus();
  pressKeys(QStringLiteral("space"));
  ASSERT_TRUE(waitUntil([this] { return clicks_ == 1; }));
  EXPECT_THAT(heard_, IsEmpty());
}

TEST_F(QtEventMonitorsTest, everyOtherKeyIsHeardFirst) {
  button_.setFocus();
  pressKeys(QStringLiteral("a"));
  ASSERT_TRUE(waitUntil([this] { return !heard_.empty(); }));
  EXPECT_THAT(heard_, ElementsAre("a"));
}

TEST_F(QtEventMonitorsTest, aButtonWithoutTheKeyboardKeepsNothing) {
  button_.clearFocus();
  pressKeys(QStringLiteral("space"));
  ASSERT_TRUE(waitUntil([this] { return !heard_.empty(); }));
  EXPECT_THAT(heard_, ElementsAre(" "));
  EXPECT_EQ(clicks_, 0);
}

}  // namespace
}  // namespace quenlio
