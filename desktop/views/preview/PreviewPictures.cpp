#include "desktop/views/preview/PreviewPictures.h"

#include <algorithm>
#include <utility>

namespace quenlio {

using State = PreviewPicture::State;

PreviewPictures::PreviewPictures(Scheduler& scheduler, PictureSource source, std::function<void()> changed)
    : scheduler_(scheduler),
      source_(std::make_shared<const PictureSource>(std::move(source))),
      changed_(std::move(changed)) {}

PreviewPictures::~PreviewPictures() {
  clear();
}

void PreviewPictures::want(const std::vector<FileURL>& files, const preview::Room& room) {
  if (room != room_) {
    clear();
    room_ = room;
  }
  std::vector<Entry> wanted;
  for (const FileURL& url : files) {
    if (std::ranges::find(wanted, url, &Entry::url) == wanted.end()) {
      wanted.push_back(taken(url));
    }
  }
  stopAll();  // whatever has not been taken over
  entries_ = std::move(wanted);
  Entry& first = entries_.front();
  if (first.picture.state != State::loading && PreviewStamp::of(first.url) != first.stamp) {
    first = Entry{.url = first.url, .picture = {}, .stamp = {}, .request = 0, .stop = {}};
  }
  beginNext();
}

void PreviewPictures::clear() {
  neighbours_.cancel();
  stopAll();
  entries_.clear();
}

PreviewPictures::Entry PreviewPictures::taken(const FileURL& url) {
  const auto found = std::ranges::find(entries_, url, &Entry::url);
  if (found == entries_.end()) {
    return {.url = url, .picture = {}, .stamp = {}, .request = 0, .stop = {}};
  }
  Entry entry = std::move(*found);
  entries_.erase(found);
  return entry;
}

PreviewPictures::Entry* PreviewPictures::entryOf(std::uint64_t request) {
  const auto found = std::ranges::find(entries_, request, &Entry::request);
  return found != entries_.end() ? &*found : nullptr;
}

void PreviewPictures::stopAll() {
  for (Entry& entry : entries_) {
    entry.stop.request_stop();
  }
}

void PreviewPictures::beginNext() {
  neighbours_.cancel();
  if (entries_.empty()) {
    return;
  }
  if (entries_.front().request == 0) {
    begin(entries_.front());
  } else if (entries_.front().picture.state != State::loading) {
    neighbours_ = scheduler_.after(kTimeToPaint, weak_.bind([](PreviewPictures& self) { self.beginNeighbour(); }));
  }
}

void PreviewPictures::beginNeighbour() {
  const auto isBegun = [](const Entry& entry) { return entry.request != 0; };
  const auto isRunning = [](const Entry& entry) { return entry.request != 0 && entry.picture.state == State::loading; };
  const auto next = std::ranges::find_if_not(entries_, isBegun);
  if (next != entries_.end() && std::ranges::none_of(entries_, isRunning)) {
    begin(*next);
  }
}

void PreviewPictures::begin(Entry& entry) {
  entry.request = ++lastRequest_;
  const auto measured =
      weak_.bind([request = entry.request](PreviewPictures& self, QSizeF points) { self.takeSize(request, points); });
  const auto done = weak_.bind(
      [request = entry.request](PreviewPictures& self, const Answer& answer) { self.take(request, answer); });
  scheduler_.detached(QualityOfService::userInitiated, [&scheduler = scheduler_, source = source_, url = entry.url,
                                                        room = room_, stop = entry.stop.get_token(), measured, done] {
    if (stop.stop_requested()) {
      return;
    }
    // Before the file is read: a change meanwhile is then noticed later.
    const auto stamp = PreviewStamp::of(url);
    const auto tellSize = [&scheduler, &measured](QSizeF points) {
      scheduler.post([measured, points] { measured(points); });
    };
    const Answer answer{loadPreviewPicture(*source, url, room, stop, tellSize), stamp};
    if (!stop.stop_requested()) {
      scheduler.post([done, answer] { done(answer); });
    }
  });
}

void PreviewPictures::takeSize(std::uint64_t request, QSizeF points) {
  Entry* const entry = entryOf(request);
  if (entry == nullptr) {
    return;
  }
  entry->picture.points = points;
  if (entry == &entries_.front()) {
    changed_();
  }
}

void PreviewPictures::take(std::uint64_t request, const Answer& answer) {
  Entry* const entry = entryOf(request);
  if (entry == nullptr) {
    return;
  }
  entry->picture = answer.picture;
  entry->stamp = answer.stamp;
  if (entry == &entries_.front()) {
    changed_();
    beginNext();
  } else {
    beginNeighbour();
  }
}

}  // namespace quenlio
