// The ways into other programs: the share menu, and the workspace, which opens and shows files. Main thread.
#pragma once

#include <vector>

#include "core/base/FileURL.h"
#include "core/platform/Windows.h"

namespace quenlio {

enum class RectEdge { minX, minY, maxX, maxY };

class SharingServicePicker {
 public:
  virtual ~SharingServicePicker() = default;
  // Opens a menu of what can be done with the files and returns at once.
  virtual void showRelativeToRect(const std::vector<FileURL>& items, const Rect<WindowContent>& rect, WindowID ofView,
                                  RectEdge preferredEdge) = 0;
};

class Workspace {
 public:
  virtual ~Workspace() = default;
  // One window of the file manager for each folder, the files selected in it. Returns at once.
  virtual void activateFileViewerSelectingURLs(const std::vector<FileURL>& urls) = 0;
};

}  // namespace quenlio
