#include "core/island/RenameSession.h"

#include <cstddef>

#include "core/base/Text.h"
#include "core/library/UniqueNames.h"

namespace quenlio {
namespace {

constexpr std::size_t kNameLimit = 255;  // bytes, of a file's whole name

}  // namespace

bool RenameSession::begin(const std::vector<ScreenshotItem>& selected) {
  if (selected.size() != 1) {
    return false;
  }
  const ScreenshotItem& item = selected.front();
  if (!item_ || item_->id != item.id) {
    item_ = item;
    firstDraft_ = readable(item.fileURL.stem());
    draftName_ = firstDraft_;
    refusal_.reset();
  }
  return true;
}

std::string RenameSession::extension() const {
  return item_ ? readable(item_->fileURL.pathExtension()) : std::string();
}

void RenameSession::edit(std::string draftName) {
  draftName_ = std::move(draftName);
  refusal_.reset();
}

bool RenameSession::commit() {
  if (!item_) {
    return false;
  }
  // Copies: what the renaming announces may end the session.
  const ScreenshotItem item = *item_;
  const std::string draftName = draftName_;
  if (draftName == firstDraft_ || (renamedURL(item.fileURL, draftName) && onRename_(item, draftName))) {
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

bool RenameSession::selectionChanged(const std::vector<ScreenshotItem>& selected) {
  if (!item_ ||
      (selected.size() == 1 && selected.front().id == item_->id && selected.front().fileURL == item_->fileURL)) {
    return false;
  }
  cancel();
  return true;
}

std::string_view RenameSession::reasonFor(std::string_view draftName) const {
  const auto wanted = renamedURL(item_->fileURL, draftName);
  if (!wanted) {
    return "Enter a name";
  }
  return wanted->lastPathComponent().size() > kNameLimit ? "That name is too long" : "The file could not be renamed";
}

}  // namespace quenlio
