// The library: the screenshots that this run knows of, newest first, and which of them are selected. Main thread; made
// by the composition root on first use and kept to the end of the run. The island observes it.
//
// The list itself is never saved. pinned.json is the only file it writes. No operation reports to the user or fails for
// its caller: a file that is missing or of another kind is passed over in silence, and failures of the file system are
// logged.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <set>
#include <string_view>
#include <vector>

#include "core/base/Published.h"
#include "core/base/WeakOwner.h"
#include "core/library/DeletedScreenshots.h"
#include "core/library/PinnedPaths.h"
#include "core/library/ScreenshotItem.h"

namespace quenlio {

class AnalyticsTracker;
class AppPaths;
class AppSettings;
class Clock;
class ItemHandOut;
class QuenlioReleaseTestDiagnostics;
class Scheduler;
struct FileAttributes;
struct QuenlioReleaseTestState;

class ScreenshotStore {
 public:
  struct Dependencies {
    AppSettings& settings;
    QuenlioReleaseTestDiagnostics& diagnostics;
    AnalyticsTracker& analytics;
    const AppPaths& paths;
    FileManager& files;
    FileContents& contents;
    const Clock& clock;
    Scheduler& scheduler;
    ThumbnailRenderer& thumbnails;
    ItemHandOut& handOut;
    SystemLog& log;
  };

  explicit ScreenshotStore(const Dependencies& dependencies);
  ScreenshotStore(const ScreenshotStore&) = delete;
  ScreenshotStore& operator=(const ScreenshotStore&) = delete;

  // In display order: with each arrival and each restored file sorted by creation date, newest first.
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
  // What a report of the run says of the library: how many items there are, the first and the selected one.
  void fillReleaseTestState(QuenlioReleaseTestState& state) const;
  // Selects one item alone and makes it the anchor.
  void select(const Uuid& id);
  // One step along the list from the primary item, or a range from the anchor to there. True when something was done:
  // at the ends nothing is. Without a selection the steps are counted from the first item.
  bool moveSelection(int step, bool extendSelection);
  // Selects from the anchor to the item, beside what is selected or in its place. The item becomes the primary one, and
  // the anchor stays. Does nothing for an item that is not listed.
  void selectRange(const ScreenshotItem& to, bool additive);
  // Takes the item into the selection, as its primary item and anchor, or out of it. The selection may end up empty.
  void toggleSelection(const ScreenshotItem& item);
  // Repairs the selection after the list has changed. A preferred item that is listed becomes the primary one. Without
  // any selection left, the first item is taken unless an empty selection is allowed.
  void normalizeSelection(std::optional<Uuid> preferredSelectedID, bool allowEmpty);

  // Moves the item's file to the trash and drops it from the list and from the selection, which keeps the rest or is
  // left empty. A file that cannot be moved stays, listed and selected.
  void moveToTrash(const ScreenshotItem& item);
  // The same with each of selectedItems(), in list order. Each is a deletion of its own.
  void moveSelectedToTrash();
  // Brings the file that was deleted last back to where it was, under a name of its own when the old one is taken, and
  // selects it alone as a new item. Another file that lies in its place in the trash stays there. True when it came
  // back. Whatever comes of it, the next call is about the deletion before.
  bool undoLastDeletion();
  // Renames the item's file, which keeps its folder and its extension: renamedURL() tells what becomes of the typed
  // name. Where another file has it, a number is added. True when the file has its new name or had it already; false,
  // with nothing changed, for an item that is not listed, a name that is none and a file that cannot be moved.
  bool rename(const ScreenshotItem& item, std::string_view newName);

  // Hand selectedItems() to the clipboard, to a menu of other programs, to the file manager.
  void copySelection();
  void shareSelection();
  void revealSelectionInFinder();

 private:
  void createStorageIfNeeded();
  void insertAndSelect(const ScreenshotItem& item);
  void startRange(const Uuid& id);  // as select(), with the anchor before the announcement of all that are selected
  void pruneIfNeeded();
  static void eraseOthersOfFile(std::vector<ScreenshotItem>& list, const ScreenshotItem& item);
  void makeThumbnailLater(FileURL url, const Uuid& id);
  void takeThumbnail(const Uuid& id, const FileURL& renderedURL, const ImageRef& thumbnail);
  void syncReleaseTestDiagnostics();
  [[nodiscard]] FileAttributes attributesOrNone(const FileURL& url) const;
  [[nodiscard]] const ScreenshotItem* find(const Uuid& id) const;
  [[nodiscard]] std::optional<std::size_t> indexOf(const Uuid& id) const;
  [[nodiscard]] std::set<Uuid> idsBetween(std::size_t oneEnd, std::size_t otherEnd) const;  // both included
  [[nodiscard]] std::optional<Uuid> firstSelectedID() const;                                // in list order

  Dependencies dependencies_;
  FileURL appSupportURL_;
  PinnedPaths pinned_;
  DeletedScreenshots recentlyDeleted_;
  std::shared_ptr<const bool> isAlive_ = std::make_shared<const bool>(true);  // seen from other threads
  Subscription maxHistoryObserver_;
  WeakOwner<ScreenshotStore> weak_{this};
};

}  // namespace quenlio
