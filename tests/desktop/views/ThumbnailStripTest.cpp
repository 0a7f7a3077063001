#include <QtCore/QCoreApplication>
#include <QtGui/QAccessible>
#include <QtGui/QEnterEvent>
#include <QtGui/QMouseEvent>
#include <QtGui/QWheelEvent>
#include <algorithm>
#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "desktop/views/island/ThumbnailStrip.h"

#include "tests/desktop/views/Island.h"

namespace quenlio {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;

class ThumbnailStripTest : public testing::Test {
 protected:
  ThumbnailStripTest() { island_.compositor.isThere().set(false); }

  void ingestNumbered(int count) {
    for (int number = 0; number < count; ++number) {
      island_.ingest("shot" + std::to_string(number) + ".png");
    }
    rest();
  }
  void rest() {
    island_.settle();
    island_.platform.time.advanceBy(Seconds(1));
    island_.settle();
  }
  [[nodiscard]] ThumbnailStrip& strip() const {
    for (QWidget* widget : island_.view->findChildren<QWidget*>()) {
      if (auto* view = dynamic_cast<ThumbnailStrip*>(widget)) {
        return *view;
      }
    }
    throw std::out_of_range("no strip");
  }
  [[nodiscard]] ThumbnailCell& cell(const std::string& name) const {
    return dynamic_cast<ThumbnailCell&>(*island_.button(name));
  }
  static void mouse(QWidget& widget, QEvent::Type type, QPointF at, Qt::KeyboardModifiers modifiers = Qt::NoModifier,
                    Qt::MouseButton button = Qt::LeftButton) {
    QMouseEvent event(type, at, widget.mapToGlobal(at), type == QEvent::MouseMove ? Qt::NoButton : button,
                      type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::MouseButtons(button), modifiers);
    QCoreApplication::sendEvent(&widget, &event);
  }
  // With the pointer of the whole strip, wherever that leads to.
  void clickAt(QPointF inStrip, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QWidget* hit = strip().childAt(inStrip.toPoint());
    ASSERT_NE(hit, nullptr);
    const QPointF at = inStrip - hit->pos();
    mouse(*hit, QEvent::MouseButtonPress, at, modifiers);
    mouse(*hit, QEvent::MouseButtonRelease, at, modifiers);
    island_.settle();
  }
  void click(const std::string& name, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    clickAt(cell(name).square().center(), modifiers);
  }
  [[nodiscard]] std::vector<std::string> selected() const {
    std::vector<std::string> names;
    for (const ScreenshotItem& item : island_.store.selectedItems()) {
      names.push_back(item.fileURL.lastPathComponent());
    }
    return names;
  }
  [[nodiscard]] QColor colourAt(QPointF inStrip) {
    return island_.picture().pixelColor(strip().mapTo(island_.view.get(), inStrip).toPoint());
  }
  void wheel(QPoint pixels, QPoint angle) {
    const QPointF at(20, 10);
    QWheelEvent event(at, strip().mapToGlobal(at), pixels, angle, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase,
                      false);
    QCoreApplication::sendEvent(&strip(), &event);
  }

