// The one way into the editor from outside: one window a file. Main thread.
#pragma once

#include <functional>

#include "core/base/FileURL.h"

namespace quenlio {

class ScreenshotEditorManager {
 public:
  virtual ~ScreenshotEditorManager() = default;
  [[nodiscard]] static ScreenshotEditorManager& shared();
  // Opens a window on the file, or brings forward the one there is. onSave is told of each save.
  virtual void open(const FileURL& fileURL, std::function<void(const FileURL&)> onSave) = 0;
};

// The manager until there is an editor: it opens nothing.
class NoEditor final : public ScreenshotEditorManager {
 public:
  void open(const FileURL&, std::function<void(const FileURL&)>) override {}
};

}  // namespace quenlio
