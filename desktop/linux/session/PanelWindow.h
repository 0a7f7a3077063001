// The widget behind a panel: a frameless, translucent top-level window that holds one content view, paints the panel's
// alpha and, where no compositor blends, stands opaque in a rounded shape. Owned by its QtPanel. Main thread.
#pragma once

#include <QtGui/QColor>
#include <QtWidgets/QWidget>
#include <functional>
#include <memory>

#include "core/platform/Panel.h"

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

  // Shows the window on all desktops, above others and in no list of windows. A window manager forgets that each time
  // the window goes, so every showing tells it again.
  void showOnAllDesktops();
  // A press on what takes no mouse events goes to whatever lies below.
  void setTakesMouse(bool takes);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  class Veil;

  void announceStates();
  void requestStates();
  void shape();

  QWidget* content_ = nullptr;  // a child
  Veil* veil_;                  // a child, above the content
  PanelSurface surface_;
  bool composited_ = true;
  std::function<bool(const KeyEvent&)> onKeyDown_;
};

}  // namespace quenlio