  Island island_;
};

TEST_F(ThumbnailStripTest, showsTheNewestFirst) {
  ingestNumbered(3);
  EXPECT_EQ(cell("shot2.png").square().left(), 0);
  EXPECT_EQ(cell("shot1.png").square().left(), 24 + 8);
  EXPECT_EQ(cell("shot0.png").square().left(), 2 * (24 + 8));
}

TEST_F(ThumbnailStripTest, cellsAreSquaresInsetInTheTrayOrInItsMiddle) {
  island_.ingest("one.png");
  for (const auto& [size, side, top] : {std::tuple{IslandSize::extraSmall, 24, 0.0},
                                        {IslandSize::small, 30, 0.0},
                                        {IslandSize::medium, 34, 0.0},
                                        {IslandSize::large, 38, 1.0},
                                        {IslandSize::xLarge, 42, 1.5}}) {
    island_.setSize(size);
    rest();
    EXPECT_EQ(cell("one.png").square(), QRectF(0, top, side, side)) << static_cast<int>(size);
    EXPECT_EQ(cell("one.png").size(), QSize(side, side));
    EXPECT_TRUE(strip().rect().contains(cell("one.png").geometry()));
  }
}

TEST_F(ThumbnailStripTest, aClickSelectsAlone) {
  ingestNumbered(3);
  click("shot0.png");
  EXPECT_THAT(selected(), ElementsAre("shot0.png"));
  EXPECT_EQ(island_.store.selectedItemID.get(), island_.item("shot0.png").id);
  EXPECT_EQ(island_.store.selectionAnchorID, island_.item("shot0.png").id);
  EXPECT_TRUE(island_.says("shot0.png preview"));
}

TEST_F(ThumbnailStripTest, shiftSelectsTheRangeAndControlOneMore) {
  ingestNumbered(6);
  click("shot5.png");
  click("shot3.png", Qt::ShiftModifier);
  EXPECT_THAT(selected(), ElementsAre("shot5.png", "shot4.png", "shot3.png"));
  click("shot1.png", Qt::ControlModifier);
  EXPECT_THAT(selected(), ElementsAre("shot5.png", "shot4.png", "shot3.png", "shot1.png"));
  click("shot4.png", Qt::ControlModifier);
  EXPECT_THAT(selected(), ElementsAre("shot5.png", "shot3.png", "shot1.png"));
  click("shot2.png", Qt::ShiftModifier | Qt::ControlModifier);  // from the anchor, shot1, beside the others
  EXPECT_THAT(selected(), ElementsAre("shot5.png", "shot3.png", "shot2.png", "shot1.png"));
}

TEST_F(ThumbnailStripTest, aCellTakesThePointerOnItsSquareAndNowhereElse) {
  ingestNumbered(3);
  const QRectF square = cell("shot1.png").square();
  const auto hit = [this](QPointF at) { return strip().childAt(at.toPoint()); };
  for (const QPointF corner : {square.topLeft(), square.topLeft() + QPointF(23, 23)}) {
    EXPECT_EQ(hit(corner), &cell("shot1.png"));
  }
  EXPECT_EQ(hit({square.left() - 1, square.center().y()}), nullptr);
  EXPECT_EQ(hit({square.left() + 24, square.center().y()}), nullptr);
  EXPECT_EQ(hit({square.center().x(), square.top() + 24}), nullptr) << "the tray is a little higher";
  mouse(strip(), QEvent::MouseButtonPress, {square.right() + 4, 5});
  mouse(strip(), QEvent::MouseButtonRelease, {square.right() + 4, 5});
  EXPECT_THAT(selected(), ElementsAre("shot2.png"));
}

// None of them then, though the preview goes on showing the newest.
TEST_F(ThumbnailStripTest, aControlClickOnTheOnlySelectedCellLeavesNoneSelected) {
  ingestNumbered(2);
  click("shot1.png", Qt::ControlModifier);
  EXPECT_TRUE(island_.store.selectedItemIDs.get().empty());
  EXPECT_FALSE(cell("shot1.png").isSelected());
  EXPECT_FALSE(cell("shot0.png").isSelected());
  EXPECT_TRUE(island_.says("shot1.png preview"));
}

TEST_F(ThumbnailStripTest, anotherButtonSelectsNothing) {
  ingestNumbered(2);
  mouse(cell("shot0.png"), QEvent::MouseButtonPress, {5, 5}, Qt::NoModifier, Qt::RightButton);
  mouse(cell("shot0.png"), QEvent::MouseButtonRelease, {5, 5}, Qt::NoModifier, Qt::RightButton);
  EXPECT_THAT(selected(), ElementsAre("shot1.png"));
}

TEST_F(ThumbnailStripTest, aDragOfThreePointsStaysAClick) {
  ingestNumbered(2);
  ThumbnailCell& pressed = cell("shot0.png");
  mouse(pressed, QEvent::MouseButtonPress, {10, 10});
  mouse(pressed, QEvent::MouseMove, {13, 10});
  mouse(pressed, QEvent::MouseButtonRelease, {13, 10});
  EXPECT_THAT(island_.itemDrags, IsEmpty());
  EXPECT_THAT(selected(), ElementsAre("shot0.png"));
}

TEST_F(ThumbnailStripTest, aLongerDragTakesTheItemOutOnceAndSelectsNothing) {
  ingestNumbered(2);
  island_.platform.windows.list = {{.id = 1, .frame = {{0, 0}, {2000, 2000}}}};
  ThumbnailCell& pressed = cell("shot0.png");
  mouse(pressed, QEvent::MouseButtonPress, {10, 10});
  mouse(pressed, QEvent::MouseMove, {12, 13});  // the square root of 13
  mouse(pressed, QEvent::MouseMove, {40, 10});
  mouse(pressed, QEvent::MouseMove, {80, 10});
  mouse(pressed, QEvent::MouseButtonRelease, {80, 10});
  ASSERT_THAT(island_.platform.draggingSessions.requests, SizeIs(1));
  ASSERT_THAT(island_.platform.draggingSessions.requests[0].items, SizeIs(1));
  EXPECT_EQ(island_.platform.draggingSessions.requests[0].items[0].fileURL, island_.item("shot0.png").fileURL);
  EXPECT_THAT(island_.itemDrags, ElementsAre(true));
  EXPECT_THAT(selected(), ElementsAre("shot1.png"));
}

TEST_F(ThumbnailStripTest, theEndOfADragFreesThePointer) {
  ingestNumbered(2);
  island_.platform.windows.list = {{.id = 1, .frame = {{0, 0}, {2000, 2000}}}};
  ThumbnailCell& pressed = cell("shot0.png");
  mouse(pressed, QEvent::MouseButtonPress, {10, 10});
  mouse(pressed, QEvent::MouseMove, {40, 10});
  island_.platform.time.advanceBy(Seconds(1));
  EXPECT_EQ(island_.pointerReleases, 0);
  island_.platform.draggingSessions.end(1);
  island_.platform.time.advanceBy(Seconds(1));
  EXPECT_THAT(island_.itemDrags, ElementsAre(true, false));
  EXPECT_EQ(island_.pointerReleases, 1);
}

TEST_F(ThumbnailStripTest, scrollsToWhatIsSelectedOverItsTime) {
  ingestNumbered(10);
  const double end = strip().width();
  EXPECT_EQ(cell("shot9.png").square().left(), 0);
  EXPECT_GT(cell("shot0.png").square().left(), end);
  island_.store.select(island_.item("shot0.png").id);
  island_.settle();
  EXPECT_EQ(cell("shot9.png").square().left(), 0);
  island_.platform.time.advanceBy(Seconds(0.08));
  const double halfWay = cell("shot0.png").square().right();
  EXPECT_GT(halfWay, end);
  island_.platform.time.advanceBy(Seconds(0.1));
  EXPECT_DOUBLE_EQ(cell("shot0.png").square().right(), end);
  EXPECT_LT(cell("shot9.png").square().right(), 0);
}

TEST_F(ThumbnailStripTest, whatIsSelectedInTheMiddleStandsClearOfTheFade) {
  ingestNumbered(10);
  island_.store.select(island_.item("shot2.png").id);
  rest();
  EXPECT_LE(cell("shot2.png").square().right() + 18, strip().width());
  island_.store.select(island_.item("shot8.png").id);
  rest();
  EXPECT_GE(cell("shot8.png").square().left(), 18);
}

TEST_F(ThumbnailStripTest, whatIsInSightIsNotScrolled) {
  ingestNumbered(10);
  island_.store.select(island_.item("shot7.png").id);
  rest();
  EXPECT_EQ(cell("shot9.png").square().left(), 0);
}

TEST_F(ThumbnailStripTest, wheelAndTouchpadScrollSidewaysAndNotBeyondTheEnds) {
  ingestNumbered(10);
  wheel({}, {0, -120});
  rest();
  EXPECT_EQ(cell("shot9.png").square().left(), -32);
  wheel({-7, 0}, {-56, 0});
  EXPECT_EQ(cell("shot9.png").square().left(), -39);  // at once, under the fingers
  wheel({0, 9}, {0, 72});
  EXPECT_EQ(cell("shot9.png").square().left(), -30);
  wheel({}, {0, 1200});
  rest();
  EXPECT_EQ(cell("shot9.png").square().left(), 0);
  wheel({-5000, 0}, {});
  EXPECT_EQ(cell("shot0.png").square().right(), strip().width());
}

TEST_F(ThumbnailStripTest, aFewCellsCannotBeScrolled) {
  ingestNumbered(2);
  wheel({}, {0, -120});
  rest();
  EXPECT_EQ(cell("shot1.png").square().left(), 0);
}

TEST_F(ThumbnailStripTest, anArrivingCellComesUpWhileTheOthersMakeRoom) {
  ingestNumbered(2);
  const std::size_t pending = island_.platform.time.pending();
  island_.ingest("new.png");
  island_.settle();
  EXPECT_LT(cell("new.png").square().left(), 0);
  EXPECT_EQ(cell("shot1.png").square().left(), 0);
  island_.platform.time.advanceBy(Seconds(0.05));
  EXPECT_GT(cell("shot1.png").square().left(), 0);
  EXPECT_LT(cell("shot1.png").square().left(), 32);
  island_.platform.time.advanceBy(Seconds(1));
  EXPECT_EQ(cell("new.png").square().left(), 0);
  EXPECT_EQ(cell("shot1.png").square().left(), 32);
  EXPECT_EQ(island_.platform.time.pending(), pending);  // no step is taken any more
}

TEST_F(ThumbnailStripTest, aHiddenStripIsThereAtOnce) {
  ingestNumbered(2);
  island_.view->hide();
  island_.ingest("new.png");
  island_.settle();
  island_.view->show();
  EXPECT_EQ(cell("new.png").square().left(), 0);
  EXPECT_EQ(cell("shot1.png").square().left(), 32);
}

TEST_F(ThumbnailStripTest, whatIsGoneLeavesAndTheOthersCloseTheGap) {
  ingestNumbered(3);
  island_.platform.files.remove("/home/user/Desktop/shot1.png");
  island_.store.removeMissingFiles();
  rest();
  EXPECT_EQ(island_.button("shot1.png"), nullptr);
  EXPECT_EQ(cell("shot0.png").square().left(), 32);
}

TEST_F(ThumbnailStripTest, aClickThatRemovesItsOwnCellDoesNoHarm) {
  ingestNumbered(2);
  QObject::connect(&cell("shot0.png"), &QAbstractButton::clicked, [this] {
    island_.platform.files.remove("/home/user/Desktop/shot0.png");
    island_.store.removeMissingFiles();
  });
  cell("shot0.png").click();
  rest();
  EXPECT_EQ(island_.button("shot0.png"), nullptr);
  EXPECT_THAT(selected(), ElementsAre("shot1.png"));
}

TEST_F(ThumbnailStripTest, picturesAreOnlyKeptInSight) {
  ingestNumbered(10);
  island_.giveThumbnails(Qt::red);
  rest();
  (void)island_.picture();
  const auto inSight = [this] {
    int count = 0;
    for (int number = 0; number < 10; ++number) {
      const ThumbnailCell& one = cell("shot" + std::to_string(number) + ".png");
      EXPECT_EQ(one.keepsPicture(), one.isInSight()) << number;
      count += one.isInSight() ? 1 : 0;
    }
    return count;
  };
  EXPECT_EQ(inSight(), 7);
  wheel({-5000, 0}, {});
  (void)island_.picture();
  EXPECT_EQ(inSight(), 7);
  EXPECT_FALSE(cell("shot9.png").isInSight());
}

TEST_F(ThumbnailStripTest, anEndWithMoreBeyondFadesAndOneThatIsReachedDoesNot) {
  ingestNumbered(10);
  island_.giveThumbnails(Qt::red);
  island_.store.selectedItemIDs.set({});
  island_.store.selectedItemID.set(std::nullopt);
  rest();
  const auto redness = [](const QColor& colour) { return colour.red() - colour.green(); };
  const double y = cell("shot9.png").square().center().y();
  const double end = strip().width();
  EXPECT_GT(redness(colourAt({3, y})), 200);
  const int atEdge = redness(colourAt({end - 2, y}));  // a cell is cut off there
  const int further = redness(colourAt({end - 10, y}));
  EXPECT_LT(atEdge, 40);
  EXPECT_GT(further, atEdge + 60);
  EXPECT_LT(further, 200);
  wheel({-5000, 0}, {});
  EXPECT_GT(redness(colourAt({end - 3, y})), 200);
  EXPECT_LT(redness(colourAt({2, y})), 40);
}

TEST_F(ThumbnailStripTest, thePrimaryStandsOutAgainstTheOtherSelectedOnesAndTheseAgainstTheRest) {
  ingestNumbered(4);
  island_.giveThumbnails(Qt::red);
  island_.store.selectedItemIDs.set({island_.item("shot3.png").id, island_.item("shot2.png").id});
  rest();
  // Just inside the edge: the ring, the frame's plate and the picture.
  const auto atEdge = [this](const std::string& name) {
    const QRectF square = cell(name).square();
    return colourAt({square.left() + 1, square.center().y()});
  };
  EXPECT_LT(atEdge("shot3.png").lightness(), 120);
  EXPECT_GT(atEdge("shot2.png").lightness(), 150);
  EXPECT_LT(atEdge("shot2.png").saturation(), 40);
  EXPECT_GT(atEdge("shot1.png").saturation(), 150);
}

// What one colour laid over another with so much opacity gives.
QColor over(const QColor& below, const Color& colour, double opacity = 1) {
  const double share = colour.alpha * opacity;
  const auto channel = [share](double from, double to) {
    return static_cast<int>(std::lround(255 * std::lerp(from, to, share)));
  };
  return {channel(below.redF(), colour.red), channel(below.greenF(), colour.green),
          channel(below.blueF(), colour.blue)};
}

bool isNear(const QColor& one, const QColor& other, int tolerance) {
  return std::abs(one.red() - other.red()) <= tolerance && std::abs(one.green() - other.green()) <= tolerance &&
         std::abs(one.blue() - other.blue()) <= tolerance;
}

std::string text(const QColor& colour) {
  return colour.name().toStdString();
}

// Over the panel's own colour, which is even along the strip, in both appearances.
class PaintedCells : public ThumbnailStripTest, public testing::WithParamInterface<IslandAppearanceStyle> {
 protected:
  PaintedCells() {
    island_.state.appearanceStyle.set(GetParam());
    ingestNumbered(3);
  }
  // The colours of the panel are on the way from top to bottom: beside the cell in the same line.
  [[nodiscard]] QColor ground(QPointF at) { return colourAt({strip().width() - 30.0, at.y()}); }
  // Clear ones leave the plate to be seen.
  void giveClearThumbnails() {
    island_.giveThumbnails(Qt::transparent);
    rest();
  }
  [[nodiscard]] QPointF middle(const std::string& name) const { return cell(name).square().center(); }
  // Of the line inside the edge, half way up the left side.
  [[nodiscard]] QPointF onStroke(const std::string& name) const {
    return {cell(name).square().left(), middle(name).y()};
  }
  // Below the middle of the lower edge.
  [[nodiscard]] QPointF below(const std::string& name) const {
    return {middle(name).x(), cell(name).square().bottom() + 1};
  }
  void expectColour(QPointF at, const QColor& wanted, int tolerance = 2) {
    const QColor seen = colourAt(at);
    EXPECT_TRUE(isNear(seen, wanted, tolerance)) << text(seen) << " for " << text(wanted);
  }

