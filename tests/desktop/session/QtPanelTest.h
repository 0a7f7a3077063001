// A panel of the real display, with a red view in it.
#pragma once

#include <QtGui/QPainter>
#include <functional>
#include <gtest/gtest.h>
#include <memory>

#include "desktop/linux/session/QtPanel.h"

#include "tests/desktop/session/Desk.h"

namespace quenlio {

// Wholly red.
class RedView final : public QWidget {
 public:
  RedView() { setFocusPolicy(Qt::StrongFocus); }
  int painted = 0;

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    ++painted;
    QPainter(this).fillRect(rect(), Qt::red);
  }
};

class QtPanelTest : public testing::Test {
 protected:
  static constexpr double kSide = 232;

  void SetUp() override {
    movePointer(5, 5);
    auto view = std::make_unique<RedView>();
    view_ = view.get();
    panel_.setContentView(std::move(view));
  }

  // Bottom right with the island's margin, on a screen of 1280 by 800.
  [[nodiscard]] static Rect<Screen> corner() { return {{1280 - kSide - 12, 12}, {kSide, kSide}}; }
  static constexpr int kLeft = 1036;
  static constexpr int kTop = 556;

  [[nodiscard]] xcb_window_t id() const { return static_cast<xcb_window_t>(panel_.window().winId()); }

  [[nodiscard]] bool show() {
    panel_.setFrame(corner());
    panel_.orderFrontRegardless();
    return waitUntil([this] { return isMapped(id()) && geometryOnScreen(id()) == QRect(kLeft, kTop, 232, 232); });
  }

  [[nodiscard]] static bool waitForPixel(int x, int y, const std::function<bool(const QColor&)>& is) {
    return waitUntil([&] { return is(screenPixel(x, y)); });
  }
  static bool isRed(const QColor& color) { return color.red() > 250 && color.green() < 5 && color.blue() < 5; }

  UserIntent intent_;
  CompositorWatch compositor_;
  QtPanel panel_{{{0, 0}, {kSide, kSide}}, intent_, compositor_};
  RedView* view_ = nullptr;
};

}  // namespace quenlio
