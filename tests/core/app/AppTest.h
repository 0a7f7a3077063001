// The whole application on a fake platform, with diagnostics on.
#pragma once

#include <algorithm>
#include <chrono>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "core/base/Json.h"

#include "tests/harness/TestPlatform.h"

namespace quenlio {

using namespace std::chrono_literals;

class AppRig {
 public:
  using Names = std::vector<std::string>;
  static constexpr const char* kDesktop = "/home/user/Desktop";

  AppRig() { platform.enableDiagnostics(); }
  explicit AppRig(std::uint32_t seed) : platform(seed) { platform.enableDiagnostics(); }

  AppDelegate& launch() {
    app.reset();  // before the next one is made: what both bind ends in reverse order
    app = platform.makeApp();
    app->applicationDidFinishLaunching();
    platform.time.runReady();
    return *app;
  }
  // A capture lands in the watched folder, and the desktop says so.
  std::string capture(const std::string& name = "Screenshot 2026-11-15.png") {
    const std::string path = std::string(kDesktop) + "/" + name;
    platform.files.write(path);
    platform.eventStreams.changed(path);
    return path;
  }
  // An arrival told to the application directly.
  void arrive(const std::string& path, std::optional<DisplayID> display = std::nullopt) {
    app->handleNewScreenshot(FileURL(path), display);
    platform.time.runReady();
  }
  [[nodiscard]] Names listed() {
    Names paths;
    for (const ScreenshotItem& item : app->store().items.get()) {
      paths.push_back(item.fileURL.path());
    }
    return paths;
  }
  [[nodiscard]] bool isIslandUp() const {
    return platform.islandShell.panel != nullptr && platform.islandShell.panel->isVisible();
  }
  [[nodiscard]] std::string eventText() const { return platform.files.content("/run/events.jsonl").value_or(""); }

  // The value under this key of each event of this name, in order.
  [[nodiscard]] Names eventValues(const std::string& name, const std::string& key) const {
    Names values;
    const std::string text = eventText();
    for (std::size_t at = 0; at < text.size();) {
      const std::size_t end = text.find("\n}\n", at);
      const json::Value event = json::read(text.substr(at, end + 2 - at)).value();
      if (event.at("name") == name) {
        values.push_back(event.at("metadata").at(key).get<std::string>());
      }
      at = end + 3;
    }
    return values;
  }

  TestPlatform platform;
  std::unique_ptr<AppDelegate> app;
};

class AppTest : public testing::Test, public AppRig {
 protected:
  // Whether the call is made for the writing of a report.
  static bool isOfAReport(const std::string& call) {
    return call == "writeAtomically /run/state.json" || call == "createDirectory /run";
  }
  // A call, and how many tasks and timers waited on all queues when it was made.
  using Step = std::pair<std::string, std::size_t>;
  // What the application does in there, without the writing of reports.
  std::vector<Step> stepsOf(const std::function<void()>& act) {
    std::vector<Step> steps;
    platform.log.whenAdded = [&](const std::string& call) {
      if (!isOfAReport(call)) {
        steps.emplace_back(call, platform.time.pending());
      }
    };
    act();
    platform.log.whenAdded = nullptr;
    return steps;
  }
  // The calls told since the last time, without those that write reports.
  Names calls() {
    Names told;
    std::ranges::remove_copy_if(platform.log.calls(), std::back_inserter(told), isOfAReport);
    platform.log.clear();
    return told;
  }
};

// A window of onboarding, for as long as one is said to be up.
struct OnboardingWindow final : FloatingThumbnailOnboardingController {};

}  // namespace quenlio
