// What holds of the selection whatever is done to it.
#include <algorithm>
#include <gtest/gtest.h>
#include <optional>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>
#include <set>

#include "tests/core/library/LibraryTest.h"

namespace quenlio {
namespace {

struct Selected {
  std::optional<Uuid> primary;
  std::set<Uuid> all;
  std::optional<Uuid> anchor;
  bool operator==(const Selected&) const = default;
};

class Player {
 public:
  Player() {
    rig_.pin({"1.png", "4.png", "7.png"});
    rig_.settings.maxHistory.set(6);
    rig_.open();
  }

  // Does something, and holds the outcome against what should come of it.
  void play() {
    const Selected before = selected();
    const bool isEmpty = items().empty();
    switch (*rc::gen::inRange(0, isEmpty ? 3 : 13)) {
      case 0:
        return arrive();
      case 1:
        return undo(before);
      case 2:
      case 3:
      case 4:
        return move(before);
      case 5:
        return click(anyIndex());
      case 6:
      case 7:
        return range(before, anyIndex());
      case 8:
      case 9:
        return toggle(before, anyIndex());
      case 10:
        return leave(before);
      case 11:
        return limit(before);
      default:
        return rename(before, anyIndex());
    }
  }

  void checkInvariants() const {
    const Selected now = selected();
    std::set<Uuid> listed;
    for (const ScreenshotItem& item : items()) {
      listed.insert(item.id);
    }
    RC_ASSERT(std::ranges::includes(listed, now.all));
    RC_ASSERT(now.primary.has_value() == !now.all.empty());
    RC_ASSERT(now.anchor.has_value() == !now.all.empty());
    if (now.primary) {
      RC_ASSERT(now.all.contains(*now.primary));
      RC_ASSERT(listed.contains(*now.anchor));
    }
    checkSelectedItems(now);
  }

 private:
  [[nodiscard]] const std::vector<ScreenshotItem>& items() const { return rig_.store->items.get(); }
  [[nodiscard]] Selected selected() const {
    return {rig_.store->selectedItemID.get(), rig_.store->selectedItemIDs.get(), rig_.store->selectionAnchorID};
  }
  [[nodiscard]] std::size_t anyIndex() const { return *rc::gen::inRange<std::size_t>(0, items().size()); }
  [[nodiscard]] std::size_t indexOf(const Uuid& id) const {
    return static_cast<std::size_t>(std::ranges::find(items(), id, &ScreenshotItem::id) - items().begin());
  }
  [[nodiscard]] std::set<Uuid> between(const Uuid& one, const Uuid& other) const {
    const auto [first, last] = std::minmax({indexOf(one), indexOf(other)});
    std::set<Uuid> ids;
    std::ranges::for_each(items().begin() + static_cast<std::ptrdiff_t>(first),
                          items().begin() + static_cast<std::ptrdiff_t>(last) + 1,
                          [&](const ScreenshotItem& item) { ids.insert(item.id); });
    return ids;
  }
  [[nodiscard]] std::optional<Uuid> firstOf(const std::set<Uuid>& ids) const {
    const auto found = std::ranges::find_if(items(), [&](const auto& item) { return ids.contains(item.id); });
    return found != items().end() ? std::optional(found->id) : std::nullopt;
  }

  void checkSelectedItems(const Selected& now) const {
    const ScreenshotItem* item = rig_.store->selectedItem();
    RC_ASSERT((item == nullptr) == items().empty());
    std::vector<ScreenshotItem> expected;
    if (item != nullptr) {
      RC_ASSERT(item->id == now.primary.value_or(items().front().id));
      std::ranges::copy_if(items(), std::back_inserter(expected), [&](const auto& listed) {
        return now.all.empty() ? listed.id == items().front().id : now.all.contains(listed.id);
      });
    }
    RC_ASSERT(rig_.store->selectedItems() == expected);
  }

  void arrive() {
    rig_.store->ingestScreenshot(rig_.file(std::to_string(arrived_ % 9) + ".png", *rc::gen::inRange(0, 20)),
                                 std::nullopt);
    ++arrived_;
    expectSelectedAlone();
  }

  void undo(const Selected& before) {
    if (rig_.store->undoLastDeletion()) {
      expectSelectedAlone();
    } else {
      RC_ASSERT(selected() == before);
    }
  }

  // The item that has just come in, or nothing when the pinned ones had left no room for it.
  void expectSelectedAlone() const {
    if (const auto& id = rig_.store->selectedItemID.get()) {
      RC_ASSERT(selected() == (Selected{id, {*id}, id}));
    } else {
      RC_ASSERT(selected() == Selected{});
      RC_ASSERT(std::ranges::all_of(items(), &ScreenshotItem::isPinned));
      RC_ASSERT(items().size() >= static_cast<std::size_t>(std::max<std::int64_t>(limit_, 1)));
    }
  }

