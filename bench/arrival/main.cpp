// bench-arrival FOLDER COUNT WIDTH HEIGHT hidden|up PANEL_X PANEL_Y DESKTOP
//
// One series of arrivals at a program that runs already and watches FOLDER, on a desktop of one colour (RRGGBB) with
// the panel at that place. Writes one capture after the other as a tool does and watches the screen. Prints a line for
// each: the milliseconds from the writer's close to the first visible frame that names the capture, to the first with
// its picture, and what decoding and shrinking that very file takes by itself. Ends with 1 and a reason when something
// never came. The first few arrivals warm up and are not printed.
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <fcntl.h>
#include <random>
#include <stdexcept>
#include <string>
#include <thread>
#include <unistd.h>

#include "desktop/render/QtThumbnailRenderer.h"

#include "bench/arrival/FrameMatch.h"
#include "bench/screen/Captures.h"
#include "bench/screen/ScreenRegion.h"

namespace quenlio::bench {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

// The smallest island, which a new user has; points are pixels here.
constexpr Area kSeen{.x = 0, .y = 35, .width = 232, .height = 164};  // of the panel: its picture and its name
constexpr Area kName{.x = 12, .y = 167 - kSeen.y, .width = 208, .height = 24};
constexpr Area kMiddle{.x = 96, .y = 84 - kSeen.y, .width = 40, .height = 30};
constexpr Area kWell{.x = 12, .y = 99 - kSeen.y, .width = 1, .height = 1};  // beside the picture
constexpr int kCloseX = 210;  // the middle of the control that closes the island
constexpr int kCloseY = 18;
constexpr int kMostRise = 8;
constexpr std::size_t kWarmUp = 5;
constexpr auto kPatience = 10s;
constexpr auto kStill = 80ms;  // nothing changes any more

struct Options {
  std::string folder;
  std::size_t count;
  QSize size;
  bool hidden;
  int panelX;
  int panelY;
  std::uint32_t desktop;
};

struct Sample {
  double named;  // milliseconds
  double pixels;
  double decoding;
};

class Series {
 public:
  explicit Series(Options options)
      : options_(std::move(options)),
        captures_(makeCaptures(options_.size)),
        screen_({.x = options_.panelX, .y = options_.panelY + kSeen.y, .width = kSeen.width, .height = kSeen.height}),
        name_(lookAt(kName)),
        middle_(lookAt(kMiddle)),
        earlier_(screen_.look()) {}

  void run() {
    for (std::size_t index = 0; index < options_.count + kWarmUp; ++index) {
      const Sample sample = arrive(index);
      if (index >= kWarmUp) {
        std::printf("%.3f %.3f %.3f\n", sample.named, sample.pixels, sample.decoding);
        std::fflush(stdout);
      }
    }
  }

 private:
  Look lookAt(const Area& part) const {
    return {.frameWidth = kSeen.width, .part = part, .desktop = options_.desktop, .mostRise = kMostRise};
  }

  // In a panel that is up a new picture comes in out of its well, and not the panel out of the desktop.
  Look pictureOf(const Frame& final) const {
    Look look = middle_;
    if (!options_.hidden) {
      look.desktop = final.pixels[static_cast<std::size_t>(kWell.y * kSeen.width + kWell.x)] & 0xffffff;
    }
    return look;
  }

  Sample arrive(std::size_t index) {
    const Capture& capture = captures_[index % captures_.size()];
    const std::string path = options_.folder + "/" + fileName(index);
    (void)screen_.look();
    const Time closed = write(path, capture.png);
    const std::vector<Frame> frames = watch(capture.colour);
    const Frame& final = frames.back();
    if (changedPixels(name_, final, earlier_) == 0) {
      throw std::runtime_error("the island does not name " + path);
    }
    Sample sample{.named = since(closed, firstThatShows(name_, frames)),
                  .pixels = since(closed, firstThatShows(pictureOf(final), frames)),
                  .decoding = decoding(path)};
    earlier_ = final;
    if (options_.hidden) {
      hide();
    }
    // So that arrivals fall into every moment of the program's own rhythms.
    std::this_thread::sleep_for(std::chrono::milliseconds(std::uniform_int_distribution(100, 350)(random_)));
    return sample;
  }

  // By a common tool's naming, one for each second.
  std::string fileName(std::size_t index) const {
    const std::time_t moment = start_ + static_cast<std::time_t>(index);
    std::tm local{};
    localtime_r(&moment, &local);
    char text[64];
    const std::size_t length = std::strftime(text, sizeof text, "Screenshot from %Y-%m-%d %H-%M-%S.png", &local);
    return {text, length};
  }

