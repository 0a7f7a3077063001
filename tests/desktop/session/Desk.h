// What the tests of this program need around them: another program's window, the pointer and the keys, the monitors.
#pragma once

#include <QtCore/QProcess>
#include <QtCore/QRect>
#include <QtGui/QColor>
#include <string>
#include <vector>
#include <xcb/xcb.h>

#include "tests/desktop/WaitUntil.h"

namespace quenlio {

// Runs a program to its end; true when it ended with 0.
bool run(const QString& program, const QStringList& arguments);

// Real pointer and key events.
void movePointer(int x, int y);
void pressKeys(const QString& combination);

// Another size for the one monitor, at most 1280 by 800; waits until Qt knows. Such as "1024x600".
[[nodiscard]] bool setScreenSize(const QString& size);

// The screen's pixel as the user sees it.
[[nodiscard]] QColor screenPixel(int x, int y);

// The window that has the keyboard, or one of the two special values.
[[nodiscard]] xcb_window_t focusedWindow();

// Properties of any window, as atom names or numbers.
[[nodiscard]] std::vector<std::string> atomsOf(xcb_window_t window, const char* property);
[[nodiscard]] std::vector<std::uint32_t> numbersOf(xcb_window_t window, const char* property);
[[nodiscard]] bool isMapped(xcb_window_t window);
// On the screen, y growing downward.
[[nodiscard]] QRect geometryOnScreen(xcb_window_t window);

// Another program: a connection of its own with one plain, white window, managed by the window manager.
class OtherProgram {
 public:
  OtherProgram();
  ~OtherProgram();
  OtherProgram(const OtherProgram&) = delete;
  OtherProgram& operator=(const OtherProgram&) = delete;

  // Shows the window and waits until it has the keyboard.
  [[nodiscard]] bool showAndTakeKeyboard(const QRect& geometry);
  // Shows the window over the whole screen and everything on it, and waits until it has the keyboard.
  [[nodiscard]] bool showFullScreen();
  // Shows the window as a bar of this height along the bottom of the screen, or of a part of it.
  [[nodiscard]] bool showAsBar(int height, int left = 0, int right = 1279);
  // The same for a bar that tells only how thick it is, as older ones do: the height then counts along the whole edge.
  [[nodiscard]] bool showAsOlderBar(int height, int left = 0, int right = 1279);
  // Asks the window manager to close a window, as its own buttons and keys do.
  void askToClose(xcb_window_t window);
  [[nodiscard]] xcb_window_t window() const { return window_; }
  [[nodiscard]] xcb_connection_t* connection() const { return connection_; }

 private:
  void create(const QRect& geometry);
  [[nodiscard]] bool showBar(const QRect& geometry, const char* property, const std::vector<std::uint32_t>& strut);

  xcb_connection_t* connection_;
  xcb_window_t window_;
};

// Two monitors side by side, 640 by 800 each, in place of the one; for as long as this lives.
class TwoMonitors {
 public:
  TwoMonitors();
  ~TwoMonitors();
  TwoMonitors(const TwoMonitors&) = delete;
  TwoMonitors& operator=(const TwoMonitors&) = delete;
};

// All windows are out of the way, as after the window manager's key for that, for as long as this lives.
class ShownDesktop {
 public:
  ShownDesktop();
  ~ShownDesktop();
  ShownDesktop(const ShownDesktop&) = delete;
  ShownDesktop& operator=(const ShownDesktop&) = delete;
};

// A compositor for as long as this lives.
class Compositor {
 public:
  Compositor();
  ~Compositor();
  Compositor(const Compositor&) = delete;
  Compositor& operator=(const Compositor&) = delete;

 private:
  QProcess process_;
};

}  // namespace quenlio
