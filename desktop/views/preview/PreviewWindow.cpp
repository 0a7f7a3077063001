#include "desktop/views/preview/PreviewWindow.h"

#include <QtGui/QGuiApplication>
#include <QtGui/QScreen>
#include <QtWidgets/QApplication>
#include <algorithm>
#include <memory>
#include <utility>

#include "core/geometry/Easing.h"

#include "desktop/linux/session/QtScreens.h"
#include "desktop/linux/session/ScreenGeometry.h"

namespace quenlio {
namespace {

constexpr Seconds kEntrance{0.16};

// The primary one when the point is on none; nullptr when there is none at all.
const QScreen* screenAt(Point<Screen> point) {
  const ScreenGeometry geometry = ScreenGeometry::current();
  for (const QScreen* screen : QGuiApplication::screens()) {
    if (geometry.fromQt(screen->geometry()).contains(point)) {
      return screen;
    }
  }
  return QGuiApplication::primaryScreen();
}

// Until it has something to show.
constexpr Rect<Screen> kAnywhere{{0, 0}, {480, 320}};

// One that lifts the window off the others, and a narrow one that draws its edge.
std::vector<ShadowLayer> shadow() {
  return {{.opacity = 0.34, .radius = 34, .y = 14}, {.opacity = 0.20, .radius = 6, .y = 2}};
}

Point<Screen> middleOf(const Rect<Screen>& rect) {
  return {(rect.minX() + rect.maxX()) / 2, (rect.minY() + rect.maxY()) / 2};
}

}  // namespace

PreviewWindow::PreviewWindow(const Dependencies& dependencies, std::function<void()> onClose)
    : scheduler_(dependencies.scheduler),
      appearance_(dependencies.appearance),
      windows_(dependencies.windows),
      // The island stays above it: who has the pointer there goes on choosing there, and sees what is chosen.
      panel_(kAnywhere, intent_, dependencies.compositor, PanelLayer::amongOthers),
      pictures_(dependencies.scheduler, dependencies.pictures, weak_.bind([](PreviewWindow& self) { self.refresh(); })),
      screenChanges_(weak_.bind([](PreviewWindow& self) {
        self.choose();
        self.refresh();
      })) {
  panel_.setOnClose(onClose);
  panel_.setObjectName(QString::fromLatin1(kObjectName));
  auto view = std::make_unique<PreviewView>(PreviewView::Actions{
      .onMove = weak_.bind([](PreviewWindow& self, PreviewMove move, bool isRepeated) { self.move(move, isRepeated); }),
      .onClose = std::move(onClose),
      .onDrag = weak_.bind([](PreviewWindow& self, const QPoint& by) { self.drag(by); })});
  view_ = view.get();
  panel_.setContentView(std::move(view));
  const auto changed = weak_.bind([](PreviewWindow& self) { self.applyAppearance(); });
  appearanceChanges_ = appearance_.observeEffectiveAppearance(changed);
  contrastChanges_ = appearance_.observeAccessibilityDisplayOptions(changed);
  applyAppearance();
}

PreviewWindow::~PreviewWindow() {
  weak_.letGo();
}

void PreviewWindow::applyAppearance() {
  const PreviewPalette palette =
      PreviewPalette::forAppearance(appearance_.isDarkAqua(), appearance_.accessibilityDisplayShouldIncreaseContrast());
  view_->apply(palette);
  panel_.setSurface({.cornerRadius = preview::kCornerRadius, .tone = palette.tone, .shadow = shadow()});
}

void PreviewWindow::prepare(const FileURL& url) {
  findRoom();
  pictures_.want({url}, room_);
}

void PreviewWindow::show(std::vector<FileURL> files, std::size_t index) {
  const std::size_t next = std::min(index, files.size() - 1);
  movesBack_ = next < index_;
  files_ = std::move(files);
  index_ = next;
  choose();
  refresh();
}

void PreviewWindow::makeKeyAndOrderFront() {
  wantsFront_ = true;
}

void PreviewWindow::orderOut() {
  // A window manager may pass a panel over when it looks for whom to give the keyboard.
  if (panel_.isKeyWindow() && keyBefore_ && keyBefore_->isVisible()) {
    keyBefore_->activateWindow();
  }
  panel_.orderOut();
  wait_.cancel();
  files_.clear();
  pictures_.clear();
}

void PreviewWindow::move(PreviewMove move, bool isRepeated) {
  if (files_.empty()) {
    return;
  }
  // Holding a key runs through the list as fast as the pictures come, and no faster.
  if (isRepeated && patience_ == Patience::fresh && wait_) {
    return;
  }
  const std::size_t last = files_.size() - 1;
  std::size_t next = index_;
  switch (move) {
    case PreviewMove::toPrevious:
      next = index_ == 0 ? 0 : index_ - 1;
      break;
    case PreviewMove::toNext:
      next = std::min(index_ + 1, last);
      break;
    case PreviewMove::toFirst:
      next = 0;
      break;
    case PreviewMove::toLast:
      next = last;
      break;
  }
  if (next != index_) {
    movesBack_ = next < index_;
    index_ = next;
    choose();
    refresh();
  }
}

void PreviewWindow::drag(const QPoint& by) {
  const Rect<Screen> frame = panel_.frame();
  panel_.setFrameOrigin({frame.minX() + by.x(), frame.minY() - by.y()});
  centre_ = middleOf(panel_.frame());
  isDragged_ = true;
}

void PreviewWindow::choose() {
  if (files_.empty()) {
    return;
  }
  findRoom();
  std::vector<FileURL> wanted{files_[index_]};
  const auto addNext = [&] {
    if (index_ + 1 < files_.size()) {
      wanted.push_back(files_[index_ + 1]);
    }
  };
  if (!movesBack_) {
    addNext();
  }
  if (index_ > 0) {
    wanted.push_back(files_[index_ - 1]);
  }
  if (movesBack_) {
    addNext();
  }
  pictures_.want(wanted, room_);
}

void PreviewWindow::findRoom() {
  const QScreen* screen = screenAt(centre_ ? *centre_ : QtScreens().mouseLocation());
  if (screen == nullptr) {
    return;
  }
  workArea_ = QtScreens::infoFor(*screen).visibleFrame;
  room_ = {.workArea = QSizeF(workArea_.size.width, workArea_.size.height), .scale = screen->devicePixelRatio()};
  if (!isDragged_) {
    centre_ = middleOf(workArea_);
  }
}

void PreviewWindow::refresh() {
  if (files_.empty()) {
    return;
  }
  const bool isLoading = pictures_.shown().state == PreviewPicture::State::loading;
  if (!isLoading) {
    wait_.cancel();
    patience_ = Patience::fresh;
  } else if (patience_ == Patience::fresh && !wait_) {
    wait(kUnnoticed, Patience::overdue);
  }
  if (!isLoading || patience_ != Patience::fresh) {
    present();
    enter();
  } else if (!isUp_ && pictures_.shown().points) {
    // Still transparent: until the picture is there, the window manager can do its part.
    present();
  }
}

void PreviewWindow::wait(Seconds duration, Patience then) {
  wait_ = scheduler_.after(duration, weak_.bind([then](PreviewWindow& self) {
    self.patience_ = then;
    if (then == Patience::overdue) {
      self.wait(kWorthAWord - kUnnoticed, Patience::worthAWord);
    }
    self.refresh();
  }));
}

void PreviewWindow::present() {
  const PreviewContent shown = content();
  view_->show(shown);
  panel_.setTitle(shown.name);
  if (!isUp_) {
    above_ = framesAbove();
  }
  if (centre_) {
    panel_.setFrame(frame());
  }
  if (std::exchange(wantsFront_, false)) {
    comeUp();
  }
}

void PreviewWindow::comeUp() {
  if (!std::exchange(isUp_, true)) {
    keyBefore_ = QApplication::activeWindow();
    panel_.setAlphaValue(0);
  }
  // Whoever opens a preview has just asked for it, by a key or a press.
  intent_.note();
  panel_.makeKeyAndOrderFront();
  panel_.makeContentViewFirstResponder();
}

void PreviewWindow::enter() {
  if (!std::exchange(hasEntered_, true)) {
    panel_.runAnimationGroup({.duration = kEntrance, .curve = kEaseOut, .alpha = 1, .frame = panel_.frame()}, {});
  }
}

PreviewContent PreviewWindow::content() const {
  PreviewContent content;
  content.name = QString::fromStdString(files_[index_].lastPathComponent());
  content.position = QStringLiteral("%1 of %2").arg(index_ + 1).arg(files_.size());
  const PreviewPicture& picture = pictures_.shown();
  switch (picture.state) {
    case PreviewPicture::State::ready:
      content.picture = picture.image;
      content.isClearInPlaces = picture.isClearInPlaces;
      break;
    case PreviewPicture::State::loading:
      content.message = patience_ == Patience::worthAWord ? QStringLiteral("Loading…") : QString();
      break;
    case PreviewPicture::State::gone:
      content.message = QStringLiteral("This file is no longer there.");
      break;
    case PreviewPicture::State::unreadable:
      content.message = QStringLiteral("This file can’t be shown.");
      break;
  }
  return content;
}

// Without a picture the window stays as large as it is.
QSize PreviewWindow::windowSize() const {
  if (const auto& points = pictures_.shown().points) {
    return preview::windowSize(preview::shownSize(*points, room_), room_);
  }
  const Size size = panel_.frame().size;
  return isUp_ ? QSizeF(size.width, size.height).toSize() : preview::windowSizeWithoutPicture(room_);
}

// The island, which stays above, covers no more of the picture than it must. Not the user's own choice of a place.
Rect<Screen> PreviewWindow::frame() const {
  Rect<Screen> frame = preview::frameAround(*centre_, windowSize(), workArea_);
  if (!isDragged_) {
    for (const Rect<Screen>& other : above_) {
      frame = preview::frameBeside(other, frame, workArea_);
    }
  }
  return frame;
}

std::vector<Rect<Screen>> PreviewWindow::framesAbove() const {
  std::vector<Rect<Screen>> frames;
  for (const WindowInfo& window : windows_.visibleWindows()) {
    if (window.level >= kStatusWindowLevel) {
      frames.push_back(window.frame);
    }
  }
  return frames;
}

}  // namespace quenlio
