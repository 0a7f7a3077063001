#include "core/island/RenameSession.h"

#include <algorithm>
#include <cstddef>

#include "core/base/Text.h"
#include "core/island/IslandTexts.h"
#include "core/library/UniqueNames.h"

namespace quenlio {
namespace {

constexpr std::size_t kNameLimit = 255;  // bytes, of a file's whole name

}  // namespace

RenameSession::Beginning RenameSession::begin(const Selection& selection) {
  if (!isRenamable(selection)) {
    return Beginning::refused;
  }
  isAside_ = false;
  const ScreenshotItem& item = *selection.item;
  if (item_ && item_->id == item.id) {
    return Beginning::goesOn;
  }
  item_ = item;
  arrival_.reset();
  firstDraft_ = readable(item.fileURL.stem());
  draftName_ = firstDraft_;
  refusal_.reset();
  return Beginning::begun;
}

std::string RenameSession::extension() const {
  return item_ ? readable(item_->fileURL.pathExtension()) : std::string();
}

void RenameSession::edit(std::string draftName) {
  draftName_ = std::move(draftName);
  refusal_.reset();
  isAside_ = false;
}

bool RenameSession::commit() {
  if (!item_) {
    return false;
  }
  // Copies: what the renaming announces may end the session.
  const ScreenshotItem item = *item_;
  const std::string draftName = draftName_ == firstDraft_ ? item.fileURL.stem() : draftName_;
  if (onRename_(item, draftName)) {
    cancel();
    return true;
  }
  if (isEditing()) {
    refusal_ = reasonFor(draftName);
  }
  return !isEditing();
}

void RenameSession::cancel() {
  item_.reset();
  draftName_.clear();
  refusal_.reset();
}

bool RenameSession::selectionChanged(const Selection& selection) {
  if (!item_) {
    known_.clear();
    for (const ScreenshotItem& item : selection.library) {
      known_.insert(item.id);
    }
    return false;
  }
  if (isSelected(selection) || hasLostSelectionToArrival(selection)) {
    return false;
  }
  cancel();
  return true;
}

bool RenameSession::isSelected(const Selection& selection) const {
  return isRenamable(selection) && selection.item->id == item_->id && selection.item->fileURL == item_->fileURL;
}

bool RenameSession::hasLostSelectionToArrival(const Selection& selection) {
  const bool isStillThere = std::ranges::any_of(selection.library, [this](const ScreenshotItem& item) {
    return item.id == item_->id && item.fileURL == item_->fileURL;
  });
  if (!isStillThere || !isRenamable(selection)) {
    return false;
  }
  const Uuid& selected = selection.item->id;
  if (selected != arrival_ && (isAside_ || known_.contains(selected))) {
    return false;
  }
  arrival_ = selected;
  return true;
}

std::string_view RenameSession::reasonFor(std::string_view draftName) const {
  const auto wanted = renamedURL(item_->fileURL, draftName);
  if (!wanted) {
    return IslandTexts::kNoName;
  }
  return wanted->lastPathComponent().size() > kNameLimit ? IslandTexts::kNameTooLong : IslandTexts::kNotRenamed;
}

}  // namespace quenlio
