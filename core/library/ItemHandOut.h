// Hands screenshots to the clipboard, to a menu of other programs and to the file manager. None of it changes the
// library; whatever cannot be done is left out in silence. Main thread; owned by the composition root.
#pragma once

#include <vector>

#include "core/library/ScreenshotItem.h"

namespace quenlio {

class Images;
class Pasteboard;
class Screens;
class SharingServicePicker;
class Windows;
class Workspace;

class ItemHandOut {
 public:
  struct Dependencies {
    const Images& images;
    Pasteboard& pasteboard;
    SharingServicePicker& picker;
    Workspace& workspace;
    const Windows& windows;
    const Screens& screens;
  };
  explicit ItemHandOut(const Dependencies& dependencies) : dependencies_(dependencies) {}

  // One item as its picture and its file, several as their files.
  void copy(const std::vector<ScreenshotItem>& items);
  // A menu at the pointer; nothing without a window to open it in.
  void share(const std::vector<ScreenshotItem>& items);
  void reveal(const std::vector<ScreenshotItem>& items);

 private:
  Dependencies dependencies_;
};

}  // namespace quenlio
