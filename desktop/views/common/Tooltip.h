// Help for a control that the pointer rests on, in a bubble that is drawn inside the view tree: a window of its own
// would want to be placed, raised and kept off other desktops like the panel itself. Main thread.
//
// The root view owns the host and makes it before its other views, so that it outlives them; a view owns the tooltips
// of its controls, after the controls.
#pragma once

#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtGui/QTextLayout>
#include <QtWidgets/QWidget>
#include <memory>
#include <optional>

#include "core/base/WeakOwner.h"
#include "core/platform/Scheduler.h"
#include "core/tooltip/TooltipPlacement.h"

#include "desktop/views/common/Motion.h"

namespace quenlio {

// Draws the one bubble that is shown, above all that is in the root view and never in the pointer's way.
class TooltipHost final : public QWidget {
 public:
  // The scheduler and the clock outlive this.
  TooltipHost(QWidget* root, Scheduler& scheduler, const Clock& clock);
  ~TooltipHost() override;

  [[nodiscard]] Scheduler& scheduler() const { return scheduler_; }

  // Shows this text beside the anchor, which is in the root view's points; in the place of any other's text. The owner
  // is only told apart from others.
  void present(const void* owner, const QString& text, const QRect& anchor);
  // Takes the owner's bubble away, if it is the one that is shown.
  void dismiss(const void* owner);
  [[nodiscard]] bool presents(const void* owner) const { return owner_ == owner; }

  // What is shown and where, in the root view's points. Nothing once the owner has taken it away, though it may still
  // be fading.
  struct Bubble {
    QString text;
    QRectF body;
    TooltipPlacement placement;
  };
  [[nodiscard]] const std::optional<Bubble>& bubble() const { return bubble_; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  void layOutText(const QString& text);
  void opacityChanged();

  WeakOwner<TooltipHost> weak_{this};
  Scheduler& scheduler_;
  Motion opacity_;
  const void* owner_ = nullptr;
  std::optional<Bubble> bubble_;
  std::unique_ptr<QTextLayout> lines_;  // of what is shown or fading
  Size textSize_;
  QPointF corner_;  // the bubble's, in this widget's points
  double pointerX_ = 0;
  bool pointsUp_ = false;
};

// One control's help: it shows after the pointer has rested on the control for the delay, and goes at once when the
// pointer leaves, something is pressed or the control is hidden.
class AppTooltip final : public QObject {
 public:
  static constexpr Seconds kDelay{0.45};

  // No text is no tooltip. The anchor outlives this.
  AppTooltip(TooltipHost& host, QWidget& anchor, const QString& text, Seconds delay = kDelay);
  ~AppTooltip() override;

  // A bubble that is shown gets the new text.
  void setText(const QString& text);
  [[nodiscard]] const QString& text() const { return text_; }

 protected:
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  void hoverIn();
  void goAway();
  void present();

  QPointer<TooltipHost> host_;
  QWidget& anchor_;
  QString text_;
  Seconds delay_;
  ScheduledTask pendingShow_;
  WeakOwner<AppTooltip> weak_{this};
};

}  // namespace quenlio
