// The island alone on a fake platform: a real library and real settings, a panel without a window.
#pragma once

#include <algorithm>
#include <chrono>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/island/IslandLayoutMetrics.h"

#include "tests/harness/TestLibrary.h"

namespace quenlio {

using namespace std::chrono_literals;

class IslandRig : public TestLibrary {
 public:
  using Calls = std::vector<std::string>;

  // Makes the island, which comes up at once when it is enabled.
  IslandOverlayController& open() {
    auto dependencies = islandDependencies(platform.islandShell, platform.screens);
    dependencies.onRequestNewScreenshot = [this] { platform.log.add("requestNewScreenshot"); };
    dependencies.onRequestFolderAccess = [this] {
      platform.log.add("requestFolderAccess");
      if (duringFolderRequest) {
        duringFolderRequest();
      }
    };
    island = std::make_unique<IslandOverlayController>(std::move(dependencies));
    return *island;
  }
  // Makes the island and takes it away again, with nothing under way and the log empty.
  IslandOverlayController& openHidden() {
    open();
    island->hide({});
    platform.time.advanceBy(1s);
    platform.log.clear();
    return *island;
  }
  // Makes the island and lets it come up, with the entry over and the log empty.
  IslandOverlayController& openShown() {
    open();
    platform.time.advanceBy(200ms);
    platform.log.clear();
    return *island;
  }

  // A second screen to the right of the first, number 2, with the pointer on it.
  void addSecondScreen() {
    platform.screens.list.push_back({{{1280, 0}, {1000, 600}}, {{1280, 0}, {1000, 580}}, 2});
    platform.screens.pointer = {1300, 500};
  }

  // Adds a screenshot, pinned or not, without touching the island.
  void addItem(const std::string& name, bool isPinned = false, std::optional<DisplayID> display = std::nullopt) {
    platform.files.write("/shots/" + name);
    store.ingestScreenshot(FileURL("/shots/" + name), display);
    platform.time.runReady();
    store.items.mutate([&](auto& items) {
      std::ranges::find(items, FileURL("/shots/" + name), &ScreenshotItem::fileURL)->isPinned = isPinned;
    });
  }

  [[nodiscard]] FakePanel& panel() const { return *platform.islandShell.panel; }
  [[nodiscard]] const IslandOverlayRootViewModel& view() const { return *platform.islandShell.view; }
  [[nodiscard]] const IslandOverlayPresentationState& state() const { return island->presentationState(); }
  [[nodiscard]] Rect<Screen> corner() const {
    return IslandPlacement::desiredFrame(platform.screens.list.front(), settings.islandSize.get());
  }
  void hover(bool isInside) const { view().onHoverChanged(isInside); }
  // The pointer rests in the middle of where the panel comes up.
  void putPointerOnPanel() {
    const Rect<Screen> frame = corner();
    platform.screens.pointer = {frame.minX() + frame.size.width / 2, frame.minY() + frame.size.height / 2};
  }

  std::function<void()> duringFolderRequest;
  std::unique_ptr<IslandOverlayController> island;
};

class IslandTest : public testing::Test, public IslandRig {};

}  // namespace quenlio
