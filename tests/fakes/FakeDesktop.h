// The small parts of a desktop: screens, appearance, keys, dialogs, notifications. Each holds state that a test sets,
// and tells the call log what it was asked to do.
#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "core/base/Observers.h"
#include "core/platform/Application.h"
#include "core/platform/DistributedNotificationCenter.h"
#include "core/platform/FileManager.h"
#include "core/platform/FileMetadata.h"
#include "core/platform/HotKeys.h"
#include "core/platform/Image.h"
#include "core/platform/LoginItem.h"
#include "core/platform/OpenPanel.h"
#include "core/platform/Panel.h"
#include "core/platform/ProcessInfo.h"
#include "core/platform/ScreenCaptureAccess.h"
#include "core/platform/Screens.h"
#include "core/platform/SystemLog.h"

#include "tests/fakes/CallLog.h"

namespace quenlio {

class FakeSystemLog final : public SystemLog {
 public:
  void NSLog(std::string_view message) override { lines.emplace_back(message); }
  std::vector<std::string> lines;
};

class FakeProcessInfo final : public ProcessInfo {
 public:
  [[nodiscard]] std::optional<std::string> environment(std::string_view name) const override {
    const auto found = variables.find(std::string(name));
    return found != variables.end() ? std::optional(found->second) : std::nullopt;
  }
  [[nodiscard]] const std::vector<std::string>& arguments() const override { return argumentList; }

  std::map<std::string, std::string> variables;
  std::vector<std::string> argumentList{"quenlio"};
};

class FakeMainBundle final : public MainBundle {
 public:
  [[nodiscard]] FileURL bundleURL() const override { return url; }
  [[nodiscard]] std::optional<std::string> infoString(std::string_view key) const override {
    const auto found = info.find(std::string(key));
    return found != info.end() ? std::optional(found->second) : std::nullopt;
  }

  FileURL url{"/build"};
  std::map<std::string, std::string> info;
};

class FakeDirectories final : public StandardDirectories {
 public:
  [[nodiscard]] FileURL homeDirectory() const override { return FileURL("/home/user"); }
  [[nodiscard]] FileURL temporaryDirectory() const override { return FileURL("/tmp"); }
  [[nodiscard]] std::optional<FileURL> applicationSupportDirectory() const override { return applicationSupport; }
  [[nodiscard]] std::optional<FileURL> desktopDirectory() const override { return desktop; }

  std::optional<FileURL> applicationSupport{FileURL("/home/user/support")};
  std::optional<FileURL> desktop{FileURL("/home/user/Desktop")};
};

class FakeMetadata final : public FileMetadata {
 public:
  [[nodiscard]] std::optional<MetadataValue> MDItemCopyAttribute(const FileURL& url,
                                                                 std::string_view attribute) const override {
    ++questions;
    const auto found = values.find(url.path());
    return attribute == kMDItemIsScreenCapture && found != values.end() ? std::optional(found->second) : std::nullopt;
  }
  std::map<std::string, MetadataValue> values;  // kMDItemIsScreenCapture by path
  mutable int questions = 0;
};

class FakeScreens final : public Screens {
 public:
  [[nodiscard]] std::vector<ScreenInfo> screens() const override { return list; }
  [[nodiscard]] std::optional<ScreenInfo> mainScreen() const override {
    return list.empty() ? std::nullopt : std::optional(list.front());
  }
  [[nodiscard]] Point<Screen> mouseLocation() const override { return pointer; }

  // One of 1280 by 800 points with a bar of 30 points at the bottom, number 1; the first is the main one.
  std::vector<ScreenInfo> list{{{{0, 0}, {1280, 800}}, {{0, 30}, {1280, 770}}, 1}};
  Point<Screen> pointer{100, 700};
};

class FakeApplication final : public Application {
 public:
  explicit FakeApplication(CallLog& log) : log_(log) {}
  void setActivationPolicy(ActivationPolicy policy) override {
    log_.add(policy == ActivationPolicy::accessory ? "setActivationPolicy accessory" : "setActivationPolicy regular");
  }
  void activateIgnoringOtherApps() override { log_.add("activateIgnoringOtherApps"); }
  void terminate() override { log_.add("terminate"); }

