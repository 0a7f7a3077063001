#include "core/library/ItemHandOut.h"

#include <algorithm>
#include <iterator>

#include "core/library/HostWindow.h"
#include "core/platform/Pasteboard.h"
#include "core/platform/Screens.h"
#include "core/platform/Sharing.h"

namespace quenlio {
namespace {

std::vector<FileURL> fileURLs(const std::vector<ScreenshotItem>& items) {
  std::vector<FileURL> urls;
  urls.reserve(items.size());
  std::ranges::transform(items, std::back_inserter(urls), &ScreenshotItem::fileURL);
  return urls;
}

}  // namespace

void ItemHandOut::copy(const std::vector<ScreenshotItem>& items) {
  if (items.empty()) {
    return;
  }
  dependencies_.pasteboard.clearContents();
  // Pixels first, so that a target takes either those or the file; those of several pictures would be one too many.
  dependencies_.pasteboard.writeObjects(
      {.image = items.size() == 1 ? dependencies_.images.imageWithContentsOfFile(items.front().fileURL) : nullptr,
       .fileURLs = fileURLs(items)});
}

void ItemHandOut::share(const std::vector<ScreenshotItem>& items) {
  if (items.empty()) {
    return;
  }
  const Point<Screen> mouse = dependencies_.screens.mouseLocation();
  const std::vector<WindowInfo> windows = dependencies_.windows.visibleWindows();
  const WindowInfo* host =
      firstOf(windows, {containing(mouse), &WindowInfo::isKeyWindow,
                        [](const WindowInfo& window) { return window.level == kStatusWindowLevel; },
                        [](const WindowInfo&) { return true; }});
  if (host == nullptr || !host->hasContentView) {
    return;
  }
  dependencies_.picker.showRelativeToRect(fileURLs(items), {toWindowContent(*host, mouse), {1, 1}}, host->id,
                                          RectEdge::minY);
}

void ItemHandOut::reveal(const std::vector<ScreenshotItem>& items) {
  if (!items.empty()) {
    dependencies_.workspace.activateFileViewerSelectingURLs(fileURLs(items));
  }
}

}  // namespace quenlio