  const IslandThemeTokens tokens_ = IslandThemeTokens::forAppearance(GetParam(), false);
};

TEST_P(PaintedCells, anUnselectedPlateHasItsFillItsStrokeAndItsOpacity) {
  giveClearThumbnails();
  const QPointF inside = middle("shot0.png");
  const QColor plate = over(ground(inside), tokens_.thumbnailPlateFill, tokens_.unselectedThumbnailOpacity);
  expectColour(inside, plate);
  expectColour(onStroke("shot0.png"), over(plate, tokens_.thumbnailDefaultStroke, tokens_.unselectedThumbnailOpacity));
  expectColour(below("shot0.png"), ground(below("shot0.png")));
}

TEST_P(PaintedCells, aSelectedPlateHasTheFillTheStrokeAndTheShadowOfTheSelected) {
  giveClearThumbnails();
  // Not the one in the preview, whose ring lies on the stroke.
  island_.store.selectedItemIDs.set({island_.item("shot2.png").id, island_.item("shot0.png").id});
  rest();
  const QPointF inside = middle("shot0.png");
  const QColor plate = over(ground(inside), tokens_.thumbnailPlateSelectedFill);
  expectColour(inside, plate);
  expectColour(onStroke("shot0.png"), over(plate, tokens_.thumbnailSelectedStroke), 6);  // the shadow begins there
  const QColor shadowed = colourAt(below("shot0.png"));
  const QColor ground = this->ground(below("shot0.png"));
  EXPECT_LT(shadowed.lightness(), ground.lightness());
  // Nowhere darker than the shadow's own opacity makes it.
  EXPECT_GE(shadowed.lightness() + 2, over(ground, Color::black(tokens_.thumbnailSelectedShadowOpacity)).lightness());
}

TEST_P(PaintedCells, aPictureIsPalerUntilItIsSelected) {
  island_.giveThumbnails(Qt::red);
  rest();
  const QPointF inside = middle("shot0.png");
  const QColor plate = over(ground(inside), tokens_.thumbnailPlateFill, tokens_.unselectedThumbnailOpacity);
  expectColour(inside, over(plate, Color{1, 0, 0, 1}, tokens_.unselectedThumbnailOpacity));
  island_.store.select(island_.item("shot0.png").id);
  rest();
  expectColour(inside, Qt::red);
}

TEST_P(PaintedCells, thePointerGivesNoneOfTheColoursOfTheSelected) {
  giveClearThumbnails();
  const QPointF inside = middle("shot0.png");
  const QColor before = colourAt(inside);
  cell("shot0.png").setHovered(true);
  rest();
  EXPECT_EQ(colourAt(inside), before);
  island_.giveThumbnails(Qt::red);
  rest();
  const QColor hovered = colourAt(inside);
  cell("shot0.png").setHovered(false);
  rest();
  EXPECT_EQ(colourAt(inside), hovered);
}

INSTANTIATE_TEST_SUITE_P(Appearances, PaintedCells,
                         testing::Values(IslandAppearanceStyle::light, IslandAppearanceStyle::dark));

TEST_F(ThumbnailStripTest, aThumbnailThatDoesNotComeHasASymbolInItsPlaceAfterAWhile) {
  ingestNumbered(1);
  island_.platform.thumbnails.undecodable.insert("/home/user/Desktop/late.png");
  island_.ingest("late.png");
  island_.settle();
  const auto darkest = [&] {
    const QRectF square = cell("late.png").square();
    int found = 255;
    for (int x = 6; x < 18; ++x) {
      found = std::min(found, colourAt({square.left() + x, square.center().y()}).lightness());
    }
    return found;
  };
  island_.platform.time.advanceBy(Seconds(0.5));
  const int plate = darkest();
  island_.platform.time.advanceBy(Seconds(0.5));
  EXPECT_LT(darkest(), plate - 30);
  island_.giveThumbnails(Qt::white);
  rest();
  EXPECT_GT(darkest(), 240);
}

TEST_F(ThumbnailStripTest, oneStopOfTheTabKeyThatLeavesTheArrowsToTheIsland) {
  EXPECT_EQ(strip().focusPolicy(), Qt::NoFocus);  // nothing is there to stop at
  ingestNumbered(3);
  EXPECT_EQ(strip().focusPolicy(), Qt::TabFocus);
  for (const char* name : {"shot0.png", "shot1.png", "shot2.png"}) {
    EXPECT_EQ(cell(name).focusPolicy(), Qt::NoFocus);
  }
  QKeyEvent right(QEvent::KeyPress, Qt::Key_Right, Qt::NoModifier);
  QCoreApplication::sendEvent(&strip(), &right);
  EXPECT_FALSE(right.isAccepted());
}

TEST_F(ThumbnailStripTest, theFocusIsSeenAroundTheSelectedCell) {
  ingestNumbered(3);
  island_.store.select(island_.item("shot1.png").id);
  rest();
  const QImage before = island_.picture();
  strip().setFocus(Qt::TabFocusReason);
  const QImage after = island_.picture();
  const QPointF corner = strip().mapTo(island_.view.get(), QPointF());
  const QRectF square = cell("shot1.png").square().translated(corner);
  for (const QPointF beyond :
       {QPointF(square.left() - 2, square.center().y()), QPointF(square.right() + 1, square.center().y()),
        QPointF(square.center().x(), square.bottom() + 1)}) {
    EXPECT_LT(after.pixelColor(beyond.toPoint()).lightness(), before.pixelColor(beyond.toPoint()).lightness() - 30);
  }
}

TEST_F(ThumbnailStripTest, theFocusBringsTheSelectedCellBack) {
  ingestNumbered(10);
  wheel({-5000, 0}, {});
  ASSERT_LT(cell("shot9.png").square().right(), 0);
  strip().setFocus(Qt::TabFocusReason);
  rest();
  EXPECT_EQ(cell("shot9.png").square().left(), 0);
}

TEST_F(ThumbnailStripTest, isReadAsAListOfFilesWithTheirSelection) {
  ingestNumbered(3);
  island_.store.selectedItemIDs.set({island_.item("shot2.png").id, island_.item("shot0.png").id});
  rest();
  QAccessibleInterface* list = QAccessible::queryAccessibleInterface(&strip());
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(list->role(), QAccessible::List);
  EXPECT_EQ(list->text(QAccessible::Name), QStringLiteral("Screenshots"));
  std::vector<std::string> names;
  std::vector<std::string> selectedNames;
  for (int index = 0; index < list->childCount(); ++index) {
    const QAccessibleInterface* item = list->child(index);
    EXPECT_EQ(item->role(), QAccessible::ListItem);
    names.push_back(item->text(QAccessible::Name).toStdString());
    if (item->state().selected) {
      selectedNames.push_back(names.back());
    }
  }
  EXPECT_THAT(names, ElementsAre("shot2.png", "shot1.png", "shot0.png"));
  EXPECT_THAT(selectedNames, UnorderedElementsAre("shot2.png", "shot0.png"));
  list->child(1)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_THAT(selected(), ElementsAre("shot1.png"));
}

}  // namespace
}  // namespace quenlio
