// Help for one control that the pointer rests on. It shows after the pointer has rested there for the delay, and goes
// at once when the pointer leaves, something is pressed or the control is hidden. Owned by the view of the control,
// after the control. Main thread.
#pragma once

#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtWidgets/QWidget>

#include "core/base/Uuid.h"
#include "core/base/WeakOwner.h"
#include "core/platform/Scheduler.h"

#include "desktop/views/common/AppTooltipHostModifier.h"

namespace quenlio {

class AppTooltipModifier final : public QObject {
 public:
  static constexpr Seconds kDelay{0.45};

  // No text is no tooltip. The anchor outlives this.
  AppTooltipModifier(AppTooltipHostModifier& host, QWidget& anchor, const QString& text, Seconds delay = kDelay);
  ~AppTooltipModifier() override;

  // A bubble that is shown gets the new text.
  void setText(const QString& text);
  [[nodiscard]] const QString& text() const { return text_; }

 protected:
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  void hoverIn();
  void goAway();
  void becomeVisible();
  [[nodiscard]] bool isVisible() const { return host_ != nullptr && host_->isReported(localID_); }

  QPointer<AppTooltipHostModifier> host_;
  QWidget& anchor_;
  QString text_;
  Seconds delay_;
  Uuid localID_ = Uuid::random();
  ScheduledTask pendingShow_;
  WeakOwner<AppTooltipModifier> weak_{this};
};

}  // namespace quenlio
