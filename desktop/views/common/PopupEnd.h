// Tells when no menu, or other popup of the program, is open any more. A popup takes the pointer from every view, also
// from the one that it still rests on, and no view hears where the pointer is when the popup closes. Main thread.
#pragma once

#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtWidgets/QWidget>
#include <functional>
#include <utility>

namespace quenlio {

class PopupEnd final : private QObject {
 public:
  explicit PopupEnd(std::function<void()> onEnd) : onEnd_(std::move(onEnd)) {}

  // Whether a popup is open, whose end will be told.
  bool isAwaited();

 private:
  bool eventFilter(QObject* object, QEvent* event) override;

  std::function<void()> onEnd_;
  QPointer<QWidget> popup_;  // the one that is waited for
};

}  // namespace quenlio
