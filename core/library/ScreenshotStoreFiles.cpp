// What ScreenshotStore does to the files of its items: the trash, the way back from it, and new names.
#include <algorithm>
#include <utility>

#include "core/library/ScreenshotStore.h"
#include "core/library/UniqueNames.h"
#include "core/platform/FileManager.h"
#include "core/platform/SystemLog.h"
#include "core/telemetry/AnalyticsTracker.h"

namespace quenlio {

void ScreenshotStore::moveToTrash(const ScreenshotItem& item) {
  const ScreenshotItem* listed = find(item.id);
  if (listed == nullptr) {
    return;
  }
  // A copy: the entry, which may be the argument too, goes with the next change of the list.
  const ScreenshotItem deleted = *listed;
  const auto trashed = dependencies_.files.trashItemAtURL(deleted.fileURL);
  if (!trashed.ok()) {
    dependencies_.log.NSLog("Failed to move file to trash: " + trashed.error().localizedDescription);
    return;
  }
  if (const auto& place = trashed.value()) {
    recentlyDeleted_.push({.item = deleted,
                           .originalURL = deleted.fileURL,
                           .trashedURL = *place,
                           .identity = dependencies_.files.identityOfItemAtPath(*place)});
  }
  items.mutate([&](auto& list) { std::erase_if(list, [&](const auto& other) { return other.id == deleted.id; }); });
  selectedItemIDs.mutate([&](auto& ids) { ids.erase(deleted.id); });
  if (selectedItemID.get() == deleted.id) {
    selectedItemID.set(std::nullopt);
  }
  dependencies_.analytics.track(AnalyticsEventName::screenshotDeleted, {{"path", deleted.fileURL.path()}});
  pinned_.remove(deleted.fileURL);
  pinned_.persist();
  normalizeSelection(std::nullopt, true);
  syncReleaseTestDiagnostics();
}

void ScreenshotStore::moveSelectedToTrash() {
  const std::vector<ScreenshotItem> selected = selectedItems();
  if (selected.empty()) {
    return;
  }
  for (const ScreenshotItem& item : selected) {
    moveToTrash(item);
  }
  normalizeSelection(std::nullopt, true);
}

bool ScreenshotStore::undoLastDeletion() {
  // Taken off whatever comes of it, so that a file that cannot come back does not bar the way to those before it.
  const auto record = recentlyDeleted_.takeLast();
  if (!record || !record->identity ||
      dependencies_.files.identityOfItemAtPath(record->trashedURL) != record->identity) {
    return false;
  }
  const FileURL destination = uniqueRestoreURL(record->originalURL, dependencies_.files);
  const auto moved = dependencies_.files.moveItemAtURL(record->trashedURL, destination);
  if (!moved.ok()) {
    dependencies_.log.NSLog("Failed to restore screenshot from trash: " + moved.error().localizedDescription);
    return false;
  }
  const FileAttributes attributes = attributesOrNone(destination);
  ScreenshotItem restored = record->item;
  restored.id = Uuid::random();
  restored.fileURL = destination;
  restored.createdAt = attributes.creationDate.value_or(restored.createdAt);
  restored.fileSize = attributes.size.value_or(restored.fileSize);
  insertAndSelect(restored);
  if (restored.isPinned) {
    pinned_.insert(destination);
  } else {
    pinned_.remove(destination);
  }
  pruneIfNeeded();
  pinned_.persist();
  if (restored.thumbnail == nullptr) {  // it was deleted before there was one
    makeThumbnailLater(destination, restored.id);
  }
  dependencies_.analytics.track(AnalyticsEventName::screenshotRestored, {{"path", destination.path()}});
  return true;
}

bool ScreenshotStore::rename(const ScreenshotItem& item, std::string_view newName) {
  const ScreenshotItem* listed = find(item.id);
  if (listed == nullptr) {
    return false;
  }
  ScreenshotItem renamed = *listed;
  const FileURL from = listed->fileURL;
  const auto preferred = renamedURL(from, newName);
  if (!preferred) {
    return false;
  }
  renamed.fileURL = uniqueRenameURL(from, *preferred, dependencies_.files);
  if (renamed.fileURL == from) {
    return true;
  }
  const auto moved = dependencies_.files.moveItemAtURL(from, renamed.fileURL);
  if (!moved.ok()) {
    dependencies_.log.NSLog("Failed to rename screenshot: " + moved.error().localizedDescription);
    return false;
  }
  renamed.fileSize = attributesOrNone(renamed.fileURL).size.value_or(renamed.fileSize);
  items.mutate([&](auto& list) {
    eraseOthersOfFile(list, renamed);
    *std::ranges::find(list, renamed.id, &ScreenshotItem::id) = renamed;
  });
  if (renamed.isPinned) {
    pinned_.remove(from);
    pinned_.insert(renamed.fileURL);
    pinned_.persist();
  }
  normalizeSelection(renamed.id, false);
  dependencies_.analytics.track(AnalyticsEventName::screenshotRenamed,
                                {{"from", from.lastPathComponent()}, {"to", renamed.fileURL.lastPathComponent()}});
  return true;
}

}  // namespace quenlio
