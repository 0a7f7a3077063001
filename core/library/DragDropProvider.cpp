#include "core/library/DragDropProvider.h"

#include <algorithm>
#include <utility>

#include "core/library/HostWindow.h"
#include "core/platform/FileManager.h"
#include "core/platform/Scheduler.h"

namespace quenlio {
namespace {

constexpr double kImageSide = 64;
constexpr double kFanStep = 4;
constexpr std::size_t kLastFanned = 4;  // the rest lies on this one

Rect<WindowContent> imageFrame(Point<WindowContent> location, std::size_t index) {
  const double offset = static_cast<double>(std::min(index, kLastFanned)) * kFanStep;
  return {{location.x - kImageSide / 2 + offset, location.y - kImageSide / 2 - offset}, {kImageSide, kImageSide}};
}

}  // namespace

bool DragDropProvider::beginDraggingSession(const std::vector<ScreenshotItem>& items,
                                            std::function<void()> onSessionEnded) {
  std::vector<ScreenshotItem> present;
  std::ranges::copy_if(items, std::back_inserter(present), [&files = dependencies_.files](const ScreenshotItem& item) {
    return files.fileExistsAtPath(item.fileURL);
  });
  const auto context = present.empty() ? std::nullopt : resolveDragContext();
  if (!context) {
    return false;
  }
  DraggingRequest request{
      .window = context->window,
      .location = context->location,
      .event = eventFor(*context),
      .items = {},
      .draggingFormation = present.size() > 1 ? DraggingFormation::stack : DraggingFormation::standard};
  for (std::size_t index = 0; index < present.size(); ++index) {
    request.items.push_back({.fileURL = present[index].fileURL,
                             .image = present[index].thumbnail,
                             .frame = imageFrame(context->location, index)});
  }
  const DraggingSessionID session = dependencies_.sessions.beginDraggingSession(
      request, weak_.bind([](DragDropProvider& self, DraggingSessionID ended) { self.sessionEnded(ended); }));
  if (onSessionEnded) {
    sessionEndHandlers_[session] = std::move(onSessionEnded);
  }
  return true;
}

std::optional<DragDropProvider::Context> DragDropProvider::resolveDragContext() const {
  const std::vector<WindowInfo> windows = dependencies_.windows.visibleWindows();
  if (const auto event = dependencies_.windows.currentEvent(); event && event->window) {
    const auto found = std::ranges::find(windows, *event->window, &WindowInfo::id);
    if (found != windows.end() && found->hasContentView) {
      return Context{found->id, event->locationInWindow};
    }
  }
  const Point<Screen> mouse = dependencies_.screens.mouseLocation();
  const WindowInfo* window = firstOf(windows, {containing(mouse), &WindowInfo::isKeyWindow, &WindowInfo::isMainWindow});
  return window != nullptr && window->hasContentView
             ? std::optional(Context{window->id, toWindowContent(*window, mouse)})
             : std::nullopt;
}

PointerEvent DragDropProvider::eventFor(const Context& context) const {
  const auto event = dependencies_.windows.currentEvent();
  if (event && event->type != PointerEventType::other) {
    return *event;
  }
  return {.type = PointerEventType::leftMouseDown,
          .window = context.window,
          .locationInWindow = context.location,
          .modifierFlags = dependencies_.windows.modifierFlags(),
          .timestamp = dependencies_.windows.systemUptime()};
}

void DragDropProvider::sessionEnded(DraggingSessionID session) {
  if (auto handler = sessionEndHandlers_.extract(session)) {
    dependencies_.scheduler.post(std::move(handler.mapped()));
  }
}

}  // namespace quenlio
