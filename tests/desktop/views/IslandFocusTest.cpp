// The keyboard and the pointer between the island as a whole and what is open in it or over it.
#include <QtCore/QCoreApplication>
#include <QtGui/QCursor>
#include <QtGui/QKeyEvent>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMenu>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "desktop/views/island/MainPreview.h"
#include "desktop/views/island/ThumbnailStrip.h"

#include "tests/desktop/views/Island.h"

namespace quenlio {
namespace {

using testing::Contains;
using testing::Not;

class IslandFocus : public testing::Test {
 protected:
  IslandFocus() {
    QApplication::setActiveWindow(island_.view.get());
    island_.ingest("one.png");
    island_.ingest("two.png");
    island_.settle();
    island_.hovers.clear();
  }

  [[nodiscard]] QLineEdit& field() const { return *island_.view->findChild<QLineEdit*>(); }
  template <class View>
  [[nodiscard]] View& find() const {
    for (QWidget* widget : island_.view->findChildren<QWidget*>()) {
      if (auto* view = dynamic_cast<View*>(widget)) {
        return *view;
      }
    }
    throw std::out_of_range("no such view");
  }
  // No turn of any queue comes between this and the next key.
  void askForRename() { island_.state.renameRequestToken.set(island_.state.renameRequestToken.get() + 1); }
  // What is told on its way there is not of interest.
  void putPointer(QPoint inView) {
    QCursor::setPos(island_.view->mapToGlobal(inView));
    island_.settle();
    island_.hovers.clear();
  }
  void sendLeave() {
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(island_.view.get(), &leave);
  }

