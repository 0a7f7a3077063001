// Renaming a screenshot in place: what is being renamed, what has been typed so far, and why it was refused. Owned by
// the name row, which shows it; knows nothing of pixels. Main thread.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "core/library/ScreenshotItem.h"

namespace quenlio {

class RenameSession {
 public:
  // True when the item has the new name.
  using OnRename = std::function<bool(const ScreenshotItem& item, std::string_view newName)>;
  explicit RenameSession(OnRename onRename) : onRename_(std::move(onRename)) {}

  // What is selected, as far as renaming goes: the item in the preview, and how many there are.
  struct Selection {
    const ScreenshotItem* item = nullptr;
    std::size_t count = 0;
    std::span<const ScreenshotItem> library{};  // all that there are
  };

  // Whether there is something to be begun, which nothing has begun yet.
  [[nodiscard]] bool isOffered(const Selection& selection) const { return isRenamable(selection) && !isEditing(); }
  enum class Beginning {
    refused,  // not exactly one item is selected; what is being renamed goes on
    begun,    // its name without the extension is the draft
    goesOn,   // that item is being renamed already, and what has been typed is kept
  };
  Beginning begin(const Selection& selection);
  [[nodiscard]] bool isEditing() const { return item_.has_value(); }

  // Both as people can read them, in UTF-8, whatever bytes the file's name is made of. The extension is without its
  // dot, empty when there is none.
  [[nodiscard]] const std::string& draftName() const { return draftName_; }
  [[nodiscard]] std::string extension() const;

  // What was wrong with the old draft is not held against the new one.
  void edit(std::string draftName);
  // Renames, and ends when that is done. A draft that is as it was in the beginning stands for the name itself, whose
  // bytes its readable form may not be. True when the session has ended.
  bool commit();
  void cancel();
  // The row is out of sight. What has been typed stays; but nobody is typing any more, until edit() tells otherwise.
  void putAside() { isAside_ = true; }
  // Why the last commit was refused.
  [[nodiscard]] const std::optional<std::string>& refusal() const { return refusal_; }

  // What is selected now. Ends when that is no longer the one item, with its name, that is being renamed; but not when
  // it is one that has arrived since, and with that has taken the selection from who was typing. True when the session
  // has ended by this.
  bool selectionChanged(const Selection& selection);

 private:
  [[nodiscard]] static bool isRenamable(const Selection& selection) {
    return selection.count == 1 && selection.item != nullptr;
  }
  // Both of the item that is being renamed.
  [[nodiscard]] bool isSelected(const Selection& selection) const;
  [[nodiscard]] bool hasLostSelectionToArrival(const Selection& selection);
  [[nodiscard]] std::string_view reasonFor(std::string_view draftName) const;

  OnRename onRename_;
  std::optional<ScreenshotItem> item_;
  std::set<Uuid> known_;         // what there was when it began
  std::optional<Uuid> arrival_;  // the last one that has taken the selection
  bool isAside_ = false;
  std::string firstDraft_;
  std::string draftName_;
  std::optional<std::string> refusal_;
};

}  // namespace quenlio
