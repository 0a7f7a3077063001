// What the painted buttons have in common: they are drawn anew when the pointer comes and goes, show the keyboard's
// focus only to who uses the keyboard, are pressed by Space and Enter, and are not focused by a click, which would take
// the keys away from the panel. Main thread.
#pragma once

#include <QtWidgets/QAbstractButton>

namespace quenlio {

class PaintedButton : public QAbstractButton {
 public:
  explicit PaintedButton(QWidget* parent);

 protected:
  [[nodiscard]] bool isHovered() const { return isHovered_; }
  [[nodiscard]] bool showsFocus() const { return showsFocus_; }

  // Whether the button, while it has the focus, keeps this key to itself: shortcuts do not see it then.
  [[nodiscard]] virtual bool usesKey(const QKeyEvent& key) const;

  bool event(QEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  bool isHovered_ = false;
  bool showsFocus_ = false;
};

}  // namespace quenlio
