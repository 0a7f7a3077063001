#include "desktop/views/preview/QtPreviewPanel.h"

#include <utility>
#include <vector>

namespace quenlio {

QtPreviewPanel::QtPreviewPanel(PreviewWindow::Dependencies dependencies)
    : dependencies_(std::move(dependencies)),
      refresh_(dependencies_.scheduler, weak_.bind([](QtPreviewPanel& self) { self.refresh(); })) {}

QtPreviewPanel::~QtPreviewPanel() {
  weak_.letGo();
}

bool QtPreviewPanel::sharedPreviewPanel() {
  exists_ = true;
  return true;
}

void QtPreviewPanel::setDataSource(const PreviewPanelDataSource& source) {
  source_ = &source;
}

PreviewWindow& QtPreviewPanel::window() {
  if (window_ == nullptr) {
    window_ = std::make_shared<PreviewWindow>(dependencies_, weak_.bind([](QtPreviewPanel& self) { self.orderOut(); }));
  }
  return *window_;
}

void QtPreviewPanel::prepareItem(const FileURL& url) {
  if (!isOrderedIn_) {
    window().prepare(url);
  }
}

void QtPreviewPanel::dropPreparedItem() {
  if (!isOrderedIn_) {
    window_.reset();
  }
}

void QtPreviewPanel::makeKeyAndOrderFront() {
  isOrderedIn_ = true;
  window().makeKeyAndOrderFront();
  refresh_.markStale();
}

void QtPreviewPanel::orderOut() {
  chosen_.reset();
  isOrderedIn_ = false;
  if (const auto window = std::exchange(window_, nullptr)) {
    window->orderOut();
    // Not here: it may be the window itself that has asked.
    dependencies_.scheduler.post([window] {});
  }
}

void QtPreviewPanel::setCurrentPreviewItemIndex(std::size_t index) {
  chosen_ = index;
  refresh_.markStale();
}

void QtPreviewPanel::reloadData() {
  refresh_.markStale();
}

void QtPreviewPanel::refresh() {
  if (!isOrderedIn_ || source_ == nullptr) {
    return;
  }
  std::vector<FileURL> files;
  for (std::size_t index = 0; index < source_->numberOfPreviewItems(); ++index) {
    files.push_back(source_->previewItemAtIndex(index));
  }
  if (files.empty()) {
    orderOut();
    return;
  }
  window_->show(std::move(files), std::exchange(chosen_, std::nullopt).value_or(window_->index()));
}

}  // namespace quenlio
