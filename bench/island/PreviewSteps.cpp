#include "bench/island/PreviewSteps.h"

#include <cstdio>
#include <stdexcept>
#include <sys/stat.h>

#include "desktop/render/ImageDecoder.h"
#include "desktop/views/preview/PreviewLayout.h"

#include "bench/island/ProcessorTime.h"
#include "bench/screen/Captures.h"

namespace quenlio::bench {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr std::uint32_t kLeft = 0xff51;
constexpr std::uint32_t kRight = 0xff53;
constexpr std::size_t kWarmUp = 3;
constexpr auto kPatience = 10s;
constexpr auto kStill = 80ms;  // nothing changes any more

class Series {
 public:
  explicit Series(const PreviewSteps& options) : options_(options), screen_(options.seen), processor_(options.pid) {}

  void run() {
    processor_.waitUntilIdle();  // the window has come up
    if (!showsCapture(screen_.look())) {
      throw std::runtime_error("the preview does not show the newest capture");
    }
    for (std::size_t step = 0; step < options_.steps + kWarmUp; ++step) {
      const double painted = takeStep();
      const double decoded = decoding();
      if (step >= kWarmUp) {
        std::printf("%.3f %.3f\n", painted, decoded);
        std::fflush(stdout);
      }
    }
    while (index_ > 0) {
      isForward_ = false;
      (void)takeStep();
    }
  }

 private:
  // The newest is the first of the list.
  [[nodiscard]] std::size_t number() const { return options_.captures - 1 - index_; }
  [[nodiscard]] std::string path() const { return options_.folder + "/" + captureName(number()); }

  double takeStep() {
    processor_.waitUntilIdle();
    isForward_ = index_ == 0 || (isForward_ && index_ + 1 < options_.captures);  // turns at the ends
    index_ += isForward_ ? 1 : std::size_t(-1);
    if (options_.neighbour == PreviewSteps::Neighbour::cold) {
      change(path());
      processor_.waitUntilIdle();
    }
    (void)screen_.look();
    const Time pressed = Clock::now();
    screen_.type(isForward_ ? kRight : kLeft);
    const std::vector<Frame> frames = watch();
    const auto shown = std::ranges::find(frames, frames.back().pixels, &Frame::pixels);
    return Milliseconds(shown->seen - pressed).count();
  }

  // Its bytes stay as they are.
  void change(const std::string& path) {
    isReadableToAll_ = !isReadableToAll_;
    if (::chmod(path.c_str(), isReadableToAll_ ? 0644 : 0640) != 0) {
      throw std::runtime_error("cannot change " + path);
    }
  }

  // Every frame until the capture stands still.
  std::vector<Frame> watch() {
    std::vector<Frame> frames;
    const Time deadline = Clock::now() + kPatience;
    Time changed = Clock::now();
    for (;;) {
      const bool there = !frames.empty() && showsCapture(frames.back());
      std::optional<Frame> frame = screen_.next(there ? changed + kStill : deadline);
      if (there && (!frame || frame->seen >= changed + kStill)) {
        return frames;
      }
      if (!frame || Clock::now() > deadline) {
        throw std::runtime_error("the preview does not show " + path());
      }
      if (frames.empty() || frame->pixels != frames.back().pixels) {
        changed = frame->seen;
        frames.push_back(std::move(*frame));
      }
    }
  }

  [[nodiscard]] bool showsCapture(const Frame& frame) const {
    const Area& seen = options_.seen;
    const int at = (options_.middleY - seen.y) * seen.width + options_.middleX - seen.x;
    return frame.pixels.at(static_cast<std::size_t>(at)) == captureColour(number());
  }

  double decoding() {
    processor_.waitUntilIdle();
    const FileURL url(path());
    const auto points = decoder_.pointSize(url);
    const Time begin = Clock::now();
    if (!points || !decoder_.decode(url, preview::shownPixels(*points, {.workArea = options_.workArea}), true)) {
      throw std::runtime_error("cannot decode " + path());
    }
    return Milliseconds(Clock::now() - begin).count();
  }

  const PreviewSteps& options_;
  ScreenRegion screen_;
  ProcessorTime processor_;
  ImageDecoder decoder_{ChildDecoder(FileURL("/nonexistent"))};
  std::size_t index_ = 0;
  bool isForward_ = true;
  bool isReadableToAll_ = true;
};

}  // namespace

std::string captureName(std::size_t number) {
  char text[64];
  const int length =
      std::snprintf(text, sizeof text, "Screenshot from 2026-11-15 21-%02zu-%02zu.png", number / 60, number % 60);
  return {text, static_cast<std::size_t>(length)};
}

void watchSteps(const PreviewSteps& series) {
  Series(series).run();
}

}  // namespace quenlio::bench
