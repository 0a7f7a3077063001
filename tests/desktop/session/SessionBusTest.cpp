// What comes over the session bus: messages between programs, and the desktop's appearance.
#include <QtGui/QGuiApplication>
#include <QtGui/QPalette>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "desktop/linux/session/QtAppearance.h"
#include "desktop/linux/session/QtDistributedNotificationCenter.h"

#include "tests/desktop/session/Desk.h"
#include "tests/desktop/session/FakePortal.h"

namespace quenlio {
namespace {

using testing::ElementsAre;
using testing::Pair;

bool post(const char* name, const char* userInfo) {
  return run(QStringLiteral("gdbus"),
             {QStringLiteral("emit"), QStringLiteral("--session"), QStringLiteral("--object-path"),
              QStringLiteral("/any/path"), QStringLiteral("--signal"),
              QStringLiteral("com.quenlio.DistributedNotification.Posted"), QString::fromUtf8(name),
              QString::fromUtf8(userInfo)});
}

TEST(QtDistributedNotificationCenter, handsOverStringsAndAllElseAsNothing) {
  QtDistributedNotificationCenter centre;
  std::vector<NotificationUserInfo> heard;
  const Subscription observer =
      centre.addObserverForName("a.name", [&heard](const NotificationUserInfo& info) { heard.push_back(info); });
  ASSERT_TRUE(post("a.name", "{'path': <'/shots/ä.png'>, 'count': <3>, 'deep': <@a{sv} {}>}"));
  ASSERT_TRUE(waitUntil([&heard] { return !heard.empty(); }));
  using Value = NotificationUserInfo::mapped_type;
  EXPECT_THAT(heard, ElementsAre(ElementsAre(Pair("count", Value()), Pair("deep", Value()),
                                             Pair("path", Value("/shots/ä.png")))));
}

TEST(QtDistributedNotificationCenter, tellsOnlyObserversOfThatNameThatAreStillThere) {
  QtDistributedNotificationCenter centre;
  std::vector<std::string> heard;
  const auto note = [&heard](const char* who) {
    return [&heard, who](const NotificationUserInfo&) { heard.emplace_back(who); };
  };
  const Subscription stays = centre.addObserverForName("a.name", note("stays"));
  const Subscription other = centre.addObserverForName("another.name", note("other"));
  Subscription ends = centre.addObserverForName("a.name", note("ends"));
  ends.cancel();
  ASSERT_TRUE(post("a.name", "@a{sv} {}"));
  ASSERT_TRUE(post("another.name", "@a{sv} {}"));
  ASSERT_TRUE(waitUntil([&heard] { return !heard.empty() && heard.back() == "other"; }));
  EXPECT_THAT(heard, ElementsAre("stays", "other"));
}

TEST(QtAppearance, readsThePortal) {
  FakePortal portal;
  portal.colorScheme = 1;
  portal.contrast = 1;
  QtAppearance appearance;
  EXPECT_TRUE(waitUntil([&] { return appearance.isDarkAqua(); }));
  EXPECT_TRUE(waitUntil([&] { return appearance.accessibilityDisplayShouldIncreaseContrast(); }));
}

TEST(QtAppearance, tellsOfChangesOnceTheyAreMadeAndOfNothingElse) {
  FakePortal portal;
  QtAppearance appearance;
  ASSERT_TRUE(waitUntil([&] { return portal.answered == 2; }));
  std::vector<std::pair<char, bool>> told;
  const Subscription dark =
      appearance.observeEffectiveAppearance([&] { told.emplace_back('d', appearance.isDarkAqua()); });
  const Subscription contrast = appearance.observeAccessibilityDisplayOptions(
      [&] { told.emplace_back('c', appearance.accessibilityDisplayShouldIncreaseContrast()); });
  EXPECT_TRUE(told.empty());
  portal.change("color-scheme", 1);
  portal.change("color-scheme", 1);
  portal.change("contrast", 1);
  portal.change("color-scheme", 2);
  portal.change("contrast", 0);
  ASSERT_TRUE(waitUntil([&] { return told.size() >= 4; }));
  EXPECT_THAT(told, ElementsAre(Pair('d', true), Pair('c', true), Pair('d', false), Pair('c', false)));
}

TEST(QtAppearance, withoutAPreferenceGoesByThePaletteAndFollowsIt) {
  const QPalette before = QGuiApplication::palette();
  QtAppearance appearance;
  QPalette dark(QColor(30, 30, 30));
  QGuiApplication::setPalette(dark);
  EXPECT_TRUE(waitUntil([&] { return appearance.isDarkAqua(); }));
  QGuiApplication::setPalette(QPalette(QColor(240, 240, 240)));
  EXPECT_TRUE(waitUntil([&] { return !appearance.isDarkAqua(); }));
  QGuiApplication::setPalette(before);
}

}  // namespace
}  // namespace quenlio
