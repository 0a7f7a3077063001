// A series of steps through the preview window with the arrow keys, from one end of the list to the other and back
// again and again, and at last to where it began.
// Prints a line a step: the milliseconds from the key press to the first frame on the screen that shows the next
// capture as it stays, and what decoding that very file for that window takes by itself.
#pragma once

#include <QSizeF>
#include <string>
#include <sys/types.h>

#include "bench/screen/ScreenRegion.h"

namespace quenlio::bench {

// The name of a capture in its folder, by a common tool's naming, one for each second.
[[nodiscard]] std::string captureName(std::size_t number);

struct PreviewSteps {
  enum class Neighbour {
    prefetched,  // the next capture has been decoded when the key is pressed
    cold,        // its file has changed since, so that it is to be decoded anew
  };
  pid_t pid = 0;
  Area seen;        // the part of the window that is watched: it has the picture's middle in it
  int middleX = 0;  // of the picture, on the screen
  int middleY = 0;
  QSizeF workArea;
  std::string folder;  // with the captures that makeCaptures() gives, the newest of which is shown
  std::size_t captures = 0;
  std::size_t steps = 0;
  Neighbour neighbour = Neighbour::prefetched;
};

// Throws std::runtime_error when the next capture is not shown.
void watchSteps(const PreviewSteps& series);

}  // namespace quenlio::bench
