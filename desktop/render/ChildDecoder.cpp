#include "desktop/render/ChildDecoder.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "desktop/linux/system/ChildProcess.h"
#include "desktop/render/DecoderProtocol.h"

namespace quenlio {
namespace {

bool answers(const decoder::Header& header, const Fit& fit) {
  const bool exact = fit.mode == Fit::Mode::centred;
  const auto side = [exact](int given, int wanted) { return exact ? given == wanted : given >= 1 && given <= wanted; };
  const auto points = [](double length) { return std::isfinite(length) && length > 0 && length <= kLongestSide; };
  return header.magic == decoder::Header::kMagic && isReasonable(header.width, header.height) &&
         side(header.width, fit.canvas.width()) && side(header.height, fit.canvas.height()) &&
         points(header.pointWidth) && points(header.pointHeight);
}

// No colour of a premultiplied pixel is stronger than its alpha, and drawing code relies on that.
void boundByAlpha(QRgb* row, int width) {
  for (int x = 0; x < width; ++x) {
    const int alpha = qAlpha(row[x]);
    row[x] =
        qRgba(std::min(qRed(row[x]), alpha), std::min(qGreen(row[x]), alpha), std::min(qBlue(row[x]), alpha), alpha);
  }
}

std::optional<DecodedImage> readAnswer(ChildProcess& child, const Fit& fit, ChildProcess::Deadline deadline) {
  decoder::Header header;
  if (!child.read(&header, sizeof header, deadline) || !answers(header, fit)) {
    return std::nullopt;
  }
  QImage image(header.width, header.height, QImage::Format_ARGB32_Premultiplied);
  const std::size_t rowBytes = static_cast<std::size_t>(header.width) * sizeof(QRgb);
  for (int y = 0; y < image.height(); ++y) {
    auto* const row = reinterpret_cast<QRgb*>(image.scanLine(y));
    if (!child.read(row, rowBytes, deadline)) {
      return std::nullopt;
    }
    boundByAlpha(row, header.width);
  }
  if (image.isNull()) {
    return std::nullopt;
  }
  return DecodedImage{image, QSizeF(header.pointWidth, header.pointHeight)};
}

}  // namespace

// One child, among those that stop() kills, for as long as somebody waits for it.
class ChildDecoder::Running {
 public:
  Running(Children& children, const ChildProcess& child) : children_(children), child_(child) {
    const std::scoped_lock lock(children_.mutex);
    children_.running.insert(&child_);
    if (children_.isStopped) {
      child_.kill();
    }
  }
  Running(const Running&) = delete;
  Running& operator=(const Running&) = delete;
  ~Running() {
    const std::scoped_lock lock(children_.mutex);
    children_.running.erase(&child_);
  }

 private:
  Children& children_;
  const ChildProcess& child_;
};

void ChildDecoder::stop() const {
  const std::scoped_lock lock(children_->mutex);
  children_->isStopped = true;
  for (const ChildProcess* child : children_->running) {
    child->kill();
  }
}

std::optional<DecodedImage> ChildDecoder::decode(int descriptor, PictureKind kind, const Fit& fit,
                                                 const std::stop_token& stop) const {
  const auto deadline = std::chrono::steady_clock::now() + patience_;
  const auto kindName = std::ranges::find(decoder::kKinds, kind, &decoder::NamedKind::kind)->name;
  const auto modeName = std::ranges::find(decoder::kModes, fit.mode, &decoder::NamedMode::mode)->name;
  auto child = ChildProcess::start({program_.path(), std::string(kindName), std::to_string(fit.canvas.width()),
                                    std::to_string(fit.canvas.height()), std::string(modeName)},
                                   descriptor);
  if (!child) {
    return std::nullopt;
  }
  const Running running(*children_, *child);
  const std::stop_callback stopping(stop, [&child] { child->kill(); });
  return readAnswer(*child, fit, deadline);
}

}  // namespace quenlio
