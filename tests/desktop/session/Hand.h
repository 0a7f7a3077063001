// The user's hand: a thread of its own that moves the pointer and strikes keys while this one handles events. What a
// program does in a loop inside of its loop, such as a drag or a question, goes on under the hand, which would
// otherwise wait for the end of it. It looks at the program only through the program's own loop.
#pragma once

#include <QtCore/QCoreApplication>
#include <QtCore/QDeadlineTimer>
#include <QtCore/QRect>
#include <QtCore/QSemaphore>
#include <atomic>
#include <functional>
#include <gtest/gtest.h>
#include <thread>

#include "tests/desktop/session/Desk.h"

namespace quenlio {

class Hand {
 public:
  // Does it all; handles events meanwhile.
  static void perform(const std::function<void()>& deeds) {
    std::atomic<bool> isDone = false;
    std::thread hand([&] {
      deeds();
      isDone = true;
    });
    EXPECT_TRUE(waitUntil([&isDone] { return isDone.load(); }, std::chrono::seconds(60)));
    hand.join();
  }

  // The rest is for the hand itself. What it does to the program, and what it sees of it:
  static void has(const std::function<void()>& action) {
    QMetaObject::invokeMethod(QCoreApplication::instance(), action, Qt::BlockingQueuedConnection);
  }
  [[nodiscard]] static bool sees(const std::function<bool()>& condition) {
    bool answer = false;
    has([&] { answer = condition(); });
    return answer;
  }
  [[nodiscard]] static bool waitsFor(const std::function<bool()>& condition) {
    const QDeadlineTimer end(std::chrono::seconds(10));
    QSemaphore pace;
    while (!sees(condition)) {
      if (end.hasExpired()) {
        return false;
      }
      pace.tryAcquire(1, 5);
    }
    return true;
  }

  static void xdotool(const QStringList& arguments) { EXPECT_TRUE(run(QStringLiteral("xdotool"), arguments)); }
  static void moveTo(int x, int y) { movePointer(x, y); }
  static void moveOver(const QRect& place) {
    moveTo(place.center().x() - 10, place.center().y() - 10);
    moveTo(place.center().x(), place.center().y());
  }
  static void press() { xdotool({QStringLiteral("mousedown"), QStringLiteral("1")}); }
  static void release() { xdotool({QStringLiteral("mouseup"), QStringLiteral("1")}); }
  static void strike(const char* key) { xdotool({QStringLiteral("key"), QString::fromLatin1(key)}); }
};

}  // namespace quenlio
