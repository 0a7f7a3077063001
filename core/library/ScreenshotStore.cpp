#include "core/library/ScreenshotStore.h"

#include <algorithm>
#include <utility>

#include "core/base/ImageExtensions.h"
#include "core/diagnostics/QuenlioReleaseTestDiagnostics.h"
#include "core/identity/AppPaths.h"
#include "core/platform/FileManager.h"
#include "core/platform/SystemLog.h"
#include "core/settings/AppSettings.h"

namespace quenlio {
namespace {

constexpr Size kThumbnailSize{280, 220};

}  // namespace

ScreenshotStore::ScreenshotStore(const Dependencies& dependencies)
    : dependencies_(dependencies),
      appSupportURL_(dependencies.paths.appSupportDirectoryURL()),
      pinned_(appSupportURL_.appending("pinned.json"), dependencies.files, dependencies.contents, dependencies.log) {
  createStorageIfNeeded();
  pinned_.load();
  // Told before the limit is stored, a prune still runs with the old one: a lower limit takes hold at the next ingest.
  maxHistoryObserver_ = dependencies_.settings.maxHistory.subscribe(
      weak_.bind([](ScreenshotStore& self, std::int64_t) { self.pruneIfNeeded(); }));
  syncReleaseTestDiagnostics();
}

void ScreenshotStore::createStorageIfNeeded() {
  const auto made = dependencies_.files.createDirectoryAtURL(appSupportURL_);
  if (!made.ok()) {
    dependencies_.log.NSLog("Failed to create app support directory: " + made.error().localizedDescription);
  }
}

// The URL is taken by value here and below: it may be that of an item, which goes with the list's next change.
void ScreenshotStore::ingestScreenshot(FileURL url, std::optional<DisplayID> sourceDisplayID) {
  if (!dependencies_.files.fileExistsAtPath(url) || !hasImageExtension(url)) {
    return;
  }
  const FileAttributes attributes = attributesOrNone(url);
  const ScreenshotItem item{
      .id = Uuid::random(),
      .fileURL = url,
      .createdAt = attributes.creationDate.value_or(dependencies_.clock.now()),
      .fileSize = attributes.size.value_or(0),
      .isPinned = pinned_.contains(url),
      .thumbnail = nullptr,
      .sourceDisplayID = sourceDisplayID,
  };
  insertAndSelect(item);
  pruneIfNeeded();
  pinned_.persist();
  makeThumbnailLater(std::move(url), item.id);
  syncReleaseTestDiagnostics();
}

// In the place of any item that has the same file.
void ScreenshotStore::insertAndSelect(const ScreenshotItem& item) {
  items.mutate([&](auto& list) { eraseOthersOfFile(list, item); });
  items.mutate([&](auto& list) { list.insert(list.begin(), item); });
  select(item.id);
}

// Such an item is that of a file that has vanished from its place, where this one is now.
void ScreenshotStore::eraseOthersOfFile(std::vector<ScreenshotItem>& list, const ScreenshotItem& item) {
  std::erase_if(list,
                [&](const ScreenshotItem& other) { return other.fileURL == item.fileURL && other.id != item.id; });
}

void ScreenshotStore::refreshEditedScreenshot(FileURL url) {
  const auto& list = items.get();
  const auto found = std::ranges::find(list, url, &ScreenshotItem::fileURL);
  if (found == list.end() || !dependencies_.files.fileExistsAtPath(url)) {
    return;
  }
  const FileAttributes attributes = attributesOrNone(url);
  const Uuid id = found->id;
  items.mutate([&, index = found - list.begin()](auto& edited) {
    ScreenshotItem& item = edited[static_cast<std::size_t>(index)];
    item.fileSize = attributes.size.value_or(item.fileSize);
    item.createdAt = attributes.creationDate.value_or(item.createdAt);
  });
  makeThumbnailLater(std::move(url), id);
  syncReleaseTestDiagnostics();
}

void ScreenshotStore::removeMissingFiles() {
  items.mutate([&](auto& list) {
    std::erase_if(list,
                  [&](const ScreenshotItem& item) { return !dependencies_.files.fileExistsAtPath(item.fileURL); });
  });
  std::set<std::string> paths;
  for (const ScreenshotItem& item : items.get()) {
    if (item.isPinned) {
      paths.insert(item.fileURL.path());
    }
  }
  pinned_.replaceAll(std::move(paths));
  pinned_.persist();
  normalizeSelection(std::nullopt, true);
}

void ScreenshotStore::pruneIfNeeded() {
  std::vector<ScreenshotItem> next;
  std::vector<ScreenshotItem> unpinned;
  for (const ScreenshotItem& item : items.get()) {
    (item.isPinned ? next : unpinned).push_back(item);
  }
  const auto limit = static_cast<std::size_t>(std::max<std::int64_t>(dependencies_.settings.maxHistory.get(), 1));
  const std::size_t room = limit > next.size() ? limit - next.size() : 0;
  unpinned.resize(std::min(unpinned.size(), room));
  next.insert(next.end(), unpinned.begin(), unpinned.end());
  items.set(next);
  std::ranges::stable_sort(next, std::ranges::greater{}, &ScreenshotItem::createdAt);
  items.set(std::move(next));
  normalizeSelection(std::nullopt, true);
}

void ScreenshotStore::makeThumbnailLater(FileURL url, const Uuid& id) {
  auto deliver = weak_.bind([url](ScreenshotStore& self, const Uuid& itemID, const ImageRef& thumbnail) {
    self.takeThumbnail(itemID, url, thumbnail);
  });
  const auto finish = [deliver, id, &scheduler = dependencies_.scheduler](const ImageRef& thumbnail) {
    scheduler.post([deliver, id, thumbnail] { deliver(id, thumbnail); });
  };
  const auto renderApart = [finish, url, alive = std::weak_ptr(isAlive_), &thumbnails = dependencies_.thumbnails] {
    if (!alive.expired()) {
      finish(thumbnails.render(url, kThumbnailSize));
    }
  };
  // What another process decodes goes where nothing else waits for it, however long it takes.
  const auto render = [finish, renderApart, url = std::move(url), alive = std::weak_ptr(isAlive_),
                       &thumbnails = dependencies_.thumbnails, &scheduler = dependencies_.scheduler] {
    if (alive.expired()) {
      return;
    }
    if (const auto thumbnail = thumbnails.renderHere(url, kThumbnailSize)) {
      finish(*thumbnail);
    } else {
      scheduler.detached(QualityOfService::background, renderApart);
    }
  };
  dependencies_.scheduler.detached(QualityOfService::utility, render);
}

void ScreenshotStore::takeThumbnail(const Uuid& id, const FileURL& renderedURL, const ImageRef& thumbnail) {
  const ScreenshotItem* item = find(id);
  if (item == nullptr) {
    return;
  }
  // A file that was renamed meanwhile may not have been found there, or another one in its stead.
  if (item->fileURL != renderedURL) {
    makeThumbnailLater(item->fileURL, id);
    return;
  }
  items.mutate([&](auto& list) { std::ranges::find(list, id, &ScreenshotItem::id)->thumbnail = thumbnail; });
}

void ScreenshotStore::syncReleaseTestDiagnostics() {
  dependencies_.diagnostics.update([&](QuenlioReleaseTestState& state) { fillReleaseTestState(state); });
}

void ScreenshotStore::fillReleaseTestState(QuenlioReleaseTestState& state) const {
  const auto& list = items.get();
  const ScreenshotItem* selected = selectedItem();
  state.screenshotCount = static_cast<std::int64_t>(list.size());
  state.latestScreenshotPath = list.empty() ? std::nullopt : std::optional(list.front().fileURL.path());
  state.selectedScreenshotPath = selected != nullptr ? std::optional(selected->fileURL.path()) : std::nullopt;
}

FileAttributes ScreenshotStore::attributesOrNone(const FileURL& url) const {
  const auto attributes = dependencies_.files.attributesOfItemAtPath(url);
  return attributes.ok() ? attributes.value() : FileAttributes{};
}

const ScreenshotItem* ScreenshotStore::find(const Uuid& id) const {
  const auto found = std::ranges::find(items.get(), id, &ScreenshotItem::id);
  return found != items.get().end() ? &*found : nullptr;
}

}  // namespace quenlio