 private:
  CallLog& log_;
};

class FakeAppearance final : public Appearance {
 public:
  [[nodiscard]] bool isDarkAqua() const override { return isDark; }
  [[nodiscard]] bool accessibilityDisplayShouldIncreaseContrast() const override { return increasesContrast; }
  [[nodiscard]] Subscription observeEffectiveAppearance(std::function<void()> changed) override {
    return appearanceObservers.add(std::move(changed));
  }
  [[nodiscard]] Subscription observeAccessibilityDisplayOptions(std::function<void()> changed) override {
    return contrastObservers.add(std::move(changed));
  }

  // As the user makes it: observers are told once it is so, and not of what was so before.
  void setDark(bool dark) {
    if (std::exchange(isDark, dark) != dark) {
      appearanceObservers.call();
    }
  }
  void setIncreasesContrast(bool increases) {
    if (std::exchange(increasesContrast, increases) != increases) {
      contrastObservers.call();
    }
  }

  bool isDark = false;
  bool increasesContrast = false;
  Observers<> appearanceObservers;
  Observers<> contrastObservers;
};

class FakeEventMonitors final : public EventMonitors {
 public:
  [[nodiscard]] Subscription addLocalMonitorForKeyDown(std::function<bool(const KeyEvent&)> handler) override {
    return monitors.add([handler = std::move(handler)](const KeyEvent& event, bool& isSwallowed) {
      isSwallowed = isSwallowed || handler(event);
    });
  }
  // Whether a monitor swallows the event; those after it do not get to see it.
  [[nodiscard]] bool press(const KeyEvent& event) {
    bool isSwallowed = false;
    monitors.call(event, isSwallowed);
    return isSwallowed;
  }
  Observers<const KeyEvent&, bool&> monitors;
};

class FakeHotKeys final : public HotKeys {
 public:
  explicit FakeHotKeys(CallLog& log) : log_(log) {}
  [[nodiscard]] OSStatus RegisterEventHotKey(HotKeyCombination combination, HotKeyID identifier,
                                             EventHotKeyRef& reference) override {
    log_.add("RegisterEventHotKey");
    if (registerStatus != noErr) {
      return registerStatus;
    }
    if (isRegistered(combination) || std::ranges::count(takenElsewhere_, combination) > 0) {
      return kTakenStatus;
    }
    reference = ++lastReference_;
    keys[reference] = {combination, identifier};
    return noErr;
  }
  void UnregisterEventHotKey(EventHotKeyRef reference) override {
    log_.add("UnregisterEventHotKey");
    keys.erase(reference);
  }
  [[nodiscard]] OSStatus InstallEventHandler(std::function<OSStatus()> handler, EventHandlerRef& reference) override {
    log_.add("InstallEventHandler");
    if (installStatus != noErr) {
      return installStatus;
    }
    reference = ++lastReference_;
    handlers[reference] = std::move(handler);
    return noErr;
  }
  void RemoveEventHandler(EventHandlerRef reference) override {
    log_.add("RemoveEventHandler");
    handlers.erase(reference);
  }
  // Presses this key, registered or not. A handler that is removed meanwhile is not called any more.
  void press(HotKeyCombination combination) const {
    const auto snapshot = handlers;
    for (const auto& [reference, handler] : snapshot) {
      if (isRegistered(combination) && handlers.contains(reference)) {
        (void)handler();
      }
    }
  }
  // Presses every registered key once, if anybody handles it.
  void press() const {
    const auto snapshot = keys;
    for (const auto& [reference, key] : snapshot) {
      press(key.first);
    }
  }
  // Another program registers this key; false when it is taken already.
  [[nodiscard]] bool takeElsewhere(HotKeyCombination combination) {
    if (isRegistered(combination) || std::ranges::count(takenElsewhere_, combination) > 0) {
      return false;
    }
    takenElsewhere_.push_back(combination);
    return true;
  }

