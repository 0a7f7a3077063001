// Drags to other programs by XDND, of files and as copies whatever keys are held. Main thread.
//
// The drag has a loop of its own while it runs, in which all else goes on. There is one picture for all files, which
// shows them fanned as their frames say, whatever the formation. Nothing flies back where it came from: the picture is
// the toolkit's, which takes it away where the pointer lets go of it.
#pragma once

#include <memory>

#include "core/base/WeakOwner.h"
#include "core/platform/Dragging.h"

#include "desktop/linux/session/CompositorWatch.h"

namespace quenlio {

class QtDraggingSessions final : public DraggingSessions {
 public:
  // The watch outlives this.
  explicit QtDraggingSessions(CompositorWatch& compositor) : compositor_(compositor) {}

  // A session is over at once when no button is down that could be let go of, when its window is gone, or while another
  // one runs.
  DraggingSessionID beginDraggingSession(const DraggingRequest& request,
                                         std::function<void(DraggingSessionID)> ended) override;

 private:
  void run(const DraggingRequest& request);

  CompositorWatch& compositor_;
  DraggingSessionID lastID_ = 0;
  bool isRunning_ = false;
  WeakOwner<QtDraggingSessions> weak_{this};
};

}  // namespace quenlio
