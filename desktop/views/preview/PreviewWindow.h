// The preview window while it is open: which of the files it shows, how it steps through them, and where it stands.
// Owned by the QtPreviewPanel; closed by letting go of it. Main thread.
//
// It shows one item after the other, never a mixture: name, place in the list, picture and size change together. Until
// a picture is there the window stays as it is, for a moment that nobody notices; after that it shows the new name and
// room for the picture.
#pragma once

#include <QtCore/QPoint>
#include <QtCore/QPointer>
#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

#include "core/base/WeakOwner.h"
#include "core/platform/Application.h"
#include "core/platform/Scheduler.h"
#include "core/platform/Windows.h"

#include "desktop/linux/session/QtPanel.h"
#include "desktop/linux/session/ScreenChanges.h"
#include "desktop/views/preview/PreviewPictures.h"
#include "desktop/views/preview/PreviewView.h"

namespace quenlio {

class PreviewWindow {
 public:
  static constexpr Seconds kUnnoticed{0.1};
  static constexpr Seconds kWorthAWord{0.5};  // after which it says that it is loading
  static constexpr const char* kObjectName = "QuenlioPreview";

  // All outlive the window.
  struct Dependencies {
    Scheduler& scheduler;
    CompositorWatch& compositor;
    Appearance& appearance;
    const Windows& windows;
    PictureSource pictures;
  };
  // onClose is told that the user wants it closed, and may let go of the window only once that call has returned.
  PreviewWindow(const Dependencies& dependencies, std::function<void()> onClose);
  PreviewWindow(const PreviewWindow&) = delete;
  PreviewWindow& operator=(const PreviewWindow&) = delete;
  ~PreviewWindow();

  // Begins this file's picture, which show() then finds begun or there.
  void prepare(const FileURL& url);
  // At least one file; an index beyond them is the last one's.
  void show(std::vector<FileURL> files, std::size_t index);
  [[nodiscard]] std::size_t index() const { return index_; }
  // In front of other windows and with the keyboard, as soon as it has something to show.
  void makeKeyAndOrderFront();
  // For good: what is being decoded is stopped, and the window of this program that had the keyboard before has it
  // again.
  void orderOut();

 private:
  // How long the picture has been waited for.
  enum class Patience { fresh, overdue, worthAWord };

  void applyAppearance();
  void move(PreviewMove move, bool isRepeated);
  void drag(const QPoint& by);
  // Asks for the present file and those next to it, for the screen that the window is on.
  void choose();
  void findRoom();
  // Shows the present file if it is there, or if it is time to show that it is not.
  void refresh();
  void wait(Seconds duration, Patience then);
  void present();
  void comeUp();
  void enter();
  [[nodiscard]] PreviewContent content() const;
  [[nodiscard]] QSize windowSize() const;
  [[nodiscard]] Rect<Screen> frame() const;
  [[nodiscard]] std::vector<Rect<Screen>> framesAbove() const;

  WeakOwner<PreviewWindow> weak_{this};  // first: members are given callbacks while they are made
  Scheduler& scheduler_;
  UserIntent intent_;  // its own: that the preview may take the keyboard is no leave for the island to take it away
  Appearance& appearance_;
  const Windows& windows_;
  QtPanel panel_;
  PreviewView* view_;  // the panel's
  PreviewPictures pictures_;
  std::vector<FileURL> files_;
  std::size_t index_ = 0;
  bool movesBack_ = false;  // by the last step
  preview::Room room_;
  Rect<Screen> workArea_;
  std::optional<Point<Screen>> centre_;  // of the window, once it has been given a place
  bool isDragged_ = false;               // to a place of the user's choice
  std::vector<Rect<Screen>> above_;      // windows that stood above it when it came up
  Patience patience_ = Patience::fresh;
  ScheduledTask wait_;           // while the patience with a picture may change
  QPointer<QWidget> keyBefore_;  // this came up
  bool wantsFront_ = false;
  bool isUp_ = false;        // with the window manager
  bool hasEntered_ = false;  // to be seen
  Subscription appearanceChanges_;
  Subscription contrastChanges_;
  ScreenChanges screenChanges_;
};

}  // namespace quenlio
