// What every centre of messages between programs does.
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusConnectionInterface>
#include <QtDBus/QDBusMessage>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <stdexcept>
#include <vector>

#include "desktop/linux/session/QtDistributedNotificationCenter.h"

#include "tests/desktop/session/Desk.h"
#include "tests/fakes/FakeDesktop.h"

namespace quenlio {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct FakeKind {
  CallLog log;
  std::unique_ptr<FakeNotificationCenter> fake = std::make_unique<FakeNotificationCenter>(log);
  DistributedNotificationCenter& centre() { return *fake; }
  void end() { fake.reset(); }
  void post(const std::string& name, const NotificationUserInfo& userInfo) { fake->post(name, userInfo); }
  static bool waitFor(const std::function<bool()>& condition) { return condition(); }
};

class RealKind {
 public:
  DistributedNotificationCenter& centre() { return *real_; }
  void end() { real_.reset(); }
  // From another program.
  void post(const std::string& name, const NotificationUserInfo& userInfo) {
    QVariantMap map;
    for (const auto& [key, value] : userInfo) {
      const auto* text = std::get_if<std::string>(&value);
      map[QString::fromStdString(key)] = text != nullptr ? QVariant(QString::fromStdString(*text)) : QVariant(3);
    }
    // An answer on the observers' connection: the bus has heard by then what they wait for.
    if (!QDBusConnection::sessionBus().interface()->isServiceRegistered(QStringLiteral("org.freedesktop.DBus"))) {
      throw std::runtime_error("There is no session bus.");
    }
    QDBusMessage signal = QDBusMessage::createSignal(
        QStringLiteral("/any/path"), QStringLiteral("com.quenlio.DistributedNotification"), QStringLiteral("Posted"));
    signal << QString::fromStdString(name) << map;
    other_.send(signal);
  }
  static bool waitFor(const std::function<bool()>& condition) { return waitUntil(condition); }

 private:
  std::unique_ptr<QtDistributedNotificationCenter> real_ = std::make_unique<QtDistributedNotificationCenter>();
  QDBusConnection other_ = QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("poster"));
};

template <class Kind>
class NotificationCenterContract : public testing::Test {
 protected:
  [[nodiscard]] Subscription observe(std::string_view name, int who) {
    return kind.centre().addObserverForName(name, [this, who](const NotificationUserInfo&) { told.push_back(who); });
  }
  // Posts under that name and waits until it has reached everyone whom it reaches.
  [[nodiscard]] bool post(const std::string& name) {
    bool hasCome = false;
    const Subscription last =
        kind.centre().addObserverForName("last", [&hasCome](const NotificationUserInfo&) { hasCome = true; });
    kind.post(name, {});
    kind.post("last", {});
    return kind.waitFor([&hasCome] { return hasCome; });
  }

  std::vector<int> told;
  Kind kind;
};

using Kinds = testing::Types<FakeKind, RealKind>;
TYPED_TEST_SUITE(NotificationCenterContract, Kinds);

TYPED_TEST(NotificationCenterContract, aPostReachesTheObserversOfItsNameAloneAndInTheirOrder) {
  const Subscription first = this->observe("a.name", 1);
  const Subscription other = this->observe("a.name.more", 2);
  const Subscription second = this->observe("a.name", 3);
  ASSERT_TRUE(this->post("a.name"));
  EXPECT_THAT(this->told, ElementsAre(1, 3));
  ASSERT_TRUE(this->post("a.name.more"));
  EXPECT_THAT(this->told, ElementsAre(1, 3, 2));
  ASSERT_TRUE(this->post("A.NAME"));
  EXPECT_EQ(this->told.size(), 3U);
}

TYPED_TEST(NotificationCenterContract, everyPostIsToldWithWhatItCarries) {
  std::vector<NotificationUserInfo> heard;
  const Subscription observer = this->kind.centre().addObserverForName(
      "a.name", [&heard](const NotificationUserInfo& info) { heard.push_back(info); });
  const NotificationUserInfo full{{"path", "/shots/ä b.png"}, {"empty", ""}, {"number", std::monostate()}};
  this->kind.post("a.name", full);
  this->kind.post("a.name", {});
  this->kind.post("a.name", full);
  ASSERT_TRUE(this->kind.waitFor([&heard] { return heard.size() >= 3; }));
  EXPECT_THAT(heard, ElementsAre(full, NotificationUserInfo(), full));
}

TYPED_TEST(NotificationCenterContract, anObserverEndsWithItsSubscription) {
  const Subscription stays = this->observe("a.name", 1);
  Subscription ends = this->observe("a.name", 2);
  ASSERT_TRUE(this->post("a.name"));
  EXPECT_THAT(this->told, ElementsAre(1, 2));
  ends.cancel();
  ASSERT_TRUE(this->post("a.name"));
  EXPECT_THAT(this->told, ElementsAre(1, 2, 1));
}

TYPED_TEST(NotificationCenterContract, anObserverThatIsEndedByAnotherIsNotToldAnyMore) {
  Subscription second;
  const Subscription first = this->kind.centre().addObserverForName("a.name", [&](const NotificationUserInfo&) {
    this->told.push_back(1);
    second.cancel();
  });
  second = this->observe("a.name", 2);
  ASSERT_TRUE(this->post("a.name"));
  EXPECT_THAT(this->told, ElementsAre(1));
}

TYPED_TEST(NotificationCenterContract, whatWasPostedBeforeIsNotTold) {
  ASSERT_TRUE(this->post("a.name"));
  const Subscription late = this->observe("a.name", 1);
  ASSERT_TRUE(this->post("another.name"));
  EXPECT_THAT(this->told, IsEmpty());
}

TYPED_TEST(NotificationCenterContract, aSubscriptionMayOutliveTheCentre) {
  const auto held = std::make_shared<int>(0);
  Subscription observer = this->kind.centre().addObserverForName("a.name", [held](const NotificationUserInfo&) {});
  EXPECT_EQ(held.use_count(), 2);
  this->kind.end();
  observer.cancel();
  EXPECT_EQ(held.use_count(), 1);
}

}  // namespace
}  // namespace quenlio
