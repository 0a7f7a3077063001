// What holds of deleted and renamed files whatever happens: none is lost, and undo reaches back as far as is told.
#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>
#include <set>
#include <string>
#include <vector>

#include "tests/core/library/LibraryTest.h"

namespace quenlio {
namespace {

// A file that arrived, and where it must be. Every file has its own content.
struct KnownFile {
  std::string content;
  std::string path;
  bool isInTrash = false;
};

class Deletions {
 public:
  Deletions() {
    rig_.settings.maxHistory.set(100);
    rig_.open();
  }

  void play() {
    const auto dice = *rc::gen::inRange(0, 24);
    if (dice < 8 || items().empty()) {
      return dice < 3 ? undo() : arrive();
    }
    if (dice < 14) {
      return trash(*rc::gen::inRange<std::size_t>(0, items().size()));
    }
    if (dice < 15) {
      return trashSelected();
    }
    if (dice < 17) {
      return rename(*rc::gen::inRange<std::size_t>(0, items().size()));
    }
    if (dice < 20) {
      return dice < 18 ? emptyTrashOfOne() : undo();
    }
    return dice < 23 ? vanish(*rc::gen::inRange<std::size_t>(0, items().size())) : removeMissing();
  }

  void undoAll() {
    while (!stack_.empty()) {
      undo();
    }
    undo();
  }

  void checkThatNothingIsLost() const {
    for (const KnownFile& known : files_) {
      RC_ASSERT(rig_.platform.files.content(known.path) == known.content);
    }
    std::size_t outside = 0;
    for (const KnownFile& known : files_) {
      outside += known.isInTrash ? 0 : 1;
      RC_ASSERT(known.isInTrash == known.path.starts_with(FakeFileSystem::kTrash));
    }
    std::set<FileURL> listed;
    for (const ScreenshotItem& item : items()) {
      outside += isThere(item) ? 0 : 1;
      RC_ASSERT(listed.insert(item.fileURL).second);
    }
    RC_ASSERT(items().size() == outside);
    for (const auto& [path, content] : strangers_) {
      RC_ASSERT(rig_.platform.files.content(path) == content);
    }
  }

 private:
  [[nodiscard]] const std::vector<ScreenshotItem>& items() const { return rig_.store->items.get(); }
  [[nodiscard]] bool isThere(const ScreenshotItem& item) const {
    return rig_.platform.files.fileExistsAtPath(item.fileURL);
  }
  KnownFile& at(const std::string& path) {
    const auto found = std::ranges::find(files_, path, &KnownFile::path);
    RC_ASSERT(found != files_.end());
    return *found;
  }

  // Under one of a few names, so that the names of deleted files are taken again and again.
  void arrive() {
    const std::string path = "/shots/" + std::to_string(*rc::gen::inRange(0, 6)) + ".png";
    if (rig_.platform.files.fileExistsAtPath(FileURL(path))) {
      return;
    }
    files_.push_back({.content = "content of file " + std::to_string(++arrived_), .path = path});
    rig_.platform.files.write(path, files_.back().content);
    rig_.store->ingestScreenshot(FileURL(path), std::nullopt);
  }

  // The user deletes the file for good, outside of the library.
  void vanish(std::size_t index) {
    const std::string path = items()[index].fileURL.path();
    rig_.platform.files.remove(path);
    std::erase_if(files_, [&](const KnownFile& known) { return known.path == path; });
  }
  void removeMissing() {
    rig_.store->removeMissingFiles();
    RC_ASSERT(std::ranges::all_of(items(), [&](const ScreenshotItem& item) { return isThere(item); }));
  }

  // What the model expects of a deletion that has just been done: the record, and where the file is.
  void expectDeleted(const std::string& path) {
    KnownFile& known = at(path);
    RC_ASSERT(!rig_.platform.files.fileExistsAtPath(FileURL(path)));
    known.isInTrash = true;
    known.path = placeInTrash(known.content);
    stack_.push_back({known.content, path});
  }
  [[nodiscard]] std::string placeInTrash(const std::string& content) const {
    std::vector<std::string> places;
    rig_.platform.files.enumerateAtURL(FileURL(FakeFileSystem::kTrash), [&](const FileURL& url, bool) {
      if (rig_.platform.files.content(url.path()) == content) {
        places.push_back(url.path());
      }
    });
    RC_ASSERT(places.size() == 1U);
    return places.front();
  }

