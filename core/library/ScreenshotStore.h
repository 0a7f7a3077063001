// The library: the screenshots that this run knows of, newest first, and which of them are selected. Main thread; made
// by the composition root on first use and kept to the end of the run. The island observes it.
//
// The list itself is never saved. pinned.json is the only file it writes. No operation reports to the user or fails for
// its caller: a file that is missing or of another kind is passed over in silence, and failures of the file system are
// logged.
#pragma once

#include <memory>
#include <optional>
#include <set>
#include <vector>

#include "core/base/Published.h"
#include "core/base/WeakOwner.h"
#include "core/library/PinnedPaths.h"
#include "core/library/ScreenshotItem.h"

namespace quenlio {

class AppPaths;
class AppSettings;
class Clock;
class QuenlioReleaseTestDiagnostics;
class Scheduler;

class ScreenshotStore {
 public:
  struct Dependencies {
    AppSettings& settings;
    QuenlioReleaseTestDiagnostics& diagnostics;
    const AppPaths& paths;
    FileManager& files;
    FileContents& contents;
    const Clock& clock;
    Scheduler& scheduler;
    ThumbnailRenderer& thumbnails;
    SystemLog& log;
  };

  explicit ScreenshotStore(const Dependencies& dependencies);
  ScreenshotStore(const ScreenshotStore&) = delete;
  ScreenshotStore& operator=(const ScreenshotStore&) = delete;

  // In display order: by creation date, newest first, no file twice.
  Published<std::vector<ScreenshotItem>> items;
  Published<std::optional<Uuid>> selectedItemID;  // the primary one, which the preview shows
  Published<std::set<Uuid>> selectedItemIDs;      // all of them
  std::optional<Uuid> selectionAnchorID;          // the fixed end of a range

  // Adds one file and selects it alone. A path that is listed already gets a new identity. Its thumbnail follows.
  void ingestScreenshot(FileURL url, std::optional<DisplayID> sourceDisplayID);
  // Brings an item up to date after the editor has rewritten its file.
  void refreshEditedScreenshot(FileURL url);
  // Drops items whose file is gone, and every pin without an item.
  void removeMissingFiles();

  // The primary item; without one the first that is selected, without one the first of the list. Valid until items
  // changes; nullptr when the list is empty.
  [[nodiscard]] const ScreenshotItem* selectedItem() const;
  // The selected items in list order; without a selection, selectedItem() alone.
  [[nodiscard]] std::vector<ScreenshotItem> selectedItems() const;
  // Selects one item alone and makes it the anchor.
  void select(const Uuid& id);
  // Repairs the selection after the list has changed. A preferred item that is listed becomes the primary one. Without
  // any selection left, the first item is taken unless an empty selection is allowed.
  void normalizeSelection(std::optional<Uuid> preferredSelectedID, bool allowEmpty);

 private:
  void createStorageIfNeeded();
  void pruneIfNeeded();
  void makeThumbnailLater(FileURL url, const Uuid& id);
  void syncReleaseTestDiagnostics();
  [[nodiscard]] const ScreenshotItem* find(const Uuid& id) const;

  Dependencies dependencies_;
  FileURL appSupportURL_;
  PinnedPaths pinned_;
  std::shared_ptr<const bool> isAlive_ = std::make_shared<const bool>(true);  // seen from other threads
  Subscription maxHistoryObserver_;
  WeakOwner<ScreenshotStore> weak_{this};
};

}  // namespace quenlio
