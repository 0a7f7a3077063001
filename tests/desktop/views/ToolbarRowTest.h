// A toolbar of an island of medium size, light, with something selected, on virtual time.
#pragma once

#include <QtCore/QCoreApplication>
#include <QtGui/QEnterEvent>
#include <QtGui/QPainter>
#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <vector>

#include "desktop/views/island/ToolbarRow.h"

#include "tests/harness/VirtualTime.h"

namespace quenlio {

inline constexpr Seconds kSettled{0.5};  // longer than any of its animations

class ToolbarRowTest : public testing::Test {
 protected:
  ToolbarRowTest() {
    use(IslandSize::medium);
    row_.setHasSelectedItem(true);
    root_.show();
    root_.activateWindow();
    settle();
  }

  void use(IslandSize size) {
    const IslandLayoutMetrics& metrics = IslandLayoutMetrics::forSize(size);
    const int side = static_cast<int>(IslandLayoutMetrics::panelSide(size));
    root_.resize(side, side);
    row_.setGeometry(static_cast<int>(metrics.horizontalPadding), static_cast<int>(metrics.topPadding),
                     side - 2 * static_cast<int>(metrics.horizontalPadding), static_cast<int>(metrics.toolbarHeight));
    row_.apply(tokens_, metrics);
  }

  void settle() {
    time_.runReady();
    QCoreApplication::processEvents();
  }
  void pass(Seconds duration) {
    time_.advanceBy(duration);
    QCoreApplication::processEvents();
  }

  [[nodiscard]] QAbstractButton& control(std::string_view name) const {
    for (QAbstractButton* button : row_.findChildren<QAbstractButton*>()) {
      if (button->accessibleName().toStdString() == name) {
        return *button;
      }
    }
    throw std::out_of_range(std::string(name));
  }

  static void enter(QWidget& widget) {
    QEnterEvent event({5, 5}, {5, 5}, {5, 5});
    QCoreApplication::sendEvent(&widget, &event);
  }
  static void leave(QWidget& widget) {
    QEvent event(QEvent::Leave);
    QCoreApplication::sendEvent(&widget, &event);
  }
  static void mouse(QWidget& widget, QEvent::Type type) {
    const QPointF middle = QRectF(widget.rect()).center();
    QMouseEvent event(type, middle, widget.mapToGlobal(middle), Qt::LeftButton,
                      type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&widget, &event);
  }
  static bool key(QWidget& widget, Qt::Key code, QEvent::Type type = QEvent::KeyPress,
                  Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QKeyEvent event(type, code, modifiers);
    event.setAccepted(type != QEvent::ShortcutOverride);
    QCoreApplication::sendEvent(&widget, &event);
    return event.isAccepted();
  }
  static void type(QWidget& widget, Qt::Key code) {
    key(widget, code);
    key(widget, code, QEvent::KeyRelease);
  }

  // The row on white, two pixels a point.
  [[nodiscard]] QImage picture() {
    QImage image(row_.size() * 2, QImage::Format_RGB32);
    image.setDevicePixelRatio(2);
    image.fill(Qt::white);
    row_.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    return image;
  }
  // How dark it is there, 0 to 255, in the row's points.
  static int darkness(const QImage& picture, QPointF point) {
    return 255 - picture.pixelColor((point * 2).toPoint()).lightness();
  }
  // Beside the icon, where nothing but the pill is.
  [[nodiscard]] QPointF besideIcon(const QAbstractButton& button) const {
    return button.geometry().topLeft() + QPointF(button.width() / 2.0, 3);
  }
  [[nodiscard]] int pillUnder(const char* name) { return darkness(picture(), besideIcon(control(name))); }
  // The darkest pixel of the control's middle.
  [[nodiscard]] int inkOf(const char* name) {
    const QImage image = picture();
    const QRect area = control(name).geometry().adjusted(5, 5, -5, -5);
    int darkest = 0;
    for (int y = 2 * area.top(); y < 2 * area.bottom(); ++y) {
      for (int x = 2 * area.left(); x < 2 * area.right(); ++x) {
        darkest = std::max(darkest, 255 - image.pixelColor(x, y).lightness());
      }
    }
    return darkest;
  }

  VirtualTime time_;
  IslandThemeTokens tokens_ = IslandThemeTokens::forAppearance(IslandAppearanceStyle::light, false);
  std::vector<std::string> done_;
  QWidget root_;
  AppTooltipHostModifier tooltips_{&root_, time_, time_};
  ToolbarRow row_{&root_,
                  tooltips_,
                  time_,
                  {.onCopy = [this] { done_.emplace_back("copy"); },
                   .onEdit = [this] { done_.emplace_back("edit"); },
                   .onShare = [this] { done_.emplace_back("share"); },
                   .onViewInFolder = [this] { done_.emplace_back("view in folder"); },
                   .onTrash = [this] { done_.emplace_back("trash"); },
                   .onClose = [this] { done_.emplace_back("close"); },
                   .onWindowDrag = [this](Size, bool ended) { done_.emplace_back(ended ? "dropped" : "dragged"); }}};
};

}  // namespace quenlio