  // In place and piece by piece. The moment after the close.
  static Time write(const std::string& path, const QByteArray& data) {
    constexpr qsizetype piece = 65536;
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
    bool written = file >= 0;
    for (qsizetype at = 0; written && at < data.size(); at += piece) {
      const auto length = static_cast<std::size_t>(std::min(piece, data.size() - at));
      written = ::write(file, data.constData() + at, length) == static_cast<ssize_t>(length);
    }
    if (!written || ::close(file) != 0) {
      throw std::runtime_error("cannot write " + path);
    }
    return Clock::now();
  }

  // Every frame until the picture with this middle stands still.
  std::vector<Frame> watch(std::uint32_t colour) {
    std::vector<Frame> frames;
    const Time deadline = Clock::now() + kPatience;
    Time changed = Clock::now();
    for (;;) {
      const bool there = !frames.empty() && hasColour(frames.back(), colour);
      std::optional<Frame> frame = screen_.next(there ? changed + kStill : deadline);
      if (!frame && there) {
        return frames;
      }
      if (Clock::now() > deadline) {
        throw std::runtime_error("no island with the capture's picture");
      }
      if (frame && (frames.empty() || frame->pixels != frames.back().pixels)) {
        changed = frame->seen;
        frames.push_back(std::move(*frame));
      } else if (there && Clock::now() >= changed + kStill) {
        return frames;
      }
    }
  }

  static bool hasColour(const Frame& frame, std::uint32_t colour) {
    constexpr int near = 40;  // the island lets a little of its glass and of the desktop through
    const std::uint32_t pixel = frame.pixels[static_cast<std::size_t>((kMiddle.y + kMiddle.height / 2) * kSeen.width +
                                                                      kMiddle.x + kMiddle.width / 2)];
    for (const int shift : {16, 8, 0}) {
      if (std::abs(static_cast<int>(pixel >> shift & 0xff) - static_cast<int>(colour >> shift & 0xff)) > near) {
        return false;
      }
    }
    return true;
  }

  Time firstThatShows(const Look& look, const std::vector<Frame>& frames) const {
    for (const Frame& frame : frames) {
      if (shows(look, frame, frames.back(), earlier_)) {
        return frame.seen;
      }
    }
    throw std::runtime_error("the final frame does not show what it is made of");
  }

  static double since(Time from, Time to) { return Milliseconds(to - from).count(); }

  double decoding(const std::string& path) {
    const Time begin = Clock::now();
    if (renderer_.render(FileURL(path), {280, 220}) == nullptr) {
      throw std::runtime_error("cannot decode " + path);
    }
    return since(begin, Clock::now());
  }

  void hide() {
    screen_.click(options_.panelX + kCloseX, options_.panelY + kCloseY);
    const Time deadline = Clock::now() + kPatience;
    for (std::optional<Frame> frame = screen_.look(); !isBare(*frame);) {
      frame = screen_.next(deadline);
      if (!frame) {
        throw std::runtime_error("the island does not close");
      }
    }
    screen_.movePointer(5, 5);
  }

  bool isBare(const Frame& frame) const {
    return std::ranges::all_of(frame.pixels, [this](std::uint32_t pixel) { return pixel == options_.desktop; });
  }

  Options options_;
  std::vector<Capture> captures_;
  ScreenRegion screen_;
  Look name_;
  Look middle_;
  Frame earlier_;  // what the screen showed once the arrival before had settled
  std::time_t start_ = std::time(nullptr);
  std::mt19937 random_{1};
  QtThumbnailRenderer renderer_{ImageDecoder(ChildDecoder(FileURL("/nonexistent"))), [] { return 1.0; }};
};

}  // namespace
}  // namespace quenlio::bench

int main(int argc, char** argv) {
  if (argc != 9) {
    std::fputs("usage: bench-arrival FOLDER COUNT WIDTH HEIGHT hidden|up PANEL_X PANEL_Y DESKTOP\n", stderr);
    return 2;
  }
  try {
    quenlio::bench::Series({.folder = argv[1],
                            .count = std::stoul(argv[2]),
                            .size = {std::stoi(argv[3]), std::stoi(argv[4])},
                            .hidden = std::string(argv[5]) == "hidden",
                            .panelX = std::stoi(argv[6]),
                            .panelY = std::stoi(argv[7]),
                            .desktop = static_cast<std::uint32_t>(std::stoul(argv[8], nullptr, 16))})
        .run();
  } catch (const std::exception& problem) {
    std::fprintf(stderr, "bench-arrival: %s\n", problem.what());
    return 1;
  }
}
