// The desktop's one preview window, which shows the files of a list, one at a time and large. Main thread.
#pragma once

#include <cstddef>

#include "core/base/FileURL.h"

namespace quenlio {

class PreviewPanelDataSource {
 public:
  virtual ~PreviewPanelDataSource() = default;
  [[nodiscard]] virtual std::size_t numberOfPreviewItems() const = 0;
  [[nodiscard]] virtual FileURL previewItemAtIndex(std::size_t index) const = 0;
};

// QLPreviewPanel. Closed by the user it is as if ordered out.
class PreviewPanel {
 public:
  virtual ~PreviewPanel() = default;
  [[nodiscard]] virtual bool sharedPreviewPanelExists() const = 0;
  // Makes the window if there is none yet. False when there can be none.
  [[nodiscard]] virtual bool sharedPreviewPanel() = 0;
  [[nodiscard]] virtual bool isVisible() const = 0;
  // Data source and delegate. It is asked at reloadData() and whenever another item is shown, and lives for as long as
  // the panel is visible.
  virtual void setDataSource(const PreviewPanelDataSource& source) = 0;
  // While it is not visible: this item may be shown in a moment, so its picture is begun. Nothing is seen of that. An
  // item that was to be prepared before is dropped.
  virtual void prepareItem(const FileURL& url) = 0;
  // It will not be shown after all; nothing of it is kept.
  virtual void dropPreparedItem() = 0;
  virtual void makeKeyAndOrderFront() = 0;
  virtual void orderOut() = 0;
  virtual void setCurrentPreviewItemIndex(std::size_t index) = 0;
  virtual void reloadData() = 0;
};

}  // namespace quenlio
