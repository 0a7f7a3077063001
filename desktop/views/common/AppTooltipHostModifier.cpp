#include "desktop/views/common/AppTooltipHostModifier.h"

#include <QtCore/QEvent>
#include <utility>

namespace quenlio {

AppTooltipHostModifier::AppTooltipHostModifier(QWidget* root, Scheduler& scheduler, const Clock& clock)
    : root_(root), scheduler_(scheduler), bubble_(new TooltipBubbleView(root, scheduler, clock)) {
  root->installEventFilter(this);
}

AppTooltipHostModifier::~AppTooltipHostModifier() {
  delete bubble_;
}

void AppTooltipHostModifier::report(TooltipEntry entry) {
  entries_.report(std::move(entry));
  drawActive();
}

void AppTooltipHostModifier::withdraw(const Uuid& id) {
  entries_.withdraw(id);
  drawActive();
}

Rect<TooltipHostSpace> AppTooltipHostModifier::frameOf(const QWidget& view, const QRect& part) const {
  const QRectF frame(view.mapTo(root_, part.topLeft()), part.size());
  return {{frame.x(), frame.y()}, {frame.width(), frame.height()}};
}

void AppTooltipHostModifier::drawActive() {
  const auto active = root_->isVisible() ? entries_.active() : std::nullopt;
  if (active == activeEntry_) {
    return;
  }
  activeEntry_ = active;
  if (!active) {
    bubble_->dismiss();
    return;
  }
  const Size container{static_cast<double>(root_->width()), static_cast<double>(root_->height())};
  const Size bubbleSize = bubble_->measure(QString::fromStdString(active->text), container.width - 2 * kTooltipMargin);
  bubble_->present(TooltipPlacement::placement(active->rect, bubbleSize, container));
}

// In another size, and after it was away, the root has no help of before: nobody points at what that was for. What is
// urgent stays, and is placed anew.
bool AppTooltipHostModifier::eventFilter(QObject* object, QEvent* event) {
  const QEvent::Type type = event->type();
  if (object == root_ && (type == QEvent::Resize || type == QEvent::Hide || type == QEvent::Show)) {
    entries_.withdrawHelp();
    activeEntry_.reset();
    bubble_->dismiss();
    drawActive();
  }
  return QObject::eventFilter(object, event);
}

}  // namespace quenlio
