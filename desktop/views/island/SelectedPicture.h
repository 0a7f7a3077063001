// The selected screenshot's picture in the pixels that the preview has for it. Owned by the preview. Main thread.
//
// It is as large as there is room; a tiny one is enlarged only a little, or there would be nothing but blur. The
// thumbnail serves at once. Where it has fewer device pixels than the picture is shown in, a sharper rendition is asked
// for, and kept for as long as it is on the screen. What is prepared for painting has round corners, and a checker
// shows through where the picture is clear.
#pragma once

#include <QtGui/QImage>
#include <cstdint>
#include <functional>
#include <optional>

#include "core/base/Subscription.h"
#include "core/base/WeakOwner.h"
#include "core/library/ScreenshotItem.h"
#include "core/platform/Scheduler.h"

#include "desktop/views/common/Checker.h"

namespace quenlio {

// Decodes a file into a picture that fits into that many pixels, off the main thread, and hands it back on the main
// thread; none when the file cannot be read. Letting go of the answer ends the decoding, which may take long, and frees
// its thread.
using SharpRendition =
    std::function<Subscription(const FileURL& url, QSize pixels, std::function<void(const ImageRef&)> completion)>;

// Where the picture is to go, in points.
struct PictureRoom {
  QSizeF size;
  double pixelsAPoint = 1;
  double largestRadius = 0;  // of the picture's corners
  Checker checker;
  bool operator==(const PictureRoom&) const = default;
};

class SelectedPicture {
 public:
  // A thumbnail that is not there after this time may never come; the file itself is asked then.
  static constexpr Seconds kPatience{0.6};

  // changed holds its owner weakly. The scheduler outlives this.
  SelectedPicture(Scheduler& scheduler, SharpRendition sharpRendition, std::function<void()> changed);
  SelectedPicture(const SelectedPicture&) = delete;
  SelectedPicture& operator=(const SelectedPicture&) = delete;

  // nullptr: none. True when that is another item than before.
  bool show(const ScreenshotItem* item);
  void setRoom(const PictureRoom& room);
  // What is not on the screen needs no memory, and nothing is decoded for it.
  void setIsOnScreen(bool isOnScreen);

  enum class State { none, loading, ready, broken };
  [[nodiscard]] State state() const;
  // In device pixels; null unless it is ready.
  [[nodiscard]] const QImage& prepared();
  // In points, of the prepared picture's corners.
  [[nodiscard]] double cornerRadius() const;

 private:
  struct Shown {
    Uuid id;
    FileURL url;
    ImageRef thumbnail;
    bool operator==(const Shown&) const = default;
  };
  [[nodiscard]] QSize roomInPixels() const;
  [[nodiscard]] QSize sizeInPixels(const QSize& shape) const;
  void rename(const FileURL& url);
  void forgetSharp();
  void askIfNeeded();
  void ask();
  void take(std::uint64_t request, const ImageRef& image);

  Scheduler& scheduler_;
  SharpRendition sharpRendition_;
  std::function<void()> changed_;
  PictureRoom room_;
  bool isOnScreen_ = false;
  std::optional<Shown> shown_;
  QRect inThumbnail_;  // where the picture is on the thumbnail's canvas
  QSizeF ownSize_;     // in points, of the picture in its file
  bool isBroken_ = false;
  QImage sharp_;
  QSize askedFor_;             // the room that the last request was for; empty: none made
  std::uint64_t request_ = 0;  // the last one; answers to others come too late
  Subscription decoding_;      // that of the last one
  QImage prepared_;
  ScheduledTask patience_;
  WeakOwner<SelectedPicture> weak_{this};
};

}  // namespace quenlio
