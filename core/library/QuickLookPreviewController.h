// What the preview window shows: the files of a list, and which of them first. Main thread; owned by the composition
// root.
#pragma once

#include <vector>

#include "core/base/FileURL.h"
#include "core/platform/PreviewPanel.h"

namespace quenlio {

class FileManager;

class QuickLookPreviewController final : public PreviewPanelDataSource {
 public:
  // Both outlive this.
  QuickLookPreviewController(const FileManager& files, PreviewPanel& panel) : files_(files), panel_(panel) {}
  // The window goes with what it shows.
  ~QuickLookPreviewController() override;
  QuickLookPreviewController(const QuickLookPreviewController&) = delete;
  QuickLookPreviewController& operator=(const QuickLookPreviewController&) = delete;
  [[nodiscard]] static QuickLookPreviewController& shared();

  // Opens the window on those of the files that are there, at url, or at the first when url is not among them. Nothing
  // opens when none is there.
  void preview(const FileURL& url, const std::vector<FileURL>& within);
  // The window may be opened at url in a moment: its picture is begun then and not only when it opens.
  void prepare(const FileURL& url);
  // It is not opened after all; what was begun is dropped.
  void dropPrepared();
  // The same as preview() for a window that is open already, which it does not bring forward.
  void syncSelection(const FileURL& url, const std::vector<FileURL>& within);

  [[nodiscard]] std::size_t numberOfPreviewItems() const override { return previewURLs_.size(); }
  [[nodiscard]] FileURL previewItemAtIndex(std::size_t index) const override { return previewURLs_.at(index); }

 private:
  // Keeps of the files those that are there; false, and all stays, when none is.
  bool take(const FileURL& url, const std::vector<FileURL>& within);

  const FileManager& files_;
  PreviewPanel& panel_;
  std::vector<FileURL> previewURLs_;
  std::size_t currentIndex_ = 0;
};

}  // namespace quenlio
