#include <QtWidgets/QWidget>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "desktop/linux/session/PanelHints.h"

#include "tests/desktop/session/Desk.h"

namespace quenlio {
namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAre;

// A window manager without sticky windows takes that state away as soon as the window is shown.
TEST(PanelHints, announceEveryStateOfAPanelBeforeItIsShown) {
  QWidget widget;
  const auto window = static_cast<xcb_window_t>(widget.winId());
  announcePanel(window);
  EXPECT_FALSE(isMapped(window));
  EXPECT_THAT(atomsOf(window, "_NET_WM_STATE"),
              UnorderedElementsAre("_NET_WM_STATE_ABOVE", "_NET_WM_STATE_STICKY", "_NET_WM_STATE_SKIP_TASKBAR",
                                   "_NET_WM_STATE_SKIP_PAGER"));
  EXPECT_THAT(numbersOf(window, "_NET_WM_DESKTOP"), ElementsAre(x11::kAllDesktops));
}

TEST(PanelHints, aPanelAmongOthersIsNotAboveThem) {
  QWidget widget;
  const auto window = static_cast<xcb_window_t>(widget.winId());
  announcePanel(window, PanelLayer::amongOthers);
  EXPECT_THAT(atomsOf(window, "_NET_WM_STATE"),
              UnorderedElementsAre("_NET_WM_STATE_STICKY", "_NET_WM_STATE_SKIP_TASKBAR", "_NET_WM_STATE_SKIP_PAGER"));
}

}  // namespace
}  // namespace quenlio