  static constexpr OSStatus kTakenStatus = -9878;
  OSStatus registerStatus = noErr;
  OSStatus installStatus = noErr;
  std::map<EventHotKeyRef, std::pair<HotKeyCombination, HotKeyID>> keys;
  std::map<EventHandlerRef, std::function<OSStatus()>> handlers;

 private:
  [[nodiscard]] bool isRegistered(HotKeyCombination combination) const {
    return std::ranges::any_of(keys, [&](const auto& entry) { return entry.second.first == combination; });
  }

  CallLog& log_;
  std::vector<HotKeyCombination> takenElsewhere_;
  std::uint32_t lastReference_ = 0;
};

class FakeNotificationCenter final : public DistributedNotificationCenter {
 public:
  explicit FakeNotificationCenter(CallLog& log) : log_(log) {}
  [[nodiscard]] Subscription addObserverForName(std::string_view name,
                                                std::function<void(const NotificationUserInfo&)> block) override {
    log_.add("addObserver " + std::string(name));
    auto observation = std::make_shared<Subscription>(observers[std::string(name)].add(std::move(block)));
    return Subscription([&log = log_, observation, key = std::string(name)] {
      log.add("removeObserver " + key);
      observation->cancel();
    });
  }
  void post(const std::string& name, const NotificationUserInfo& userInfo) { observers[name].call(userInfo); }
  std::map<std::string, Observers<const NotificationUserInfo&>> observers;

 private:
  CallLog& log_;
};

class FakeLoginItem final : public LoginItem {
 public:
  [[nodiscard]] LoginItemStatus status() const override {
    ++questions;
    return current;
  }
  PlatformResult<Done> registerItem() override { return change(LoginItemStatus::enabled); }
  PlatformResult<Done> unregisterItem() override { return change(LoginItemStatus::notRegistered); }

  LoginItemStatus current = LoginItemStatus::notRegistered;
  bool fails = false;
  int changes = 0;
  mutable int questions = 0;

 private:
  PlatformResult<Done> change(LoginItemStatus next) {
    ++changes;
    if (fails) {
      return PlatformError{"not allowed"};
    }
    current = next;
    return Done{};
  }
};

class FakeOpenPanel final : public OpenPanel {
 public:
  [[nodiscard]] std::optional<FileURL> runModal(const OpenPanelRequest& request) override {
    requests.push_back(request);
    return answer;
  }
  std::optional<FileURL> answer;
  std::vector<OpenPanelRequest> requests;
};

class FakeScreenCaptureAccess final : public ScreenCaptureAccess {
 public:
  [[nodiscard]] bool CGPreflightScreenCaptureAccess() const override { return isGranted; }
  bool isGranted = true;
};

struct FakeImage final : Image {
  FakeImage(FileURL source, Size canvas) : url(std::move(source)), canvasSize(canvas) {}
  [[nodiscard]] Size size() const override { return canvasSize; }
  FileURL url;
  Size canvasSize;
};

class FakeThumbnailRenderer final : public ThumbnailRenderer {
 public:
  [[nodiscard]] ImageRef render(const FileURL& url, Size canvas) override {
    rendered.push_back(url.path());
    return undecodable.contains(url.path()) ? nullptr : std::make_shared<FakeImage>(url, canvas);
  }
  [[nodiscard]] std::optional<ImageRef> renderHere(const FileURL& url, Size canvas) override {
    return decodedApart.contains(url.path()) ? std::nullopt : std::optional(render(url, canvas));
  }
  std::vector<std::string> rendered;
  std::set<std::string> undecodable;
  std::set<std::string> decodedApart;
};

}  // namespace quenlio
