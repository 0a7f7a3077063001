// The toolbar where it stands: on the island, over a library.
#include <QtCore/QCoreApplication>
#include <QtGui/QEnterEvent>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "desktop/views/island/MainPreview.h"

#include "tests/desktop/views/Island.h"
#include "tests/desktop/views/SymbolIn.h"

namespace quenlio {
namespace {

using testing::ElementsAre;
using testing::SizeIs;

class IslandToolbar : public testing::Test {
 protected:
  void ingestTwo() {
    island_.ingest("one.png");
    island_.ingest("two.png");
    island_.settle();
  }
  template <class View>
  [[nodiscard]] View& find() const {
    for (QWidget* widget : island_.view->findChildren<QWidget*>()) {
      if (auto* view = dynamic_cast<View*>(widget)) {
        return *view;
      }
    }
    throw std::out_of_range("no such view");
  }
  // The mean lightness of the place where the ring is, beside the glyph.
  [[nodiscard]] double lightnessOfRing() {
    const QImage picture = island_.picture(2);
    const QPointF centre = QRectF(island_.button("Close")->rect()).center() +
                           QPointF(island_.button("Close")->mapTo(island_.view.get(), QPoint()));
    const double radius = 16 * 0.62;
    double sum = 0;
    for (const QPointF& way : {QPointF(1, 0), QPointF(0, 1), QPointF(-1, 0)}) {
      sum += picture.pixelColor(((centre + radius * way) * 2).toPoint()).lightness();
    }
    return sum / 3;
  }

  [[nodiscard]] QRect placeOf(const QWidget& view, int scale) const {
    return {view.mapTo(island_.view.get(), QPoint()) * scale, view.size() * scale};
  }

  Island island_;
};

TEST_F(IslandToolbar, actsOnTheSelection) {
  ingestTwo();
  // Where a share menu can hang.
  island_.platform.windows.list = {{.id = 1, .frame = {{0, 0}, {232, 232}}, .isKeyWindow = true}};
  island_.button("Copy")->click();
  ASSERT_TRUE(island_.platform.pasteboard.contents);
  island_.button("Share")->click();
  ASSERT_THAT(island_.platform.sharingServicePicker.shown, SizeIs(1));
  EXPECT_THAT(island_.platform.sharingServicePicker.shown[0].items, ElementsAre(island_.item("two.png").fileURL));
  island_.button("View in Folder")->click();
  ASSERT_THAT(island_.platform.workspace.revealed, SizeIs(1));
  EXPECT_THAT(island_.platform.workspace.revealed[0], ElementsAre(island_.item("two.png").fileURL));
  island_.button("Edit")->click();
  EXPECT_THAT(island_.editors, ElementsAre("two.png"));
  island_.button("Move to Trash")->click();
  island_.settle();
  EXPECT_EQ(island_.button("two.png"), nullptr);
  EXPECT_NE(island_.button("one.png"), nullptr);
  island_.button("Close")->click();
  EXPECT_EQ(island_.closes, 1);
}

TEST_F(IslandToolbar, anEmptyLibraryLeavesOnlyClose) {
  for (const char* name : {"Copy", "Edit", "Share", "View in Folder", "Move to Trash"}) {
    EXPECT_FALSE(island_.button(name)->isEnabled()) << name;
  }
  EXPECT_TRUE(island_.button("Close")->isEnabled());
  ingestTwo();
  for (const char* name : {"Copy", "Edit", "Share", "View in Folder", "Move to Trash"}) {
    EXPECT_TRUE(island_.button(name)->isEnabled()) << name;
  }
}

TEST_F(IslandToolbar, staysWhenTheFolderCannotBeRead) {
  ingestTwo();
  island_.state.screenshotFolderReadable.set(false);
  island_.settle();
  EXPECT_TRUE(island_.says("Folder Access Needed"));
  EXPECT_TRUE(island_.button("Copy")->isEnabled());
}

TEST_F(IslandToolbar, theRingShowsWhileTheIslandCountsDown) {
  const double without = lightnessOfRing();
  island_.state.dismissProgress.set(1.0);
  island_.state.showDismissProgress.set(true);
  island_.settle();
  island_.platform.time.advanceBy(Seconds(0.3));
  EXPECT_LT(lightnessOfRing(), without - 60);
  island_.state.dismissProgress.set(0.1);
  island_.settle();
  EXPECT_GT(lightnessOfRing(), without - 60);
  island_.state.showDismissProgress.set(false);
  island_.state.dismissProgress.set(1.0);
  island_.settle();
  island_.platform.time.advanceBy(Seconds(0.5));
  EXPECT_EQ(lightnessOfRing(), without);
}

// Thirty times a second, for as long as the island is up.
TEST_F(IslandToolbar, theCountdownPaintsNothingElse) {
  class PaintCounter final : public QObject {
   public:
    int paints = 0;

   protected:
    bool eventFilter(QObject* object, QEvent* event) override {
      paints += event->type() == QEvent::Paint ? 1 : 0;
      return QObject::eventFilter(object, event);
    }
  };
  ingestTwo();
  island_.state.showDismissProgress.set(true);
  island_.settle();
  island_.platform.time.advanceBy(Seconds(1));
  island_.settle();
  PaintCounter close;
  island_.button("Close")->installEventFilter(&close);
  PaintCounter others;
  find<MainPreview>().installEventFilter(&others);
  for (const char* name : {"Copy", "Move to Trash", "one.png", "two.png"}) {
    island_.button(name)->installEventFilter(&others);
  }
  for (int step = 1; step <= 20; ++step) {
    island_.state.dismissProgress.set(1 - step / 30.0);
    island_.settle();
  }
  EXPECT_EQ(close.paints, 20);
  EXPECT_EQ(others.paints, 0);
}

TEST_F(IslandToolbar, helpShowsBelowTheControlsInsideThePanel) {
  ingestTwo();
  for (const char* name : {"Copy", "View in Folder", "Close"}) {
    QEnterEvent enter({5, 5}, {5, 5}, {5, 5});
    QCoreApplication::sendEvent(island_.button(name), &enter);
    island_.platform.time.advanceBy(Seconds(1));
    island_.settle();
    const auto& bubble = find<TooltipBubbleView>();
    ASSERT_TRUE(bubble.isVisible()) << name;
    EXPECT_TRUE(bubble.text().startsWith(QLatin1String(name)));
    EXPECT_EQ(bubble.placement().pointer, TooltipPointerDirection::up);
    EXPECT_TRUE(QRectF(24, 24, 184, 184).contains(bubble.body())) << name;
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(island_.button(name), &leave);
    EXPECT_FALSE(bubble.isVisible());
  }
}

TEST_F(IslandToolbar, eachControlShowsItsOwnSymbol) {
  ingestTwo();
  const QImage picture = island_.picture(4);
  const std::pair<const char*, const char*> wanted[] = {{"Copy", "doc.on.doc"},           {"Edit", "highlighter"},
                                                        {"Share", "square.and.arrow.up"}, {"View in Folder", "folder"},
                                                        {"Move to Trash", "trash"},       {"Close", "xmark"}};
  for (const auto& [name, symbol] : wanted) {
    EXPECT_EQ(symbolIn(picture, placeOf(*island_.button(name), 4)), symbol) << name;
  }
}
}  // namespace
}  // namespace quenlio
