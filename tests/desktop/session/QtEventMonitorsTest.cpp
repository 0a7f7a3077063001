#include <QtGui/QKeyEvent>
#include <QtGui/QWindow>
#include <QtWidgets/QDialog>
#include <QtWidgets/QLineEdit>
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

  // Another window of this program comes up and has the keyboard.
  [[nodiscard]] static bool takesTheKeyboard(QWidget& other) {
    other.resize(200, 100);
    other.show();
    other.activateWindow();
    return waitUntil([&other] { return other.isActiveWindow() && focusedWindow() == other.winId(); });
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

TEST_F(QtEventMonitorsTest, whatIsTypedIntoAnyWindowsTextFieldIsNotHeard) {
  QWidget other;
  QLineEdit field(QStringLiteral("name"), &other);
  ASSERT_TRUE(takesTheKeyboard(other));
  field.setFocus();
  pressKeys(QStringLiteral("BackSpace"));
  ASSERT_TRUE(waitUntil([&field] { return field.text() == QLatin1String("nam"); }));
  EXPECT_THAT(heard_, IsEmpty());
}

TEST_F(QtEventMonitorsTest, noKeyOfADialogIsHeardWhateverHasTheKeyboardInIt) {
  int closed = 0;
  QDialog dialog;
  QObject::connect(&dialog, &QDialog::rejected, &dialog, [&closed] { ++closed; });
  ASSERT_TRUE(takesTheKeyboard(dialog));
  ASSERT_EQ(dialog.focusWidget(), nullptr);
  pressKeys(QStringLiteral("Escape"));
  ASSERT_TRUE(waitUntil([&closed] { return closed == 1; }));
  EXPECT_THAT(heard_, IsEmpty());
}

// The release and the press of a repeat are of one moment.
TEST_F(QtEventMonitorsTest, aRepeatThatPassesForAPressIsMadeOut) {
  std::vector<bool> repeats;
  const Subscription monitor = monitors_.addLocalMonitorForKeyDown([&repeats](const KeyEvent& key) {
    repeats.push_back(key.isARepeat);
    return true;
  });
  button_.clearFocus();
  monitor_.cancel();
  const auto send = [this](QEvent::Type type, quint32 scanCode, quint64 at) {
    QKeyEvent key(type, Qt::Key_Space, Qt::NoModifier, scanCode, 0, 0, QStringLiteral(" "));
    key.setTimestamp(at);
    QCoreApplication::sendEvent(window_.windowHandle(), &key);
  };
  constexpr quint32 space = 65;
  constexpr quint32 other = 66;
  send(QEvent::KeyPress, space, 1000);
  send(QEvent::KeyRelease, space, 1660);
  send(QEvent::KeyPress, space, 1660);
  send(QEvent::KeyRelease, space, 1700);
  send(QEvent::KeyPress, other, 1700);
  send(QEvent::KeyPress, space, 1701);
  EXPECT_THAT(repeats, ElementsAre(false, true, false, false));
}

TEST_F(QtEventMonitorsTest, aFieldThatHasTheFocusInAnotherWindowKeepsNothing) {
  QWidget other;
  QLineEdit field(&other);
  ASSERT_TRUE(takesTheKeyboard(other));
  field.setFocus();
  window_.activateWindow();
  ASSERT_TRUE(waitUntil([this] { return window_.isActiveWindow() && focusedWindow() == window_.winId(); }));
  pressKeys(QStringLiteral("a"));
  ASSERT_TRUE(waitUntil([this] { return !heard_.empty(); }));
  EXPECT_THAT(heard_, ElementsAre("a"));
}

}  // namespace
}  // namespace quenlio
