// The status item and the popovers that hang from it. Main thread; owned by the composition root.
#pragma once

#include <functional>
#include <optional>
#include <utility>

#include "core/base/FileURL.h"

namespace quenlio {

class AppSettings;

// What the user does with the status item.
struct StatusBarCallbacks {
  std::function<void()> onTriggerScreenshot;
  std::function<void()> onOpenIslandTool;
  std::function<void(const std::optional<FileURL>&)> onOpenEditor;
  std::function<void()> onRefreshLocation;
  std::function<void()> onCheckUpdates;
  std::function<void()> onShowOnboarding;
  std::function<void(bool visible)> onStatusItemVisibilityChanged;
  std::function<void()> onQuit;
};

// There is no status item yet: the four steps of its setup do nothing, and no callback is ever called from here.
class StatusBarController {
 public:
  StatusBarController(AppSettings& settings, StatusBarCallbacks callbacks)
      : settings_(settings), callbacks_(std::move(callbacks)) {}

  void setupStatusItem(int /*retryCount*/) {}
  void startStatusItemRefreshTimer() {}
  void setupActionPopover() {}
  void setupSettingsPopover() {}

  [[nodiscard]] const StatusBarCallbacks& callbacks() const { return callbacks_; }
  [[nodiscard]] AppSettings& settings() const { return settings_; }

 private:
  AppSettings& settings_;
  StatusBarCallbacks callbacks_;
};

}  // namespace quenlio
