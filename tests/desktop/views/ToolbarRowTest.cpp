#include "tests/desktop/views/ToolbarRowTest.h"

#include <QtGui/QAccessible>
#include <QtGui/QWindow>
#include <array>
#include <gmock/gmock.h>

namespace quenlio {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::array kNames{"Copy", "Edit", "Share", "View in Folder", "Move to Trash", "Close"};
constexpr std::array kSizes{IslandSize::extraSmall, IslandSize::small, IslandSize::medium, IslandSize::large,
                            IslandSize::xLarge};

TEST_F(ToolbarRowTest, actionsStandLeftAndCloseStandsRightByTheMetrics) {
  for (const IslandSize size : kSizes) {
    use(size);
    const IslandLayoutMetrics& m = IslandLayoutMetrics::forSize(size);
    const int side = static_cast<int>(m.toolbarControlSize);
    const int top = static_cast<int>((m.toolbarHeight - m.toolbarControlSize) / 2);
    for (int index = 0; index < 5; ++index) {
      const int left = index * static_cast<int>(m.toolbarControlSize + m.toolbarIconSpacing);
      EXPECT_EQ(control(kNames.at(static_cast<std::size_t>(index))).geometry(), QRect(left, top, side, side));
    }
    EXPECT_EQ(control("Close").geometry(), QRect(row_.width() - side, top, side, side));
    EXPECT_GE(control("Close").x() - control("Move to Trash").geometry().right() - 1,
              static_cast<int>(m.toolbarZoneSpacing));
  }
}

TEST_F(ToolbarRowTest, controlsStandInsideItsInset) {
  IslandLayoutMetrics metrics = IslandLayoutMetrics::forSize(IslandSize::extraSmall);
  metrics.toolbarContentInset = 7;
  row_.resize(220, 30);
  row_.apply(tokens_, metrics);
  EXPECT_EQ(control("Copy").geometry(), QRect(7, 3, 24, 24));
  EXPECT_EQ(control("Close").geometry(), QRect(220 - 7 - 24, 3, 24, 24));
}

TEST_F(ToolbarRowTest, eachControlDoesWhatItSays) {
  for (const char* name : kNames) {
    control(name).click();
  }
  EXPECT_THAT(done_, ElementsAre("copy", "edit", "share", "view in folder", "trash", "close"));
}

TEST_F(ToolbarRowTest, helpNamesTheKeysOfThisDesktop) {
  std::vector<std::string> help;
  for (const char* name : kNames) {
    help.push_back(control(name).accessibleDescription().toStdString());
  }
  EXPECT_THAT(help, ElementsAre("Copy (Ctrl+C)", "Edit (Ctrl+E)", "Share (Ctrl+Shift+S)", "View in Folder (Ctrl+O)",
                                "Move to Trash (Backspace)", "Close"));
}

TEST_F(ToolbarRowTest, withNothingSelectedOnlyCloseIsOfUse) {
  const int ink = inkOf("Share");
  row_.setHasSelectedItem(false);
  pass(kSettled);
  for (const char* name : kNames) {
    EXPECT_EQ(control(name).isEnabled(), std::string_view(name) == "Close") << name;
    control(name).click();
  }
  EXPECT_THAT(done_, ElementsAre("close"));
  EXPECT_LT(inkOf("Share"), ink / 2);
  enter(control("Share"));
  pass(kSettled);
  EXPECT_EQ(pillUnder("Share"), 0);
  row_.setHasSelectedItem(true);
  pass(kSettled);
  EXPECT_GT(pillUnder("Share"), 0);  // the pointer is still on it
}

TEST_F(ToolbarRowTest, aControlComesForwardUnderThePointer) {
  const int idle = inkOf("Share");
  // Black at 0.72, at the opacity of a control that nobody looks at.
  EXPECT_NEAR(idle, 255 * 0.72 * 0.84, 3);
  enter(control("Share"));
  pass(kSettled);
  EXPECT_GT(inkOf("Share"), idle + 15);
  leave(control("Share"));
  pass(kSettled);
  EXPECT_EQ(inkOf("Share"), idle);
  EXPECT_EQ(time_.pending(), 0U);
}

TEST_F(ToolbarRowTest, moreContrastRaisesTheOpacityOfIdleControls) {
  row_.apply(IslandThemeTokens::forAppearance(IslandAppearanceStyle::light, true),
             IslandLayoutMetrics::forSize(IslandSize::medium));
  pass(kSettled);
  EXPECT_NEAR(inkOf("Share"), 255 * 0.82 * 0.92, 3);
}

TEST_F(ToolbarRowTest, thePillComesUpUnderTheFirstControlAndSlidesToTheNext) {
  enter(control("Copy"));
  EXPECT_EQ(pillUnder("Copy"), 0);
  pass(Seconds(0.05));
  EXPECT_GT(pillUnder("Copy"), 0);
  pass(kSettled);
  const int full = pillUnder("Copy");
  leave(control("Copy"));
  enter(control("Share"));
  pass(Seconds(0.05));
  const auto between = [this] {
    const QImage image = picture();
    int darkest = 0;
    for (int x = control("Copy").geometry().right() + 1; x < control("Share").x(); ++x) {
      darkest = std::max(darkest, darkness(image, {x + 0.0, besideIcon(control("Copy")).y()}));
    }
    return darkest;
  };
  EXPECT_GT(between(), full / 2);  // on its way
  pass(kSettled);
  EXPECT_EQ(between(), 0);
  EXPECT_EQ(pillUnder("Copy"), 0);
  EXPECT_EQ(pillUnder("Share"), full);
  leave(control("Share"));
  pass(Seconds(0.05));
  EXPECT_GT(pillUnder("Share"), 0);
  EXPECT_LT(pillUnder("Share"), full);
  pass(kSettled);
  EXPECT_EQ(pillUnder("Share"), 0);
  EXPECT_EQ(time_.pending(), 0U);
}

TEST_F(ToolbarRowTest, thePillIsStrongerWhilePressed) {
  enter(control("Copy"));
  pass(kSettled);
  const int hovered = pillUnder("Copy");
  mouse(control("Copy"), QEvent::MouseButtonPress);
  pass(kSettled);
  EXPECT_GT(pillUnder("Copy"), hovered);
  mouse(control("Copy"), QEvent::MouseButtonRelease);
  pass(kSettled);
  EXPECT_EQ(pillUnder("Copy"), hovered);
  EXPECT_THAT(done_, ElementsAre("copy"));
}

TEST_F(ToolbarRowTest, nothingMovesWhileNobodyCanSeeIt) {
  enter(control("Copy"));
  row_.showDismissProgress(0.5);
  root_.hide();
  settle();
  row_.showDismissProgress(std::nullopt);
  row_.showDismissProgress(0.4);
  row_.setHasSelectedItem(false);
  EXPECT_EQ(time_.pending(), 0U);
}

TEST_F(ToolbarRowTest, theEmptyPartsAreAHandle) {
  EXPECT_EQ(row_.cursor().shape(), Qt::OpenHandCursor);
  EXPECT_EQ(control("Copy").cursor().shape(), Qt::PointingHandCursor);
  mouse(row_, QEvent::MouseButtonPress);
  EXPECT_EQ(row_.cursor().shape(), Qt::ClosedHandCursor);
  mouse(row_, QEvent::MouseButtonRelease);
  EXPECT_EQ(row_.cursor().shape(), Qt::OpenHandCursor);
  EXPECT_THAT(done_, IsEmpty());
}

TEST_F(ToolbarRowTest, aPressOnAControlMovesNoWindow) {
  mouse(control("Share"), QEvent::MouseButtonPress);
  EXPECT_EQ(row_.cursor().shape(), Qt::OpenHandCursor);
  QMouseEvent move(QEvent::MouseMove, QPointF(200, 10), QPointF(300, 60), Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
  QCoreApplication::sendEvent(&control("Share"), &move);
  QMouseEvent release(QEvent::MouseButtonRelease, QPointF(200, 10), QPointF(300, 60), Qt::LeftButton, Qt::NoButton,
                      Qt::NoModifier);
  QCoreApplication::sendEvent(&control("Share"), &release);
  EXPECT_THAT(done_, IsEmpty());  // and let go of elsewhere, it does nothing either
}

TEST_F(ToolbarRowTest, tabWalksTheControlsInTheirOrder) {
  std::vector<std::string> walked;
  const QWidget* next = &control("Copy");
  for (std::size_t index = 0; index < kToolbarControls; ++index, next = next->nextInFocusChain()) {
    walked.push_back(next->accessibleName().toStdString());
  }
  EXPECT_THAT(walked, ElementsAre("Copy", "Edit", "Share", "View in Folder", "Move to Trash", "Close"));
  control("Copy").setFocus(Qt::TabFocusReason);
  type(control("Copy"), Qt::Key_Tab);
  EXPECT_TRUE(control("Edit").hasFocus());
  type(control("Edit"), Qt::Key_Backtab);
  EXPECT_TRUE(control("Copy").hasFocus());
}

// They go along the strip, whatever has the focus.
TEST_F(ToolbarRowTest, arrowsAreNotTheControlsOwn) {
  control("Share").setFocus(Qt::TabFocusReason);
  for (const Qt::Key arrow : {Qt::Key_Left, Qt::Key_Right}) {
    EXPECT_FALSE(key(control("Share"), arrow));
    EXPECT_TRUE(control("Share").hasFocus());
  }
}

TEST_F(ToolbarRowTest, spaceAndEnterPressTheControlThatHasTheFocus) {
  for (const Qt::Key code : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
    control("Share").setFocus(Qt::TabFocusReason);
    type(control("Share"), code);
  }
  EXPECT_THAT(done_, ElementsAre("share", "share", "share"));
}

// Shortcuts are looked for only after the control with the focus has been asked.
TEST_F(ToolbarRowTest, aControlKeepsItsOwnKeysFromShortcuts) {
  const auto keeps = [this](Qt::Key code, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    return key(control("Share"), code, QEvent::ShortcutOverride, modifiers);
  };
  for (const Qt::Key code : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
    EXPECT_TRUE(keeps(code)) << code;
  }
  EXPECT_FALSE(keeps(Qt::Key_Left));
  EXPECT_FALSE(keeps(Qt::Key_Right));
  EXPECT_TRUE(keeps(Qt::Key_Enter, Qt::KeypadModifier));
  EXPECT_FALSE(keeps(Qt::Key_C, Qt::ControlModifier));
  EXPECT_FALSE(keeps(Qt::Key_Backspace));
  EXPECT_FALSE(keeps(Qt::Key_Left, Qt::ShiftModifier));
  EXPECT_FALSE(key(control("Share"), Qt::Key_Backspace));  // nor does it swallow the key itself
}

TEST_F(ToolbarRowTest, onlyTheKeyboardShowsAFocus) {
  const QImage without = picture();
  mouse(control("Share"), QEvent::MouseButtonPress);
  mouse(control("Share"), QEvent::MouseButtonRelease);
  EXPECT_FALSE(control("Share").hasFocus());
  pass(kSettled);
  EXPECT_EQ(picture(), without);
  control("Share").setFocus(Qt::OtherFocusReason);
  EXPECT_EQ(picture(), without);
  control("Share").clearFocus();
  control("Share").setFocus(Qt::TabFocusReason);
  EXPECT_NE(picture(), without);
}

TEST_F(ToolbarRowTest, controlsAreButtonsToAScreenReader) {
  for (const char* name : kNames) {
    const QAccessibleInterface* read = QAccessible::queryAccessibleInterface(&control(name));
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(read->role(), QAccessible::Button);
    EXPECT_EQ(read->text(QAccessible::Name).toStdString(), name);
    EXPECT_FALSE(read->text(QAccessible::Description).isEmpty());
  }
}

// As the desktop delivers it: to the window, which finds whom it is for.
TEST_F(ToolbarRowTest, aPressOnAControlOfNoUseMovesNoWindow) {
  row_.setHasSelectedItem(false);
  QWindow* window = root_.windowHandle();
  const QPointF start = control("Share").mapTo(&root_, control("Share").rect().center());
  const auto deliver = [&](QEvent::Type type, QPointF at) {
    QMouseEvent event(type, at, window->mapToGlobal(at), type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton,
                      type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(window, &event);
  };
  deliver(QEvent::MouseButtonPress, start);
  EXPECT_EQ(row_.cursor().shape(), Qt::OpenHandCursor);
  deliver(QEvent::MouseMove, start + QPointF(30, 20));
  deliver(QEvent::MouseButtonRelease, start + QPointF(30, 20));
  EXPECT_THAT(done_, IsEmpty());
  // The same way, on the empty part.
  const QPointF empty = row_.geometry().topLeft() + QPointF(row_.width() / 2.0 + 50, row_.height() / 2.0);
  deliver(QEvent::MouseButtonPress, empty);
  deliver(QEvent::MouseMove, empty + QPointF(30, 20));
  deliver(QEvent::MouseButtonRelease, empty + QPointF(30, 20));
  EXPECT_THAT(done_, ElementsAre("dragged", "dropped"));
}

TEST_F(ToolbarRowTest, anIconGrowsALittleUnderThePointer) {
  constexpr double scale = 16;
  const auto width = [this] {
    QImage image((QSizeF(row_.size()) * scale).toSize(), QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::white);
    row_.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    const QRect area = control("View in Folder").geometry();
    QRect ink;
    for (int y = static_cast<int>(area.top() * scale); y < (area.bottom() + 1) * scale; ++y) {
      for (int x = static_cast<int>(area.left() * scale); x < (area.right() + 1) * scale; ++x) {
        if (qGray(image.pixel(x, y)) < 150) {
          ink |= QRect(x, y, 1, 1);
        }
      }
    }
    return ink.width();
  };
  const int resting = width();
  enter(control("View in Folder"));
  pass(Seconds(0.05));
  const int growing = width();
  pass(kSettled);
  EXPECT_GT(growing, resting);
  EXPECT_LT(growing, width());
  EXPECT_NEAR(width(), resting * 1.035, 2);
  leave(control("View in Folder"));
  pass(kSettled);
  EXPECT_EQ(width(), resting);
}
}  // namespace
}  // namespace quenlio
