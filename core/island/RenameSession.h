// Renaming a screenshot in place: what is being renamed, what has been typed so far, and why it was refused. Owned by
// the name row, which shows it; knows nothing of pixels. Main thread.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/library/ScreenshotItem.h"

namespace quenlio {

class RenameSession {
 public:
  // True when the item has the new name.
  using OnRename = std::function<bool(const ScreenshotItem& item, std::string_view newName)>;
  explicit RenameSession(OnRename onRename) : onRename_(std::move(onRename)) {}

  // With exactly one item selected, its name without the extension becomes the draft; true then, and also when that
  // item is being renamed already, which keeps what has been typed.
  bool begin(const std::vector<ScreenshotItem>& selected);
  [[nodiscard]] bool isEditing() const { return item_.has_value(); }

  // Both as people can read them, in UTF-8, whatever bytes the file's name is made of. The extension is without its
  // dot, empty when there is none.
  [[nodiscard]] const std::string& draftName() const { return draftName_; }
  [[nodiscard]] std::string extension() const;

  // What was wrong with the old draft is not held against the new one.
  void edit(std::string draftName);
  // Renames, and ends when that is done. A draft that is as it was in the beginning renames nothing: it may only be the
  // readable form of the name. True when the session has ended.
  bool commit();
  void cancel();
  // Why the last commit was refused.
  [[nodiscard]] const std::optional<std::string>& refusal() const { return refusal_; }

  // What is selected now. Ends when that is no longer the one item, with its name, that is being renamed. True when the
  // session has ended by this.
  bool selectionChanged(const std::vector<ScreenshotItem>& selected);

 private:
  [[nodiscard]] std::string_view reasonFor(std::string_view draftName) const;

  OnRename onRename_;
  std::optional<ScreenshotItem> item_;
  std::string firstDraft_;
  std::string draftName_;
  std::optional<std::string> refusal_;
};

}  // namespace quenlio
