#include "desktop/views/common/AppTooltipModifier.h"

#include <QtCore/QEvent>

namespace quenlio {

AppTooltipModifier::AppTooltipModifier(AppTooltipHostModifier& host, QWidget& anchor, const QString& text,
                                       Seconds delay)
    : host_(&host), anchor_(anchor), text_(text), delay_(delay) {
  anchor.installEventFilter(this);
}

AppTooltipModifier::~AppTooltipModifier() {
  goAway();
}

void AppTooltipModifier::setText(const QString& text) {
  if (text == text_) {
    return;
  }
  text_ = text;
  if (text_.isEmpty()) {
    goAway();
  } else if (isVisible()) {
    becomeVisible();
  }
}

bool AppTooltipModifier::eventFilter(QObject* object, QEvent* event) {
  switch (event->type()) {
    case QEvent::Enter:
      hoverIn();
      break;
    case QEvent::Leave:
    case QEvent::Hide:
    case QEvent::MouseButtonPress:
      goAway();
      break;
    case QEvent::Move:
    case QEvent::Resize:
      if (isVisible()) {
        becomeVisible();
      }
      break;
    default:
      break;
  }
  return QObject::eventFilter(object, event);
}

void AppTooltipModifier::hoverIn() {
  if (host_ != nullptr && !text_.isEmpty()) {
    pendingShow_ = host_->scheduler().after(delay_, weak_.bind([](AppTooltipModifier& self) { self.becomeVisible(); }));
  }
}

void AppTooltipModifier::goAway() {
  pendingShow_.cancel();
  if (host_ != nullptr) {
    host_->withdraw(localID_);
  }
}

void AppTooltipModifier::becomeVisible() {
  if (host_ != nullptr && anchor_.isVisible()) {
    host_->report({.id = localID_, .text = text_.toStdString(), .rect = host_->frameOf(anchor_, anchor_.rect())});
  }
}

}  // namespace quenlio