  void trash(std::size_t index) {
    const ScreenshotItem item = items()[index];
    const bool isDeleted = isThere(item);
    rig_.store->moveToTrash(item);
    if (isDeleted) {
      expectDeleted(item.fileURL.path());
    }
  }

  void trashSelected() {
    std::vector<ScreenshotItem> selected = rig_.store->selectedItems();
    std::erase_if(selected, [&](const ScreenshotItem& item) { return !isThere(item); });
    rig_.store->moveSelectedToTrash();
    for (const ScreenshotItem& item : selected) {
      expectDeleted(item.fileURL.path());
    }
  }

  void rename(std::size_t index) {
    const ScreenshotItem before = items()[index];
    const std::string name = std::to_string(*rc::gen::inRange(0, 6));
    if (!isThere(before)) {
      (void)rig_.store->rename(before, name);
      RC_ASSERT(items()[index] == before);
      return;
    }
    KnownFile& known = at(before.fileURL.path());
    RC_ASSERT(rig_.store->rename(before, name));
    const auto renamed = std::ranges::find(items(), before.id, &ScreenshotItem::id);
    RC_ASSERT(renamed != items().end());
    known.path = renamed->fileURL.path();
  }

  // The user takes the file that was deleted last out of the trash for good, and another may get its name there.
  void emptyTrashOfOne() {
    const auto isLast = [&](const KnownFile& known) { return known.content == stack_.back().content; };
    if (!stack_.empty() && std::ranges::any_of(files_, isLast)) {
      const std::string place = placeInTrash(stack_.back().content);
      rig_.platform.files.remove(place);
      std::erase_if(files_, isLast);
      if (*rc::gen::arbitrary<bool>()) {
        strangers_[place] = "somebody else's";
        rig_.platform.files.write(place, strangers_[place]);
      }
    }
  }

  void undo() {
    // Thirty deletions are remembered, and each is used up by one attempt.
    while (stack_.size() > 30) {
      stack_.erase(stack_.begin());
    }
    const bool isDone = rig_.store->undoLastDeletion();
    if (stack_.empty()) {
      RC_ASSERT(!isDone);
      return;
    }
    const Deletion last = stack_.back();
    stack_.pop_back();
    const auto known = std::ranges::find(files_, last.content, &KnownFile::content);
    RC_ASSERT(isDone == (known != files_.end()));
    if (isDone) {
      const FileURL restored = rig_.store->selectedItem()->fileURL;
      RC_ASSERT(restored.path() == last.originalPath ||
                restored.stem().starts_with(FileURL(last.originalPath).stem() + " (Restored "));
      known->path = restored.path();
      known->isInTrash = false;
    }
  }

  struct Deletion {
    std::string content;
    std::string originalPath;
  };

  LibraryRig rig_;
  std::vector<KnownFile> files_;
  int arrived_ = 0;
  std::vector<Deletion> stack_;                   // oldest first
  std::map<std::string, std::string> strangers_;  // what others have put into the trash, by path
};

RC_GTEST_PROP(TrashProperty, noFileIsLostAndUndoGoesBackThroughTheDeletionsOneByOne, ()) {
  Deletions deletions;
  const int steps = *rc::gen::inRange(0, 150);
  for (int step = 0; step < steps; ++step) {
    deletions.play();
    deletions.checkThatNothingIsLost();
  }
  deletions.undoAll();
  deletions.checkThatNothingIsLost();
}

RC_GTEST_PROP(TrashProperty, onlyTheLastThirtyAreRemembered, ()) {
  // Recorded and taken in any order, and in the end all that is left.
  DeletedScreenshots deleted;
  std::vector<std::string> model;
  const auto takeLast = [&] {
    const auto last = deleted.takeLast();
    RC_ASSERT(last.has_value() == !model.empty());
    if (last) {
      RC_ASSERT(last->trashedURL.path() == model.back());
      model.pop_back();
    }
    return last.has_value();
  };
  const int steps = *rc::gen::inRange(0, 200);
  for (int step = 0; step < steps; ++step) {
    if (*rc::gen::inRange(0, 4) == 0) {
      (void)takeLast();
      continue;
    }
    const std::string path = "/trash/" + std::to_string(step);
    deleted.push({.item = {}, .originalURL = {}, .trashedURL = FileURL(path)});
    model.push_back(path);
    if (model.size() > 30) {
      model.erase(model.begin());
    }
  }
  while (takeLast()) {
  }
}

}  // namespace
}  // namespace quenlio
