// The pictures of the preview window: the one that is shown and those next to it, and none else. Owned by the window,
// and gone with it. Main thread; decoding is on others.
//
// What is shown is decoded first and at once. Its neighbours follow one after the other, once it has had the time to be
// painted, so that they take none from it. What is no longer wanted is stopped while it is being decoded, and its
// answer dropped: however fast the choice changes, nothing queues up and nothing old replaces something newer.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <vector>

#include "core/base/WeakOwner.h"
#include "core/platform/Scheduler.h"

#include "desktop/views/preview/PreviewPicture.h"

namespace quenlio {

class PreviewPictures {
 public:
  static constexpr Seconds kTimeToPaint{0.03};

  // changed is told of news about the picture that is shown. The scheduler outlives this.
  PreviewPictures(Scheduler& scheduler, PictureSource source, std::function<void()> changed);
  PreviewPictures(const PreviewPictures&) = delete;
  PreviewPictures& operator=(const PreviewPictures&) = delete;
  ~PreviewPictures();

  // The first is shown; the others are next to it, the likelier one first. A file that has changed since is read anew.
  void want(const std::vector<FileURL>& files, const preview::Room& room);
  // None is wanted any more.
  void clear();
  // Of the file that is wanted first; there is one.
  [[nodiscard]] const PreviewPicture& shown() const { return entries_.front().picture; }

 private:
  struct Entry {
    FileURL url;
    PreviewPicture picture;
    std::optional<PreviewStamp> stamp;  // of the file as it was read
    std::uint64_t request = 0;          // 0: not begun
    std::stop_source stop;
  };
  struct Answer {
    PreviewPicture picture;
    std::optional<PreviewStamp> stamp;
  };

  [[nodiscard]] Entry taken(const FileURL& url);
  [[nodiscard]] Entry* entryOf(std::uint64_t request);
  void stopAll();
  void beginNext();
  void beginNeighbour();
  void begin(Entry& entry);
  void takeSize(std::uint64_t request, QSizeF points);
  void take(std::uint64_t request, const Answer& answer);

  Scheduler& scheduler_;
  const std::shared_ptr<const PictureSource> source_;  // shared with what is being decoded
  const std::function<void()> changed_;
  preview::Room room_;
  std::vector<Entry> entries_;  // as they are wanted
  std::uint64_t lastRequest_ = 0;
  ScheduledTask neighbours_;  // until they may be begun
  WeakOwner<PreviewPictures> weak_{this};
};

}  // namespace quenlio
