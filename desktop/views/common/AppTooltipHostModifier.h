// Draws the one active tooltip of a view tree, above all that is in its root view: help is drawn inside the tree, since
// a window of its own would want to be placed, raised and kept off other desktops like the panel itself. Owned by the
// root view, which makes it before its other views, so that it outlives them. Main thread.
#pragma once

#include <QtCore/QObject>
#include <optional>

#include "core/platform/Scheduler.h"
#include "core/tooltip/TooltipEntries.h"

#include "desktop/views/common/TooltipBubbleView.h"

namespace quenlio {

class AppTooltipHostModifier final : public QObject {
 public:
  // All outlive this.
  AppTooltipHostModifier(QWidget* root, Scheduler& scheduler, const Clock& clock);
  ~AppTooltipHostModifier() override;

  [[nodiscard]] QWidget& root() const { return *root_; }
  [[nodiscard]] Scheduler& scheduler() const { return scheduler_; }

  void report(TooltipEntry entry);
  void withdraw(const Uuid& id);
  [[nodiscard]] bool isReported(const Uuid& id) const { return entries_.contains(id); }
  // Of a part of one of the root's views, in the root view's points.
  [[nodiscard]] Rect<TooltipHostSpace> frameOf(const QWidget& view, const QRect& part) const;

  [[nodiscard]] const TooltipBubbleView& bubble() const { return *bubble_; }

 protected:
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  void drawActive();

  QWidget* root_;
  Scheduler& scheduler_;
  TooltipEntries entries_;
  std::optional<TooltipEntry> activeEntry_;
  TooltipBubbleView* bubble_;  // a child of the root view
};

}  // namespace quenlio
