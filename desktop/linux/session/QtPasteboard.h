// The X11 clipboard. Main thread.
//
// A picture is offered as PNG beside its file: as the file manager's own copy, as an address and as a path. What is no
// PNG is made one on another thread, ahead of whoever pastes; only one who is quicker waits. One that turns out there
// to be damaged is offered no longer.
//
// Others read the clipboard from the program that copied, and would find nothing once it is gone: at the end the
// desktop's clipboard manager is asked to take the contents over, and given a moment for that.
#pragma once

#include "core/base/WeakOwner.h"
#include "core/platform/Pasteboard.h"
#include "core/platform/Scheduler.h"

namespace quenlio {

class QtPasteboard final : public Pasteboard {
 public:
  // The scheduler may go first.
  explicit QtPasteboard(Scheduler& scheduler) : scheduler_(scheduler) {}
  QtPasteboard(const QtPasteboard&) = delete;
  QtPasteboard& operator=(const QtPasteboard&) = delete;
  // While the application object is still there. Hands over what has not been yet.
  ~QtPasteboard() override;

  // For the end of the program, while all kinds of pictures can still be decoded.
  void handOver();

  void clearContents() override;
  void writeObjects(const PasteboardObjects& objects) override;

 private:
  Scheduler& scheduler_;
  WeakOwner<QtPasteboard> weak_{this};
};

// Puts the files' paths on the clipboard, as text and nothing else.
void copyPaths(const std::vector<FileURL>& urls);

}  // namespace quenlio
