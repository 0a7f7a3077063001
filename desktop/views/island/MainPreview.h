// The large picture of the selected screenshot. Owned by the root view. Main thread.
//
// It shows the thumbnail at once. Where the place for the picture has more device pixels than the thumbnail, a sharper
// rendition is asked for and kept for as long as the view is on the screen.
//
// It only shows: neither presses nor double clicks on it, nor dragging the picture out, do anything yet.
#pragma once

#include <QtGui/QImage>
#include <QtWidgets/QLabel>
#include <cstdint>
#include <functional>
#include <optional>

#include "core/base/WeakOwner.h"
#include "core/island/IslandLayoutMetrics.h"
#include "core/library/ScreenshotItem.h"

#include "desktop/views/island/IslandPalette.h"

namespace quenlio {

// Decodes a file into a picture that fits into that many pixels, off the main thread, and hands it back on the main
// thread; none when the file cannot be read.
using SharpRendition =
    std::function<void(const FileURL& url, QSize pixels, std::function<void(const ImageRef&)> completion)>;

class MainPreview final : public QLabel {
 public:
  MainPreview(QWidget* parent, SharpRendition sharpRendition);

  void apply(const IslandPalette& palette, const IslandLayoutMetrics& metrics);
  // nullptr: the placeholder.
  void show(const ScreenshotItem* item);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  [[nodiscard]] QSize roomInPixels() const;
  [[nodiscard]] double pictureRadius(const QSizeF& size) const;
  void forgetSharp();
  void askForSharpIfNeeded();
  void takeSharp(std::uint64_t request, const ImageRef& image);
  void follow(double scale);
  void preparePicture();
  void paintPlaceholder(QPainter& painter);

  SharpRendition sharpRendition_;
  IslandPalette palette_;
  double cornerRadius_ = 17;
  double contentInset_ = 5;
  double scale_;  // device pixels a point, as last painted

  struct Shown {
    Uuid id;
    FileURL url;
    ImageRef thumbnail;
    bool operator==(const Shown&) const = default;
  };
  std::optional<Shown> shown_;
  QRect inThumbnail_;  // where the picture is on the thumbnail's canvas
  QImage sharp_;
  QSize askedFor_;             // the room that the last request was for; empty: none made
  std::uint64_t request_ = 0;  // the last one; answers to others come too late
  QImage picture_;             // what is painted, in device pixels
  WeakOwner<MainPreview> weak_{this};
};

}  // namespace quenlio
