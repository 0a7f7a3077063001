// Watches the island of a program that runs already, on a desktop of one colour (RRGGBB) with the smallest island at
// the place that is given. What is printed is told by the headers of the series. Ends with 1 and a reason when
// something never came.
//
// bench-island captures FOLDER COUNT WIDTH HEIGHT
//     Writes so many captures of that size, one after the other, the newest last.
// bench-island ring PID PANEL_X PANEL_Y ROUNDS SECONDS
// bench-island pill PID PANEL_X PANEL_Y ROUNDS
// bench-island entry PID PANEL_X PANEL_Y ROUNDS DESKTOP COMMAND...
// bench-island preview PID X Y WIDTH HEIGHT MIDDLE_X MIDDLE_Y SCREEN_WIDTH SCREEN_HEIGHT FOLDER CAPTURES STEPS
//              prefetched|cold
#include <QFile>
#include <cstdio>
#include <exception>
#include <stdexcept>

#include "bench/island/Motions.h"
#include "bench/island/PreviewSteps.h"
#include "bench/screen/Captures.h"

namespace quenlio::bench {
namespace {

struct Usage : std::runtime_error {
  Usage() : std::runtime_error("not called as its source tells") {}
};

class Arguments {
 public:
  Arguments(int count, char** values) : left_(values + 1, values + count) {}

  std::string text() {
    if (left_.empty()) {
      throw Usage();
    }
    std::string next = left_.front();
    left_.erase(left_.begin());
    return next;
  }
  int number() { return std::stoi(text()); }
  std::size_t count() { return std::stoul(text()); }
  Island island() { return {.pid = number(), .x = number(), .y = number()}; }
  std::uint32_t colour() { return static_cast<std::uint32_t>(std::stoul(text(), nullptr, 16)); }
  QStringList rest() {
    QStringList all;
    while (!left_.empty()) {
      all.append(QString::fromStdString(text()));
    }
    return all.isEmpty() ? throw Usage() : all;
  }

 private:
  std::vector<std::string> left_;
};

void writeCaptures(const std::string& folder, std::size_t count, QSize size) {
  const std::vector<Capture> captures = makeCaptures(size, count);
  for (std::size_t number = 0; number < count; ++number) {
    QFile file(QString::fromStdString(folder + "/" + captureName(number)));
    const QByteArray& png = captures[number].png;
    if (!file.open(QIODevice::WriteOnly) || file.write(png) != png.size()) {
      throw std::runtime_error("cannot write " + file.fileName().toStdString());
    }
  }
}

PreviewSteps previewSteps(Arguments& arguments) {
  PreviewSteps series;
  series.pid = arguments.number();
  series.seen.x = arguments.number();
  series.seen.y = arguments.number();
  series.seen.width = arguments.number();
  series.seen.height = arguments.number();
  series.middleX = arguments.number();
  series.middleY = arguments.number();
  series.workArea.setWidth(arguments.number());
  series.workArea.setHeight(arguments.number());
  series.folder = arguments.text();
  series.captures = arguments.count();
  series.steps = arguments.count();
  const bool isCold = arguments.text() == "cold";
  series.neighbour = isCold ? PreviewSteps::Neighbour::cold : PreviewSteps::Neighbour::prefetched;
  return series;
}

void run(Arguments arguments) {
  const std::string series = arguments.text();
  if (series == "captures") {
    const std::string folder = arguments.text();
    const std::size_t count = arguments.count();
    const int width = arguments.number();
    writeCaptures(folder, count, {width, arguments.number()});
  } else if (series == "ring") {
    const Island island = arguments.island();
    const int rounds = arguments.number();
    watchRing(island, rounds, std::stod(arguments.text()));
  } else if (series == "pill") {
    const Island island = arguments.island();
    watchPill(island, arguments.number());
  } else if (series == "entry") {
    const Island island = arguments.island();
    const int rounds = arguments.number();
    const std::uint32_t desktop = arguments.colour();
    watchEntry(island, rounds, desktop, arguments.rest());
  } else if (series == "preview") {
    watchSteps(previewSteps(arguments));
  } else {
    throw Usage();
  }
}

}  // namespace
}  // namespace quenlio::bench

int main(int argc, char** argv) {
  try {
    quenlio::bench::run({argc, argv});
  } catch (const std::exception& problem) {
    std::fprintf(stderr, "bench-island: %s\n", problem.what());
    return 1;
  }
}
