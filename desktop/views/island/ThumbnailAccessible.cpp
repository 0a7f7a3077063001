#include "desktop/views/island/ThumbnailAccessible.h"

#include <QtWidgets/QAccessibleWidget>

#include "desktop/views/island/ThumbnailCell.h"
#include "desktop/views/island/ThumbnailStrip.h"

namespace quenlio {
namespace {

class AccessibleCell final : public QAccessibleWidget {
 public:
  explicit AccessibleCell(ThumbnailCell* cell) : QAccessibleWidget(cell, QAccessible::ListItem), cell_(*cell) {}

  [[nodiscard]] QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.selectable = true;
    state.multiSelectable = true;
    state.selected = cell_.isSelected();
    state.offscreen = !cell_.isInSight();
    const auto* strip = dynamic_cast<const ThumbnailStrip*>(cell_.parentWidget());
    state.focusable = true;
    state.focused = strip != nullptr && strip->hasFocus() && strip->currentCell() == &cell_;
    return state;
  }
  [[nodiscard]] QStringList actionNames() const override { return {pressAction()}; }
  void doAction(const QString& action) override {
    if (action == pressAction()) {
      cell_.click();
    }
  }

 private:
  ThumbnailCell& cell_;
};

class AccessibleStrip final : public QAccessibleWidget {
 public:
  explicit AccessibleStrip(ThumbnailStrip* strip) : QAccessibleWidget(strip, QAccessible::List), strip_(*strip) {}

  [[nodiscard]] QAccessibleInterface* focusChild() const override {
    ThumbnailCell* current = strip_.hasFocus() ? strip_.currentCell() : nullptr;
    return current != nullptr ? QAccessible::queryAccessibleInterface(current) : nullptr;
  }

 private:
  ThumbnailStrip& strip_;
};

QAccessibleInterface* interfaceOf(const QString& /*className*/, QObject* object) {
  if (auto* cell = dynamic_cast<ThumbnailCell*>(object)) {
    return new AccessibleCell(cell);
  }
  if (auto* strip = dynamic_cast<ThumbnailStrip*>(object)) {
    return new AccessibleStrip(strip);
  }
  return nullptr;
}

}  // namespace

void makeThumbnailsAccessible() {
  QAccessible::installFactory(interfaceOf);
}

void tellSelectionOf(ThumbnailCell& cell) {
  QAccessible::State changed;
  changed.selected = true;
  QAccessibleStateChangeEvent event(&cell, changed);
  QAccessible::updateAccessibility(&event);
}

void tellFocusOf(ThumbnailCell& cell) {
  QAccessibleEvent event(&cell, QAccessible::Focus);
  QAccessible::updateAccessibility(&event);
}

}  // namespace quenlio
