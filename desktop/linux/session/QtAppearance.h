// Light or dark, and how much contrast: what the desktop's portal says, else what the palette looks like. Followed
// live; nothing here waits for an answer. Main thread.
#pragma once

#include <QtCore/QObject>
#include <QtCore/QVariant>
#include <cstdint>
#include <optional>

#include "core/base/Observers.h"
#include "core/base/WeakOwner.h"
#include "core/platform/Application.h"

#include "desktop/linux/session/DBusSignal.h"

namespace quenlio {

class QtAppearance final : public Appearance, private QObject {
 public:
  QtAppearance();
  ~QtAppearance() override;

  [[nodiscard]] bool isDarkAqua() const override { return isDark_; }
  [[nodiscard]] bool accessibilityDisplayShouldIncreaseContrast() const override { return increaseContrast_; }
  // Told after the change.
  [[nodiscard]] Subscription observeEffectiveAppearance(std::function<void()> changed) override;
  [[nodiscard]] Subscription observeAccessibilityDisplayOptions(std::function<void()> changed) override;

 private:
  void read(const QString& key);
  void take(const QString& key, const QVariant& value);
  void update();
  bool eventFilter(QObject* object, QEvent* event) override;

  std::optional<std::uint32_t> colorScheme_;  // the portal's: 0 no preference, 1 dark, 2 light
  std::uint32_t contrast_ = 0;                // the portal's: 1 is higher
  bool isDark_ = false;
  bool increaseContrast_ = false;
  // Called once the change has been made, as notifications are.
  Observers<> appearanceObservers_;
  Observers<> contrastObservers_;
  std::optional<DBusSignal> settingChanged_;
  WeakOwner<QtAppearance> weak_{this};
};

}  // namespace quenlio
