// The bubble of a tooltip: words on nearly black, and a pointer to what they are about. It is never in the pointer's
// way. Owned by the tooltips' host. Main thread.
#pragma once

#include <QtGui/QTextLayout>
#include <QtWidgets/QWidget>
#include <memory>

#include "core/base/WeakOwner.h"
#include "core/platform/Scheduler.h"
#include "core/tooltip/TooltipPlacement.h"

#include "desktop/views/common/Motion.h"

namespace quenlio {

class TooltipBubbleView final : public QWidget {
 public:
  // The scheduler and the clock outlive this.
  TooltipBubbleView(QWidget* root, Scheduler& scheduler, const Clock& clock);
  ~TooltipBubbleView() override;

  // The bubble's size without its pointer, when it says this and is no wider than that.
  [[nodiscard]] Size measure(const QString& text, double widest);
  // Where it stands, in the root view's points, saying what was measured last.
  void present(const TooltipPlacement& placement);
  void dismiss();

  [[nodiscard]] const QString& text() const { return text_; }
  // In the root view's points, without the pointer.
  [[nodiscard]] QRectF body() const { return body_.translated(pos()); }
  [[nodiscard]] const TooltipPlacement& placement() const { return placement_; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  WeakOwner<TooltipBubbleView> weak_{this};
  Motion opacity_;
  QString text_;
  std::unique_ptr<QTextLayout> lines_;
  Size size_;
  TooltipPlacement placement_;
  QRectF body_;  // in this widget's points
};

}  // namespace quenlio