  void move(const Selected& before) {
    const int step = *rc::gen::element(-1, 1, 1, -2);
    const bool extends = *rc::gen::arbitrary<bool>();
    const bool isDone = rig_.store->moveSelection(step, extends);
    const int last = static_cast<int>(items().size()) - 1;
    const int current = before.primary ? static_cast<int>(indexOf(*before.primary)) : 0;
    const int target = last < 0 ? current : std::clamp(current + step, 0, last);
    if (last < 0 || (before.primary && target == current)) {
      RC_ASSERT(!isDone);
      RC_ASSERT(selected() == before);
      return;
    }
    RC_ASSERT(isDone);
    const Uuid id = items()[static_cast<std::size_t>(target)].id;
    const Uuid anchor = before.anchor.value_or(id);
    RC_ASSERT(selected() == (extends ? Selected{id, between(anchor, id), anchor} : Selected{id, {id}, id}));
  }

  void click(std::size_t index) {
    const Uuid id = items()[index].id;
    rig_.store->select(id);
    RC_ASSERT(selected() == (Selected{id, {id}, id}));
  }

  void range(const Selected& before, std::size_t index) {
    const Uuid id = items()[index].id;
    const bool isAdditive = *rc::gen::arbitrary<bool>();
    const Uuid anchor = before.anchor.value_or(id);
    std::set<Uuid> all = between(anchor, id);
    if (isAdditive) {
      all.insert(before.all.begin(), before.all.end());
    }
    rig_.store->selectRange(items()[index], isAdditive);
    RC_ASSERT(selected() == (Selected{id, all, anchor}));
  }

  void toggle(const Selected& before, std::size_t index) {
    const Uuid id = items()[index].id;
    std::set<Uuid> all = before.all;
    rig_.store->toggleSelection(items()[index]);
    if (all.insert(id).second) {
      RC_ASSERT(selected() == (Selected{id, all, id}));
      return;
    }
    all.erase(id);
    const auto primary = before.primary == id ? firstOf(all) : before.primary;
    RC_ASSERT(selected() == (Selected{primary, all, all.empty() ? std::nullopt : before.anchor}));
  }

  // One item, all that are selected, or a file that vanishes.
  void leave(const Selected& before) {
    const std::size_t index = anyIndex();
    const std::size_t count = items().size();
    std::set<Uuid> gone{items()[index].id};
    switch (*rc::gen::inRange(0, 3)) {
      case 0:
        rig_.store->moveToTrash(items()[index]);
        break;
      case 1:
        gone.clear();
        for (const ScreenshotItem& item : rig_.store->selectedItems()) {
          gone.insert(item.id);
        }
        rig_.store->moveSelectedToTrash();
        break;
      default:
        rig_.platform.files.remove(items()[index].fileURL.path());
        rig_.store->removeMissingFiles();
        break;
    }
    RC_ASSERT(items().size() == count - gone.size());
    expectLeft(before, gone);
  }

  // Another limit of the list, which the pinned items may exceed. What goes now is what the limit of before leaves out.
  void limit(const Selected& before) {
    std::set<Uuid> gone;
    for (const ScreenshotItem& item : items()) {
      gone.insert(item.id);
    }
    limit_ = *rc::gen::inRange<std::int64_t>(0, 9);
    rig_.settings.maxHistory.set(limit_);
    for (const ScreenshotItem& item : items()) {
      gone.erase(item.id);
    }
    expectLeft(before, gone);
  }

  void expectLeft(const Selected& before, const std::set<Uuid>& gone) const {
    const auto isGone = [&](const std::optional<Uuid>& id) { return id && gone.contains(*id); };
    Selected expected = before;
    std::erase_if(expected.all, isGone);
    if (isGone(expected.primary)) {
      expected.primary = firstOf(expected.all);
    }
    if (isGone(expected.anchor) || expected.all.empty()) {
      expected.anchor = expected.primary;
    }
    RC_ASSERT(selected() == expected);
  }

  void rename(const Selected& before, std::size_t index) {
    const Uuid id = items()[index].id;
    RC_ASSERT(rig_.store->rename(items()[index], "renamed " + std::to_string(arrived_++)));
    Selected expected = before;
    expected.primary = id;
    expected.all.insert(id);
    expected.anchor = before.anchor.value_or(id);
    RC_ASSERT(selected() == expected);
  }

  LibraryRig rig_;
  std::int64_t limit_ = 6;
  int arrived_ = 0;
};

RC_GTEST_PROP(SelectionProperty, anySequenceOfOperationsArrivalsAndRemovalsKeepsItSound, ()) {
  Player player;
  const int steps = *rc::gen::inRange(0, 60);
  for (int step = 0; step < steps; ++step) {
    player.play();
    player.checkInvariants();
  }
}

}  // namespace
}  // namespace quenlio
