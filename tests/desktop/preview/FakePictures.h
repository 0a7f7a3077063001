// Files and what opening them gives, for tests of what is done with pictures: each file is one colour all over, and the
// pictures that are in memory are counted.
#pragma once

#include <QtGui/QColor>
#include <algorithm>
#include <atomic>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "desktop/views/preview/PreviewPicture.h"

#include "tests/desktop/render/Pictures.h"

namespace quenlio {

class FakePictures {
 public:
  // A file that is there. Its contents count for nothing but its being changed.
  FileURL add(const std::string& name, QSize points, const QColor& colour, bool isMeasured = true) {
    const FileURL url = folder_.write(name, "one");
    files_[url] = {points, colour, isMeasured};
    return url;
  }
  void change(const FileURL& url, const QColor& colour) {
    folder_.write(url.lastPathComponent(), "another");
    files_[url].colour = colour;
  }
  [[nodiscard]] const test::PictureFolder& folder() const { return folder_; }

  // Files that were never added cannot be opened.
  [[nodiscard]] PictureSource source() {
    return {.pointSize = [this](const FileURL& url) { return pointSize(url); },
            .decode = [this](const FileURL& url, QSize fit, bool mayEnlarge,
                             const std::stop_token&) { return decode(url, fit, mayEnlarge); }};
  }

  std::vector<FileURL> decoded;  // in the order of asking
  std::function<void()> whileDecoding;
  [[nodiscard]] int inMemory() const { return *inMemory_; }

 private:
  struct File {
    QSize points;
    QColor colour;
    bool isMeasured = true;
  };

  std::optional<QSizeF> pointSize(const FileURL& url) {
    const auto file = files_.find(url);
    return file != files_.end() && file->second.isMeasured ? std::optional(QSizeF(file->second.points)) : std::nullopt;
  }

  std::optional<DecodedImage> decode(const FileURL& url, QSize fit, bool mayEnlarge) {
    decoded.push_back(url);
    if (whileDecoding) {
      whileDecoding();
    }
    const auto file = files_.find(url);
    if (file == files_.end()) {
      return std::nullopt;
    }
    const QSize points = file->second.points;
    const bool shrinks = points.width() > fit.width() || points.height() > fit.height();
    const QSize size = shrinks || mayEnlarge ? points.scaled(fit, Qt::KeepAspectRatio) : points;
    return DecodedImage{counted(size.expandedTo({1, 1}), file->second.colour), points};
  }

  QImage counted(QSize size, const QColor& colour) {
    struct Pixels {
      std::vector<QRgb> pixels;
      std::shared_ptr<std::atomic<int>> count;
    };
    const auto area = static_cast<std::size_t>(size.width()) * static_cast<std::size_t>(size.height());
    auto* held = new Pixels{std::vector<QRgb>(area, colour.rgba()), inMemory_};
    ++*inMemory_;
    return {reinterpret_cast<uchar*>(held->pixels.data()),
            size.width(),
            size.height(),
            size.width() * 4,
            QImage::Format_ARGB32_Premultiplied,
            [](void* info) {
              auto* pixels = static_cast<Pixels*>(info);
              --*pixels->count;
              delete pixels;
            },
            held};
  }

  test::PictureFolder folder_;
  std::map<FileURL, File> files_;
  std::shared_ptr<std::atomic<int>> inMemory_ = std::make_shared<std::atomic<int>>(0);
};

}  // namespace quenlio
