// Series of motions of the island, each watched on the screen: the ring that counts down, the pill that slides between
// the controls, and the island's own coming up. Prints a line a motion: the milliseconds of processor time that the
// program used from its beginning to the end of the watch, how long that was, and when each frame was seen that was not
// as the one before, in milliseconds since the motion was asked for.
#pragma once

#include <QStringList>
#include <cstdint>
#include <sys/types.h>

namespace quenlio::bench {

// The smallest island at this place of the screen, in pixels; the program that shows it.
struct Island {
  pid_t pid = 0;
  int x = 0;
  int y = 0;
};

// From a moment after the pointer has left the island.
void watchRing(const Island& island, int rounds, double seconds);
// From the first control to the last before the one that closes, and back. The pointer is left in the island.
void watchPill(const Island& island, int rounds);
// Of an island that is up at first and left closed. The desktop around it is of one colour; the command has it shown.
void watchEntry(const Island& island, int rounds, std::uint32_t desktop, const QStringList& command);

}  // namespace quenlio::bench
