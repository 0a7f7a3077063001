// The preview window: nearly nothing until it is asked for or likely to be, and nothing of it kept once it is closed or
// not asked for after all. Owned by the shell. Main thread.
//
// Several calls in a row, as of who opens it on a list and an item, show one item once: what was asked is done on the
// next turn of the main queue.
#pragma once

#include <memory>
#include <optional>

#include "core/base/WeakOwner.h"
#include "core/platform/PreviewPanel.h"

#include "desktop/views/common/ViewRefresh.h"
#include "desktop/views/preview/PreviewWindow.h"

namespace quenlio {

class QtPreviewPanel final : public PreviewPanel {
 public:
  explicit QtPreviewPanel(PreviewWindow::Dependencies dependencies);
  ~QtPreviewPanel() override;

  [[nodiscard]] bool sharedPreviewPanelExists() const override { return exists_; }
  [[nodiscard]] bool sharedPreviewPanel() override;
  [[nodiscard]] bool isVisible() const override { return isOrderedIn_; }
  void setDataSource(const PreviewPanelDataSource& source) override;
  void prepareItem(const FileURL& url) override;
  void dropPreparedItem() override;
  void makeKeyAndOrderFront() override;
  void orderOut() override;
  void setCurrentPreviewItemIndex(std::size_t index) override;
  void reloadData() override;

 private:
  PreviewWindow& window();
  void refresh();

  WeakOwner<QtPreviewPanel> weak_{this};  // first: a member is given a callback while it is made
  const PreviewWindow::Dependencies dependencies_;
  bool exists_ = false;
  const PreviewPanelDataSource* source_ = nullptr;
  std::optional<std::size_t> chosen_;      // what the window has not been told yet
  std::shared_ptr<PreviewWindow> window_;  // while it is open or prepared for that; shared only with its end
  bool isOrderedIn_ = false;
  ViewRefresh refresh_;
};

}  // namespace quenlio
