#include "core/library/QuickLookPreviewController.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "core/base/SharedBinding.h"
#include "core/platform/FileManager.h"

namespace quenlio {

QuickLookPreviewController& QuickLookPreviewController::shared() {
  return SharedBinding<QuickLookPreviewController>::shared();
}

QuickLookPreviewController::~QuickLookPreviewController() {
  if (panel_.isVisible()) {
    panel_.orderOut();
  }
}

void QuickLookPreviewController::preview(const FileURL& url, const std::vector<FileURL>& within) {
  if (!take(url, within) || !panel_.sharedPreviewPanel()) {
    dropPrepared();
    return;
  }
  panel_.setDataSource(*this);
  panel_.makeKeyAndOrderFront();
  panel_.setCurrentPreviewItemIndex(currentIndex_);
  panel_.reloadData();
}

void QuickLookPreviewController::prepare(const FileURL& url) {
  if (files_.fileExistsAtPath(url) && panel_.sharedPreviewPanel()) {
    panel_.prepareItem(url);
  }
}

void QuickLookPreviewController::dropPrepared() {
  if (panel_.sharedPreviewPanelExists()) {
    panel_.dropPreparedItem();
  }
}

void QuickLookPreviewController::syncSelection(const FileURL& url, const std::vector<FileURL>& within) {
  if (!panel_.sharedPreviewPanelExists() || !panel_.isVisible() || !take(url, within)) {
    return;
  }
  panel_.setDataSource(*this);
  panel_.reloadData();
  panel_.setCurrentPreviewItemIndex(currentIndex_);
}

bool QuickLookPreviewController::take(const FileURL& url, const std::vector<FileURL>& within) {
  std::vector<FileURL> present;
  std::ranges::copy_if(within, std::back_inserter(present),
                       [&files = files_](const FileURL& file) { return files.fileExistsAtPath(file); });
  if (present.empty()) {
    return false;
  }
  const auto found = std::ranges::find(present, url);
  currentIndex_ = found != present.end() ? static_cast<std::size_t>(found - present.begin()) : 0;
  previewURLs_ = std::move(present);
  return true;
}

}  // namespace quenlio
