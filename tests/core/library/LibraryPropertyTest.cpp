// What holds of the library whatever happens to it.
#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include "tests/core/library/LibraryTest.h"

namespace quenlio {
namespace {

std::string nameOf(int file) {
  return std::to_string(file) + ".png";
}

int anyFile() {
  return *rc::gen::inRange(0, 8);
}

// Something that can happen to a library. Whether it ends in a prune that knows the present limit is the answer.
bool happen(LibraryRig& rig) {
  ScreenshotStore& store = *rig.store;
  const int file = anyFile();
  switch (*rc::gen::inRange(0, 7)) {
    case 0:
    case 1: {
      // Few different dates, so that many are equal; some files have none.
      const FileURL url = rig.file(nameOf(file), *rc::gen::inRange(-3, 3));
      if (*rc::gen::arbitrary<bool>()) {
        rig.platform.files.setCreationDate(url.path(), std::nullopt);
      }
      store.ingestScreenshot(url, std::nullopt);
      return true;
    }
    case 2:
      rig.platform.files.remove("/shots/" + nameOf(file));
      return false;
    case 3:
      rig.settings.maxHistory.set(*rc::gen::inRange<std::int64_t>(-1, 7));
      return false;
    case 4:
      store.removeMissingFiles();
      return false;
    case 5:
      rig.platform.time.advanceBy(Seconds(*rc::gen::inRange(0, 3)));
      return false;
    default: {
      std::set<Uuid> some;
      for (const ScreenshotItem& item : store.items.get()) {
        if (*rc::gen::arbitrary<bool>()) {
          some.insert(item.id);
        }
      }
      if (!some.empty()) {
        store.select(*some.begin());
        store.selectedItemIDs.set(some);
      }
      return false;
    }
  }
}

std::size_t pinnedCount(const ScreenshotStore& store) {
  return static_cast<std::size_t>(std::ranges::count_if(store.items.get(), &ScreenshotItem::isPinned));
}

void checkInvariants(const ScreenshotStore& store) {
  const auto& items = store.items.get();
  RC_ASSERT(std::ranges::is_sorted(items, std::ranges::greater{}, &ScreenshotItem::createdAt));
  std::set<FileURL> urls;
  std::set<Uuid> ids;
  for (const ScreenshotItem& item : items) {
    RC_ASSERT(urls.insert(item.fileURL).second);
    RC_ASSERT(ids.insert(item.id).second);
  }
  RC_ASSERT(std::ranges::includes(ids, store.selectedItemIDs.get()));
  if (const auto& primary = store.selectedItemID.get()) {
    RC_ASSERT(store.selectedItemIDs.get().contains(*primary));
    RC_ASSERT(store.selectionAnchorID.has_value());
    RC_ASSERT(ids.contains(*store.selectionAnchorID));
  } else {
    RC_ASSERT(store.selectedItemIDs.get().empty());
  }
}

RC_GTEST_PROP(LibraryProperty, isSortedWithoutDoublesWithinItsLimitAndSelectsOnlyWhatIsListed, ()) {
  LibraryRig rig;
  rig.pin(*rc::gen::container<std::vector<std::string>>(rc::gen::map(rc::gen::inRange(0, 8), nameOf)));
  rig.open();
  const int steps = *rc::gen::inRange(0, 40);
  for (int step = 0; step < steps; ++step) {
    const std::size_t before = rig.store->items.get().size();
    const bool prunes = happen(rig);
    const std::size_t count = rig.store->items.get().size();
    if (prunes) {
      const auto limit = static_cast<std::size_t>(std::max<std::int64_t>(rig.settings.maxHistory.get(), 1));
      RC_ASSERT(count <= std::max(limit, pinnedCount(*rig.store)));
    } else {
      RC_ASSERT(count <= before);
    }
    checkInvariants(*rig.store);
  }
}

RC_GTEST_PROP(LibraryProperty, everyListedFileIsThereAfterTheMissingWereRemoved, ()) {
  LibraryRig rig;
  rig.open();
  const int steps = *rc::gen::inRange(0, 40);
  for (int step = 0; step < steps; ++step) {
    (void)happen(rig);
  }
  rig.store->removeMissingFiles();
  for (const ScreenshotItem& item : rig.store->items.get()) {
    RC_ASSERT(rig.platform.files.fileExistsAtPath(item.fileURL));
  }
  // What is pinned on disk is exactly what is listed and pinned.
  std::set<std::string> pinned;
  for (const ScreenshotItem& item : rig.store->items.get()) {
    if (item.isPinned) {
      pinned.insert(item.fileURL.lastPathComponent());
    }
  }
  RC_ASSERT(rig.pinnedOnDisk() == pinned);
}

RC_GTEST_PROP(LibraryProperty, thumbnailsLandOnTheirOwnItemInWhateverOrderTheyAreMade, (std::uint32_t seed)) {
  LibraryRig rig(seed);
  rig.open();
  for (int file = 0; file < 8; file += 2) {
    rig.platform.thumbnails.decodedApart.insert("/shots/" + nameOf(file));
  }
  // The first item on which each image was seen, and whose file it shows.
  std::map<const Image*, Uuid> owners;
  std::vector<ImageRef> kept;  // so that no address is used twice
  bool isWrong = false;
  const Subscription watch = rig.store->items.subscribe([&](const std::vector<ScreenshotItem>& items) {
    for (const ScreenshotItem& item : items) {
      if (item.thumbnail) {
        kept.push_back(item.thumbnail);
        isWrong = isWrong || owners.try_emplace(item.thumbnail.get(), item.id).first->second != item.id ||
                  dynamic_cast<const FakeImage&>(*item.thumbnail).url != item.fileURL;
      }
    }
  });
  const int steps = *rc::gen::inRange(0, 40);
  for (int step = 0; step < steps; ++step) {
    if (*rc::gen::inRange(0, 4) == 0) {
      rig.store->refreshEditedScreenshot(FileURL("/shots/" + nameOf(anyFile())));
    } else {
      (void)happen(rig);
    }
  }
  rig.platform.time.runReady();
  RC_ASSERT(!isWrong);
  for (const ScreenshotItem& item : rig.store->items.get()) {
    RC_ASSERT(item.thumbnail != nullptr);
  }
}

}  // namespace
}  // namespace quenlio
