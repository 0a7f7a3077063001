// The widget behind a panel: a frameless, translucent top-level window that holds one content view and paints the
// panel's shadow and alpha. Where no compositor blends it stands opaque in a rounded shape. Owned by its QtPanel. Main
// thread.
//
// The shadow needs room: the window is larger than the panel by the widget's contents margins, and takes the mouse only
// where the panel is.
//
// A window manager puts the window that fills the screen above all others, and all windows away while the user looks at
// the desktop. Then the panel is shown past the window manager, which does nothing more for it.
#pragma once

#include <QtCore/QBasicTimer>
#include <QtGui/QColor>
#include <QtWidgets/QWidget>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "core/platform/Panel.h"

#include "desktop/linux/session/PanelHints.h"
#include "desktop/linux/session/PanelKeyboard.h"
#include "desktop/linux/session/X11.h"
#include "desktop/render/SoftShadow.h"

namespace quenlio {

// What the panel must know of its content's look: the shape of its body, which has continuous corners, and its shadow.
struct PanelSurface {
  double cornerRadius = 0;  // points
  QColor tone{Qt::white};   // opaque, under everything that the content paints, where there is no compositor
  std::vector<ShadowLayer> shadow{};
  bool operator==(const PanelSurface&) const = default;
};

class PanelWindow final : public QWidget {
 public:
  PanelWindow(const QRect& frame, PanelLayer layer);
  [[nodiscard]] PanelLayer layer() const { return layer_; }

  void setContent(std::unique_ptr<QWidget> content);
  [[nodiscard]] QWidget* content() const { return content_; }
  void setSurface(const PanelSurface& surface);
  void setComposited(bool composited);
  void setBlursBehind(bool blursBehind);
  // Where the panel stands, without its shadow, in Qt's coordinates.
  void setFrame(const QRect& frame);
  [[nodiscard]] QRect frame() const { return geometry() - contentsMargins(); }
  // 0 to 1. Without a compositor nothing can be blended, and the panel is shown as it is.
  void setAlpha(double alpha);
  void setOnKeyDown(std::function<bool(const KeyEvent&)> onKeyDown) { onKeyDown_ = std::move(onKeyDown); }

  // What a wish to close the window that comes from without leads to; the window itself stays.
  void setOnClose(std::function<void()> onClose) { onClose_ = std::move(onClose); }

  // Shows the window on all desktops, above others and in no list of windows. A window manager forgets that each time
  // the window goes, so every showing tells it again, and decides anew whether to go past it. That may take a moment,
  // when the window manager has not yet noticed that the window went.
  void showOnAllDesktops();
  // Whether the window is shown, but nobody can see it: it is below a window that fills the screen, or the window
  // manager has put it away. Showing it anew brings it back.
  [[nodiscard]] bool isOutOfSight() const;
  void takeKeyboard(PanelKeyboard::Reason reason);
  // Gives a keyboard that came with the pointer, and that nobody has used, back to whom it was taken from.
  void returnUnusedKeyboard() { keyboard_.returnUnused(); }
  // Hides the window, and gives the keyboard back to whom it was taken from.
  void orderOut();
  // A press on what takes no mouse events goes to whatever lies below.
  void setTakesMouse(bool takes);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  bool nativeEvent(const QByteArray& eventType, void* message, qintptr* result) override;
  void timerEvent(QTimerEvent* event) override;
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  class Cover;

  [[nodiscard]] xcb_window_t id() const { return static_cast<xcb_window_t>(winId()); }
  // Whether the window manager would let nobody see it, were it left to do so.
  [[nodiscard]] bool isKeptFromSight() const;
  [[nodiscard]] bool isManaged() const;
  void showNow(bool bypasses);
  void setBypassesWindowManager(bool bypasses);
  void useShadow();
  void layOut();
  // Tells the server which part of the window is seen, takes the mouse and is to be blurred behind.
  void shape();
  void shapeInput();
  [[nodiscard]] QRegion bodyInPixels() const;

  const PanelLayer layer_;
  QWidget* content_ = nullptr;  // a child
  Cover* cover_;                // a child, above the content
  PanelSurface surface_;
  bool composited_ = true;
  bool blursBehind_ = false;
  bool takesMouse_ = true;
  bool bypassesWindowManager_ = false;
  QBasicTimer wait_;  // runs until the window manager has let go of the window, which is then shown past it
  int triesLeft_ = 0;
  PanelKeyboard keyboard_{*this};
  std::optional<PanelKeyboard::Reason> wantsKeyboard_;  // as soon as it is shown
  std::function<bool(const KeyEvent&)> onKeyDown_;
  std::function<void()> onClose_;
};

}  // namespace quenlio