  static constexpr QPoint kInside{100, 100};
  static constexpr QPoint kOutside{300, 300};
  Island island_;
};

TEST_F(IslandFocus, theFieldHasTheKeyboardOnceARenameHasBeenAskedFor) {
  askForRename();
  EXPECT_TRUE(field().hasFocus());
  EXPECT_EQ(field().text(), QStringLiteral("two"));
}

TEST_F(IslandFocus, whatIsRenamedIsWhatIsSelectedWhenThatIsAskedFor) {
  island_.store.select(island_.item("one.png").id);
  askForRename();
  EXPECT_EQ(field().text(), QStringLiteral("one"));
}

TEST_F(IslandFocus, theKeyboardThatTheIslandIsGivenIsTheFieldsWhileThatIsOpen) {
  askForRename();
  island_.button("Cancel rename")->setFocus(Qt::TabFocusReason);
  ASSERT_FALSE(field().hasFocus());
  island_.view->setFocus(Qt::OtherFocusReason);
  EXPECT_TRUE(field().hasFocus());
  island_.button("Cancel rename")->click();
  island_.view->setFocus(Qt::OtherFocusReason);
  EXPECT_TRUE(island_.view->hasFocus());
}

TEST_F(IslandFocus, aCaptureThatArrivesLeavesTheFieldAsItIs) {
  askForRename();
  field().setText(QStringLiteral("Invo"));
  island_.ingest("three.png");
  island_.settle();
  EXPECT_TRUE(island_.says("three.png preview"));
  EXPECT_TRUE(field().hasFocus());
  EXPECT_EQ(field().text(), QStringLiteral("Invo"));
}

TEST_F(IslandFocus, aHeldReturnThatHasOpenedTheFieldDoesNotCloseIt) {
  askForRename();
  QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"), true);
  QCoreApplication::sendEvent(&field(), &held);
  EXPECT_TRUE(field().isVisible());
}

TEST_F(IslandFocus, whatIsTypedWaitsForTheIslandToComeBack) {
  askForRename();
  field().setText(QStringLiteral("Invo"));
  Q_EMIT field().textEdited(field().text());
  island_.view->hide();
  island_.view->show();
  QApplication::setActiveWindow(island_.view.get());
  EXPECT_TRUE(field().isVisible());
  EXPECT_TRUE(field().hasFocus());
  EXPECT_EQ(field().text(), QStringLiteral("Invo"));
}

TEST_F(IslandFocus, anIslandThatComesBackWithACaptureShowsThatOne) {
  askForRename();
  island_.view->hide();
  island_.ingest("three.png");
  island_.view->show();
  QApplication::setActiveWindow(island_.view.get());
  island_.settle();
  EXPECT_FALSE(field().isVisible());
  EXPECT_TRUE(island_.says("three.png"));
  EXPECT_TRUE(island_.view->hasFocus());
}

TEST_F(IslandFocus, theIslandAsAWholeIsNoStopOfTheTabKey) {
  island_.view->setFocus(Qt::OtherFocusReason);
  const auto tab = [] {
    QKeyEvent key(QEvent::KeyPress, Qt::Key_Tab, Qt::NoModifier);
    QCoreApplication::sendEvent(QApplication::focusWidget(), &key);
    return QApplication::focusWidget();
  };
  const QWidget* first = tab();
  const QWidget* stop = tab();
  for (int stops = 0; stop != first && stops < 20; ++stops, stop = tab()) {
    EXPECT_NE(stop, island_.view.get());
  }
  EXPECT_EQ(stop, first);
}

TEST_F(IslandFocus, aMenuThatOpensOverTheRestingPointerIsNoLeaving) {
  putPointer(kInside);
  QMenu menu;
  menu.addAction(QStringLiteral("one"));
  menu.popup(island_.view->mapToGlobal(QPoint(0, 0)));
  ASSERT_EQ(QApplication::activePopupWidget(), &menu);
  island_.hovers.clear();  // without a display, Qt tells of a leaving before the menu counts as open
  sendLeave();
  EXPECT_THAT(island_.hovers, Not(Contains(false)));
  EXPECT_EQ(island_.pointerReleases, 0);
  menu.close();
  EXPECT_EQ(island_.pointerReleases, 1);
  sendLeave();
  EXPECT_THAT(island_.hovers, Contains(false));
}

TEST_F(IslandFocus, aMenuUnderAMenuIsWaitedForToo) {
  putPointer(kInside);
  QMenu menu;
  QMenu below;
  menu.addAction(QStringLiteral("one"));
  below.addAction(QStringLiteral("two"));
  below.popup(island_.view->mapToGlobal(QPoint(0, 0)));
  menu.popup(island_.view->mapToGlobal(QPoint(20, 20)));
  sendLeave();
  menu.close();
  EXPECT_EQ(island_.pointerReleases, 0);
  below.close();
  EXPECT_EQ(island_.pointerReleases, 1);
}

TEST_F(IslandFocus, underAMenuThePointerThatIsElsewhereHasLeft) {
  putPointer(kOutside);
  QMenu menu;
  menu.addAction(QStringLiteral("one"));
  menu.popup(island_.view->mapToGlobal(QPoint(0, 0)));
  sendLeave();
  EXPECT_THAT(island_.hovers, Contains(false));
  menu.close();
  EXPECT_EQ(island_.pointerReleases, 0);
}

TEST_F(IslandFocus, anEmptyLibraryHasNoStrip) {
  EXPECT_TRUE(find<ThumbnailStrip>().isVisible());
  island_.store.items.set({});
  island_.settle();
  EXPECT_FALSE(find<ThumbnailStrip>().isVisible());
}

TEST_F(IslandFocus, aSizeThatIsChosenWhileTheIslandIsHiddenIsLaidOutWhole) {
  island_.view->hide();
  island_.settings.islandSize.set(IslandSize::large);
  island_.settle();
  EXPECT_EQ(find<MainPreview>().width(), 420 - 2 * 12);
  EXPECT_EQ(find<MainPreview>().height(),
            static_cast<int>(IslandLayoutMetrics::forSize(IslandSize::large).previewHeight));
}

}  // namespace
}  // namespace quenlio
