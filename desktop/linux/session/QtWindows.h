// The application's windows and the pointer's event, seen by a filter on the application. Main thread.
//
// Menus, tooltips and what is dragged are no windows of the application's, though the toolkit shows each in one.
#pragma once

#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtGui/QWindow>
#include <string>

#include "core/platform/Windows.h"

QT_BEGIN_NAMESPACE
class QMouseEvent;
QT_END_NAMESPACE

namespace quenlio {

class QtWindows final : public Windows, private QObject {
 public:
  // Made after the application object.
  QtWindows();
  ~QtWindows() override;

  // Frames are without the shadows around them. A panel is never the main window, and at the level of the
  // status bar if it is above others.
  [[nodiscard]] std::vector<WindowInfo> visibleWindows() const override;
  // The press of the left button, or the last move since, while the button is down.
  [[nodiscard]] std::optional<PointerEvent> currentEvent() const override;
  [[nodiscard]] ModifierFlags modifierFlags() const override;
  [[nodiscard]] Seconds systemUptime() const override;

  // What tells the window manager that a program is started because of what the user did last, so that its window may
  // come to the front. Another one each time.
  [[nodiscard]] std::string makeStartupID();

 private:
  bool eventFilter(QObject* object, QEvent* event) override;
  void notePointer(const QWindow& window, const QMouseEvent& event);
  [[nodiscard]] WindowInfo infoFor(const QWindow& window) const;

  std::optional<PointerEvent> pointer_;
  QPointer<QWindow> lastMain_;  // the last one but panels that had the keyboard
  quint64 lastInput_ = 0;       // the X server's milliseconds
  unsigned startups_ = 0;
};

}  // namespace quenlio
