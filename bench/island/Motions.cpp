#include "bench/island/Motions.h"

#include <QProcess>
#include <algorithm>
#include <cstdio>
#include <functional>
#include <stdexcept>
#include <thread>

#include "bench/island/ProcessorTime.h"
#include "bench/screen/ScreenRegion.h"

namespace quenlio::bench {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

// Of the smallest island, where points are pixels.
constexpr int kSide = 232;
constexpr int kControlY = 18;  // the middle of each control
constexpr int kFirstX = 22;
constexpr int kLastX = 154;
constexpr int kCloseX = 210;
constexpr Area kRing{.x = kCloseX - 12, .y = kControlY - 12, .width = 24, .height = 24};
constexpr Area kControls{.x = 10, .y = 3, .width = kCloseX - 12 - 10, .height = 30};
constexpr int kRise = 8;

// Longer than the motion takes, and so short that no tooltip follows.
constexpr auto kPillWatch = 320ms;
constexpr auto kEntryWatch = 400ms;
constexpr auto kUnhurried = 500ms;  // until what a pointer's coming or going has begun is over
constexpr auto kPatience = 10s;

Area on(const Island& island, const Area& part) {
  return {.x = island.x + part.x, .y = island.y + part.y, .width = part.width, .height = part.height};
}

void leave(ScreenRegion& screen) {
  screen.movePointer(5, 5);
  std::this_thread::sleep_for(kUnhurried);
}

void watch(ScreenRegion& screen, const ProcessorTime& processor, Clock::duration length,
           const std::function<void()>& begin) {
  std::vector<Time> changes;
  std::vector<std::uint32_t> pixels = screen.look().pixels;
  const auto usedBefore = processor.used();
  const Time start = Clock::now();
  begin();
  while (std::optional<Frame> frame = screen.next(start + length)) {
    if (frame->pixels != pixels) {
      changes.push_back(frame->seen);
      pixels = std::move(frame->pixels);
    }
  }
  std::printf("%.3f %.3f", Milliseconds(processor.used() - usedBefore).count(),
              Milliseconds(Clock::now() - start).count());
  for (const Time change : changes) {
    std::printf(" %.3f", Milliseconds(change - start).count());
  }
  std::printf("\n");
  std::fflush(stdout);
}

void close(ScreenRegion& screen, const Island& island, std::uint32_t desktop) {
  screen.click(island.x + kCloseX, island.y + kControlY);
  const Time deadline = Clock::now() + kPatience;
  const auto isBare = [desktop](const Frame& frame) {
    return std::ranges::all_of(frame.pixels, [desktop](std::uint32_t pixel) { return pixel == desktop; });
  };
  for (std::optional<Frame> frame = screen.look(); !isBare(*frame);) {
    frame = screen.next(deadline);
    if (!frame) {
      throw std::runtime_error("the island does not close");
    }
  }
  leave(screen);
}

}  // namespace

void watchRing(const Island& island, int rounds, double seconds) {
  ScreenRegion screen(on(island, kRing));
  const ProcessorTime processor(island.pid);
  for (int round = 0; round < rounds; ++round) {
    screen.movePointer(island.x + kSide / 2, island.y + kSide / 2);
    std::this_thread::sleep_for(kUnhurried);
    leave(screen);
    const auto length = std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds));
    watch(screen, processor, length, [] {});
  }
}

void watchPill(const Island& island, int rounds) {
  ScreenRegion screen(on(island, kControls));
  const ProcessorTime processor(island.pid);
  const auto pointAt = [&](int x) { screen.movePointer(island.x + x, island.y + kControlY); };
  // Once there and back first: the first time is that of all that is made but once.
  for (const int x : {kFirstX, kLastX, kFirstX}) {
    pointAt(x);
    std::this_thread::sleep_for(kPillWatch);
  }
  for (int round = 0; round < rounds; ++round) {
    watch(screen, processor, kPillWatch, [&] { pointAt(round % 2 == 0 ? kLastX : kFirstX); });
  }
}

void watchEntry(const Island& island, int rounds, std::uint32_t desktop, const QStringList& command) {
  ScreenRegion screen(on(island, {.x = 0, .y = 0, .width = kSide, .height = kSide + kRise}));
  const ProcessorTime processor(island.pid);
  const auto show = [&command] {
    QProcess process;
    process.setProgram(command.front());
    process.setArguments(command.mid(1));
    process.setStandardOutputFile(QProcess::nullDevice());
    if (!process.startDetached()) {
      throw std::runtime_error("nothing can be asked to show the island");
    }
  };
  close(screen, island, desktop);
  for (int round = 0; round < rounds; ++round) {
    watch(screen, processor, kEntryWatch, show);
    close(screen, island, desktop);
  }
}

}  // namespace quenlio::bench
