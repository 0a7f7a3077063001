#include "desktop/views/island/PreviewAccessible.h"

#include <QtWidgets/QAccessibleWidget>

#include "desktop/views/island/MainPreview.h"

namespace quenlio {
namespace {

class AccessiblePreview final : public QAccessibleWidget {
 public:
  explicit AccessiblePreview(MainPreview* preview)
      : QAccessibleWidget(preview, QAccessible::Button), preview_(*preview) {}

  [[nodiscard]] QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.disabled = !preview_.hasItem();
    return state;
  }
  [[nodiscard]] QStringList actionNames() const override {
    return preview_.hasItem() ? QStringList{pressAction()} : QStringList{};
  }
  void doAction(const QString& action) override {
    if (action == pressAction()) {
      preview_.open();
    }
  }

 private:
  MainPreview& preview_;
};

QAccessibleInterface* interfaceOf(const QString& /*className*/, QObject* object) {
  auto* preview = dynamic_cast<MainPreview*>(object);
  return preview != nullptr ? new AccessiblePreview(preview) : nullptr;
}

}  // namespace

void makePreviewAccessible() {
  QAccessible::installFactory(interfaceOf);
}

}  // namespace quenlio
