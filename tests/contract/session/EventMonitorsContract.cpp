// What every monitor of key presses does.
#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>
#include <QtWidgets/QWidget>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <stdexcept>
#include <vector>

#include "desktop/linux/session/QtEventMonitors.h"

#include "tests/desktop/session/Desk.h"
#include "tests/fakes/FakeDesktop.h"

namespace quenlio {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const KeyEvent kA{.modifierFlags = 0, .keyCode = 0, .charactersIgnoringModifiers = "a"};

// The press of the key A in a window of this program: whether it gets as far as the window.
struct FakeKind {
  std::unique_ptr<FakeEventMonitors> fake = std::make_unique<FakeEventMonitors>();
  EventMonitors& monitors() { return *fake; }
  void end() { fake.reset(); }
  bool pressReachesWindow() { return !fake->press(kA); }
};

class RealKind {
 public:
  RealKind() {
    // The one that is installed last sees each event first, whatever becomes of it.
    QCoreApplication::instance()->installEventFilter(&passing_);
    window_.resize(100, 100);
    window_.show();
    window_.activateWindow();
    if (!waitUntil([this] { return window_.isActiveWindow() && focusedWindow() == window_.winId(); })) {
      throw std::runtime_error("The window did not get the keyboard.");
    }
  }
  EventMonitors& monitors() { return *real_; }
  void end() { real_.reset(); }
  bool pressReachesWindow() {
    const int passed = passing_.count;
    const int reached = window_.count;
    pressKeys(QStringLiteral("a"));
    if (!waitUntil([&] { return passing_.count > passed; })) {
      throw std::runtime_error("The key was not heard.");
    }
    return window_.count > reached;
  }

 private:
  struct Passing final : QObject {
    int count = 0;
    bool eventFilter(QObject* object, QEvent* event) override {
      count += event->type() == QEvent::KeyPress && object->isWindowType() ? 1 : 0;
      return false;
    }
  };
  struct Window final : QWidget {
    int count = 0;
    void keyPressEvent(QKeyEvent* /*event*/) override { ++count; }
  };

  std::unique_ptr<QtEventMonitors> real_ = std::make_unique<QtEventMonitors>();
  Passing passing_;
  Window window_;
};

template <class Kind>
class EventMonitorsContract : public testing::Test {
 protected:
  [[nodiscard]] Subscription add(int who, bool swallows) {
    return kind.monitors().addLocalMonitorForKeyDown([this, who, swallows](const KeyEvent&) {
      told.push_back(who);
      return swallows;
    });
  }

  std::vector<int> told;
  Kind kind;
};

using Kinds = testing::Types<FakeKind, RealKind>;
TYPED_TEST_SUITE(EventMonitorsContract, Kinds);

TYPED_TEST(EventMonitorsContract, aPressGoesByEachMonitorInItsOrderAndOnToTheWindow) {
  EXPECT_TRUE(this->kind.pressReachesWindow());
  const Subscription first = this->add(1, false);
  const Subscription second = this->add(2, false);
  EXPECT_TRUE(this->kind.pressReachesWindow());
  EXPECT_THAT(this->told, ElementsAre(1, 2));
}

TYPED_TEST(EventMonitorsContract, aMonitorIsToldWhichKeyItIs) {
  std::vector<KeyEvent> keys;
  const Subscription monitor = this->kind.monitors().addLocalMonitorForKeyDown([&keys](const KeyEvent& key) {
    keys.push_back(key);
    return false;
  });
  EXPECT_TRUE(this->kind.pressReachesWindow());
  ASSERT_EQ(keys.size(), 1U);
  EXPECT_EQ(keys.front().keyCode, kA.keyCode);
  EXPECT_EQ(keys.front().modifierFlags, kA.modifierFlags);
  EXPECT_EQ(keys.front().charactersIgnoringModifiers, kA.charactersIgnoringModifiers);
}

TYPED_TEST(EventMonitorsContract, whatAMonitorSwallowsNeitherTheNextOneNorTheWindowGetsToSee) {
  const Subscription first = this->add(1, false);
  Subscription second = this->add(2, true);
  const Subscription third = this->add(3, false);
  EXPECT_FALSE(this->kind.pressReachesWindow());
  EXPECT_THAT(this->told, ElementsAre(1, 2));
  second.cancel();
  this->told.clear();
  EXPECT_TRUE(this->kind.pressReachesWindow());
  EXPECT_THAT(this->told, ElementsAre(1, 3));
}

TYPED_TEST(EventMonitorsContract, aMonitorEndsWithItsSubscription) {
  { const Subscription gone = this->add(1, true); }
  EXPECT_TRUE(this->kind.pressReachesWindow());
  EXPECT_THAT(this->told, IsEmpty());
}

TYPED_TEST(EventMonitorsContract, aMonitorThatIsEndedByAnotherIsNotAskedAnyMore) {
  Subscription second;
  const Subscription first = this->kind.monitors().addLocalMonitorForKeyDown([&](const KeyEvent&) {
    this->told.push_back(1);
    second.cancel();
    return false;
  });
  second = this->add(2, true);
  EXPECT_TRUE(this->kind.pressReachesWindow());
  EXPECT_THAT(this->told, ElementsAre(1));
}

TYPED_TEST(EventMonitorsContract, aMonitorThatIsAddedMeanwhileSeesTheNextPress) {
  Subscription second;
  const Subscription first = this->kind.monitors().addLocalMonitorForKeyDown([&](const KeyEvent&) {
    this->told.push_back(1);
    if (!second) {
      second = this->add(2, true);
    }
    return false;
  });
  EXPECT_TRUE(this->kind.pressReachesWindow());
  EXPECT_FALSE(this->kind.pressReachesWindow());
  EXPECT_THAT(this->told, ElementsAre(1, 1, 2));
}

TYPED_TEST(EventMonitorsContract, aSubscriptionMayOutliveTheMonitors) {
  const auto held = std::make_shared<int>(0);
  Subscription monitor = this->kind.monitors().addLocalMonitorForKeyDown([held](const KeyEvent&) { return false; });
  EXPECT_EQ(held.use_count(), 2);
  this->kind.end();
  monitor.cancel();
  EXPECT_EQ(held.use_count(), 1);
}

}  // namespace
}  // namespace quenlio
