#include "core/editor/ScreenshotEditorManager.h"

#include "core/base/SharedBinding.h"

namespace quenlio {

ScreenshotEditorManager& ScreenshotEditorManager::shared() {
  return SharedBinding<ScreenshotEditorManager>::shared();
}

}  // namespace quenlio
