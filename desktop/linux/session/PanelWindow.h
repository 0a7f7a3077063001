// The widget behind a panel: a frameless, translucent top-level window that holds one content view, paints the panel's
// alpha and, where no compositor blends, stands opaque in a rounded shape. Owned by its QtPanel. Main thread.
//
// A window manager puts the window that fills the screen above all others. Where there is one, the panel is shown past
// the window manager, which then does nothing more for it: it has to take the keyboard, and to give it back, by itself.
#pragma once

#include <QtCore/QBasicTimer>
#include <QtGui/QColor>
#include <QtWidgets/QWidget>
#include <functional>
#include <memory>

#include "core/platform/Panel.h"

#include "desktop/linux/session/X11.h"

namespace quenlio {

// What the panel must know of its content's look in order to stand without a compositor.
struct PanelSurface {
  double cornerRadius = 0;  // points
  QColor tone{Qt::white};   // opaque, under everything that the content paints
  bool operator==(const PanelSurface&) const = default;
};

class PanelWindow final : public QWidget {
 public:
  PanelWindow();

  void setContent(std::unique_ptr<QWidget> content);
  [[nodiscard]] QWidget* content() const { return content_; }
  void setSurface(const PanelSurface& surface);
  void setComposited(bool composited);
  // 0 to 1. Without a compositor nothing can be blended, and the panel is shown as it is.
  void setAlpha(double alpha);
  void setOnKeyDown(std::function<bool(const KeyEvent&)> onKeyDown) { onKeyDown_ = std::move(onKeyDown); }

  // What a wish to close the window that comes from without leads to; the window itself stays.
  void setOnClose(std::function<void()> onClose) { onClose_ = std::move(onClose); }

  // Shows the window on all desktops, above others and in no list of windows. A window manager forgets that each time
  // the window goes, so every showing tells it again, and decides anew whether to go past it. That may take a moment,
  // when the window manager has not yet noticed that the window went.
  void showOnAllDesktops();
  // Whether the window is shown, but below a window that fills the screen: showing it anew brings it above.
  [[nodiscard]] bool isCovered() const;
  void takeKeyboard();
  // Hides the window, and gives the keyboard back to whom it was taken from.
  void orderOut();
  // A press on what takes no mouse events goes to whatever lies below.
  void setTakesMouse(bool takes);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void timerEvent(QTimerEvent* event) override;
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  class Veil;

  [[nodiscard]] xcb_window_t id() const { return static_cast<xcb_window_t>(winId()); }
  [[nodiscard]] bool isBelowFullScreenWindow() const;
  [[nodiscard]] bool isManaged() const;
  void showNow(bool bypasses);
  void setBypassesWindowManager(bool bypasses);
  void giveKeyboardBack();
  void shape();

  QWidget* content_ = nullptr;  // a child
  Veil* veil_;                  // a child, above the content
  PanelSurface surface_;
  bool composited_ = true;
  bool bypassesWindowManager_ = false;
  QBasicTimer wait_;  // runs until the window manager has let go of the window, which is then shown past it
  int triesLeft_ = 0;
  bool wantsKeyboard_ = false;              // as soon as it is shown
  xcb_window_t keyboardsOwner_ = XCB_NONE;  // from whom it was taken past the window manager
  std::function<bool(const KeyEvent&)> onKeyDown_;
  std::function<void()> onClose_;
};

}  // namespace quenlio
