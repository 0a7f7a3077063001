#include <QtCore/QCoreApplication>
#include <QtGui/QEnterEvent>
#include <QtGui/QKeyEvent>
#include <QtGui/QMouseEvent>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "desktop/views/common/TooltipBubbleView.h"
#include "desktop/views/island/MetaRow.h"

#include "tests/desktop/views/Island.h"

namespace quenlio {
namespace {

using testing::IsEmpty;

class MetaRowTest : public testing::Test {
 protected:
  MetaRowTest() {
    island_.view->activateWindow();
    QApplication::setActiveWindow(island_.view.get());
    island_.ingest("one.png");
    island_.ingest("two.png");
    island_.settle();
  }

  [[nodiscard]] QLineEdit& field() const { return *island_.view->findChild<QLineEdit*>(); }
  [[nodiscard]] MetaRow& row() const {
    for (QWidget* widget : island_.view->findChildren<QWidget*>()) {
      if (auto* view = dynamic_cast<MetaRow*>(widget)) {
        return *view;
      }
    }
    throw std::out_of_range("no name row");
  }
  void askForRename() {
    island_.state.renameRequestToken.set(island_.state.renameRequestToken.get() + 1);
    island_.settle();
  }
  // Key by key into whatever has the keyboard.
  void type(const QString& text) {
    for (const QChar letter : text) {
      press(0, QString(letter));
    }
  }
  void press(int key, const QString& text = {}, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QKeyEvent event(QEvent::KeyPress, key, modifiers, text);
    QCoreApplication::sendEvent(QApplication::focusWidget(), &event);
    island_.settle();
  }
  [[nodiscard]] bool exists(const std::string& name) {
    return island_.platform.files.fileExistsAtPath(FileURL("/home/user/Desktop/" + name));
  }
  [[nodiscard]] std::ptrdiff_t mentions(const std::string& words) {
    const auto all = island_.words();
    return std::ranges::count(all, words);
  }
  // What is said beside the field.
  [[nodiscard]] bool warns(const std::string& reason) {
    return island_.says(reason) && field().accessibleDescription().toStdString() == reason;
  }

  Island island_;
};

TEST_F(MetaRowTest, beginsWithTheStemSelectedAndTheExtensionApart) {
  EXPECT_FALSE(field().isVisible());
  askForRename();
  EXPECT_TRUE(field().isVisible());
  EXPECT_TRUE(field().hasFocus());
  EXPECT_EQ(field().accessibleName(), QStringLiteral("Filename"));
  EXPECT_EQ(field().selectedText(), QStringLiteral("two"));
  EXPECT_EQ(field().cursorPosition(), 0) << "so that a long name is seen from its beginning";
  EXPECT_TRUE(island_.says(".png"));
  EXPECT_NE(island_.button("Save filename"), nullptr);
  EXPECT_NE(island_.button("Cancel rename"), nullptr);
  EXPECT_EQ(island_.button("Rename"), nullptr);
}

TEST_F(MetaRowTest, theFieldSaysWhatItIsForAndTheExtensionIsReadOutWhole) {
  const std::string extension(60, 'x');
  island_.ingest("three." + extension);
  island_.store.items.mutate([&](std::vector<ScreenshotItem>& items) {
    items.front().fileURL = FileURL("/home/user/Desktop/three." + extension);
  });
  island_.settle();
  askForRename();
  EXPECT_EQ(field().placeholderText(), QStringLiteral("Filename"));
  EXPECT_TRUE(island_.says("." + extension)) << "though it has no room to be seen whole";
}

// No cell is chosen, and what stands in the preview is what can be renamed.
TEST_F(MetaRowTest, withNothingSelectedTheNewestIsNamedAndCanBeRenamed) {
  island_.store.toggleSelection(island_.item("two.png"));
  island_.settle();
  ASSERT_TRUE(island_.store.selectedItemIDs.get().empty());
  auto* name = row().findChild<QLabel*>();
  EXPECT_EQ(name->text(), QStringLiteral("two.png"));
  EXPECT_TRUE(island_.says("two.png preview"));
  EXPECT_NE(island_.button("Rename"), nullptr);
  askForRename();
  EXPECT_TRUE(field().isVisible());
  type("three");
  press(Qt::Key_Return);
  EXPECT_TRUE(exists("three.png"));
}

// The newest stands in the preview then, not what was being renamed.
TEST_F(MetaRowTest, aSelectionThatEmptiesEndsIt) {
  island_.store.toggleSelection(island_.item("two.png"));
  island_.store.toggleSelection(island_.item("one.png"));
  island_.settle();
  askForRename();
  ASSERT_EQ(field().text(), QStringLiteral("one"));
  type("x");
  island_.store.toggleSelection(island_.item("one.png"));
  island_.settle();
  EXPECT_FALSE(field().isVisible());
  EXPECT_TRUE(exists("one.png"));
}

// What was typed for the one must not become the name of the other.
TEST_F(MetaRowTest, askedForTheArrivalWhileAnotherIsRenamedItShowsTheArrivalsName) {
  askForRename();
  type("draft");
  island_.ingest("three.png");
  island_.settle();
  ASSERT_EQ(field().text(), QStringLiteral("draft"));
  askForRename();
  EXPECT_EQ(field().text(), QStringLiteral("three"));
  EXPECT_EQ(field().selectedText(), QStringLiteral("three"));
  press(Qt::Key_Return);
  EXPECT_TRUE(exists("two.png"));
  EXPECT_TRUE(exists("three.png"));
}

TEST_F(MetaRowTest, theRequestThatWasThereBeforeIsNone) {
  Island other;
  other.ingest("one.png");
  other.settle();
  EXPECT_FALSE(other.view->findChild<QLineEdit*>()->isVisible());
}

TEST_F(MetaRowTest, returnRenamesAndGivesTheKeyboardBack) {
  askForRename();
  type("Invoice");
  press(Qt::Key_Return);
  EXPECT_TRUE(exists("Invoice.png"));
  EXPECT_FALSE(exists("two.png"));
  EXPECT_FALSE(field().isVisible());
  EXPECT_TRUE(island_.says("Invoice.png"));
  EXPECT_TRUE(island_.says("Invoice.png preview"));
  EXPECT_EQ(QApplication::focusWidget(), island_.view.get());
}

TEST_F(MetaRowTest, theButtonsDoTheSameAsTheKeys) {
  island_.button("Rename")->click();
  type("a");
  island_.button("Save filename")->click();
  island_.settle();
  EXPECT_TRUE(exists("a.png"));
  island_.button("Rename")->click();
  type("b");
  island_.button("Cancel rename")->click();
  island_.settle();
  EXPECT_TRUE(exists("a.png"));
  EXPECT_FALSE(exists("b.png"));
  EXPECT_TRUE(island_.says("a.png"));
}

TEST_F(MetaRowTest, escapeEndsWithoutAChange) {
  askForRename();
  type("Invoice");
  press(Qt::Key_Escape);
  EXPECT_FALSE(field().isVisible());
  EXPECT_TRUE(exists("two.png"));
  EXPECT_EQ(island_.closes, 0);
  EXPECT_EQ(QApplication::focusWidget(), island_.view.get());
  askForRename();
  EXPECT_EQ(field().text(), QStringLiteral("two"));
}

TEST_F(MetaRowTest, aBlankNameIsRefusedInPlaceUntilItIsMended) {
  askForRename();
  type(" ");
  press(Qt::Key_Return);
  EXPECT_TRUE(field().hasFocus());
  EXPECT_TRUE(warns("Enter a name"));
  type("x");
  EXPECT_FALSE(island_.says("Enter a name"));
  EXPECT_THAT(field().accessibleDescription().toStdString(), IsEmpty());
  press(Qt::Key_Return);
  EXPECT_TRUE(exists("x.png"));
}

TEST_F(MetaRowTest, whatTheLibraryRefusesIsSaid) {
  askForRename();
  type("x");
  island_.platform.files.remove("/home/user/Desktop/two.png");
  press(Qt::Key_Return);
  EXPECT_TRUE(warns("The file could not be renamed"));
  press(Qt::Key_Escape);
  EXPECT_FALSE(island_.says("The file could not be renamed"));
}

TEST_F(MetaRowTest, theRefusalStandsInTheWayOfAnotherControlsHelp) {
  askForRename();
  type(" ");
  press(Qt::Key_Return);
  QEnterEvent enter({5, 5}, {5, 5}, {5, 5});
  QCoreApplication::sendEvent(island_.button("Save filename"), &enter);
  island_.platform.time.advanceBy(Seconds(1));
  EXPECT_TRUE(warns("Enter a name"));
  EXPECT_FALSE(island_.says("Save filename (Enter)"));
  type("x");
  EXPECT_FALSE(island_.says("Enter a name"));
  EXPECT_TRUE(island_.says("Save filename (Enter)"));
}

// Beside the field, wherever that is then.
TEST_F(MetaRowTest, theRefusalStaysInAnotherSizeAndWhileTheIslandIsAway) {
  askForRename();
  type(" ");
  press(Qt::Key_Return);
  const auto place = [this] {
    for (const QWidget* widget : island_.view->findChildren<QWidget*>()) {
      if (const auto* bubble = dynamic_cast<const TooltipBubbleView*>(widget)) {
        return bubble->geometry();
      }
    }
    return QRect();
  };
  const int above = field().mapTo(island_.view.get(), QPoint()).y() - place().center().y();
  island_.setSize(IslandSize::large);
  EXPECT_TRUE(warns("Enter a name"));
  EXPECT_NEAR(field().mapTo(island_.view.get(), QPoint()).y() - place().center().y(), above, 6);
  EXPECT_TRUE(island_.view->rect().contains(place()));
  island_.view->hide();
  EXPECT_FALSE(island_.says("Enter a name"));
  island_.platform.time.advanceBy(Seconds(2));
  EXPECT_EQ(island_.platform.time.pending(), 0U);
  island_.view->show();
  EXPECT_TRUE(warns("Enter a name"));
}

TEST_F(MetaRowTest, anotherSelectionEndsItWithoutAChange) {
  askForRename();
  type("x");
  island_.store.select(island_.item("one.png").id);
  island_.settle();
  EXPECT_FALSE(field().isVisible());
  EXPECT_TRUE(exists("two.png"));
  EXPECT_TRUE(island_.says("one.png"));
  EXPECT_EQ(QApplication::focusWidget(), island_.view.get());
}

TEST_F(MetaRowTest, anItemThatVanishesEndsIt) {
  askForRename();
  type("x");
  island_.platform.files.remove("/home/user/Desktop/two.png");
  island_.store.removeMissingFiles();
  island_.settle();
  EXPECT_FALSE(field().isVisible());
  EXPECT_TRUE(island_.says("one.png"));
}

TEST_F(MetaRowTest, theLastItemThatVanishesEndsItToo) {
  island_.store.select(island_.item("two.png").id);
  askForRename();
  for (const char* name : {"one.png", "two.png"}) {
    island_.platform.files.remove(std::string("/home/user/Desktop/") + name);
  }
  island_.store.removeMissingFiles();
  island_.settle();
  EXPECT_FALSE(row().isVisible());
  EXPECT_EQ(QApplication::focusWidget(), island_.view.get());
  island_.ingest("three.png");
  island_.settle();
  EXPECT_FALSE(field().isVisible());
}

TEST_F(MetaRowTest, losingTheKeyboardKeepsTheDraft) {
  askForRename();
  type("draft");
  QApplication::setActiveWindow(nullptr);
  island_.settle();
  EXPECT_TRUE(field().isVisible());
  QApplication::setActiveWindow(island_.view.get());
  island_.view->setFocus();
  askForRename();
  EXPECT_TRUE(field().hasFocus());
  EXPECT_EQ(field().text(), QStringLiteral("draft"));
}

// However the island as a whole is given the keyboard: by the pointer that comes back, by a press on its body.
TEST_F(MetaRowTest, theOpenFieldIsWhereTheIslandsKeyboardIs) {
  askForRename();
  type("draft");
  island_.view->setFocus(Qt::OtherFocusReason);
  EXPECT_EQ(QApplication::focusWidget(), &field());
  island_.button("Cancel rename")->setFocus(Qt::TabFocusReason);
  island_.view->setFocus(Qt::MouseFocusReason);
  EXPECT_EQ(QApplication::focusWidget(), &field());
  press(Qt::Key_Backspace);
  EXPECT_EQ(field().text(), QStringLiteral("draf"));
  press(Qt::Key_Escape);
  EXPECT_EQ(QApplication::focusWidget(), island_.view.get());
}

TEST_F(MetaRowTest, severalSelectedAreCountedAndNotRenamed) {
  island_.store.selectedItemIDs.set({island_.item("one.png").id, island_.item("two.png").id});
  island_.settle();
  EXPECT_TRUE(island_.says("2 selected"));
  EXPECT_EQ(island_.button("Rename"), nullptr);
  askForRename();
  EXPECT_FALSE(field().isVisible());
  auto* name = row().findChild<QLabel*>();
  ASSERT_EQ(name->text(), QStringLiteral("2 selected"));
  QEnterEvent enter({5, 5}, {5, 5}, {5, 5});
  QCoreApplication::sendEvent(name, &enter);
  const auto before = island_.words();
  island_.platform.time.advanceBy(Seconds(1));
  EXPECT_EQ(island_.words(), before);  // no tooltip
}

TEST_F(MetaRowTest, theNameThatTheRowMayHaveCutIsItsTooltip) {
  auto* name = row().findChild<QLabel*>();
  ASSERT_EQ(name->text(), QStringLiteral("two.png"));
  QEnterEvent enter({5, 5}, {5, 5}, {5, 5});
  QCoreApplication::sendEvent(name, &enter);
  const auto before = mentions("two.png");
  island_.platform.time.advanceBy(Seconds(1));
  EXPECT_EQ(mentions("two.png"), before + 1);
}

TEST_F(MetaRowTest, aDoubleClickOnTheNameBegins) {
  auto* name = row().findChild<QLabel*>();
  QMouseEvent twice(QEvent::MouseButtonDblClick, QPointF(5, 5), QPointF(5, 5), Qt::LeftButton, Qt::LeftButton,
                    Qt::NoModifier);
  QCoreApplication::sendEvent(name, &twice);
  EXPECT_TRUE(field().hasFocus());
}

TEST_F(MetaRowTest, thePencilShowsItselfToThePointerAndToTheKeyboard) {
  auto* pencil = island_.button("Rename");
  ASSERT_NE(pencil, nullptr);
  const QPoint middle = pencil->mapTo(island_.view.get(), pencil->rect().center());
  const auto isSeen = [&] {
    island_.platform.time.advanceBy(Seconds(0.3));
    const QImage picture = island_.picture();
    int darkest = 255;
    for (int x = -6; x <= 6; ++x) {
      darkest = std::min(darkest, picture.pixelColor(middle + QPoint(x, 0)).lightness());
    }
    return darkest < 190;
  };
  EXPECT_FALSE(isSeen());
  QEnterEvent enter({5, 5}, {5, 5}, {5, 5});
  QCoreApplication::sendEvent(&row(), &enter);
  EXPECT_TRUE(isSeen());
  QEvent leave(QEvent::Leave);
  QCoreApplication::sendEvent(&row(), &leave);
  EXPECT_FALSE(isSeen());
  pencil->setFocus(Qt::TabFocusReason);
  EXPECT_TRUE(isSeen());
  pencil->clearFocus();
  EXPECT_FALSE(isSeen());
  // What goes under the pointer is not told that the pointer left.
  QCoreApplication::sendEvent(&row(), &enter);
  EXPECT_TRUE(isSeen());
  island_.view->hide();
  island_.view->show();
  EXPECT_FALSE(isSeen());
}

// A name that only just fits would be cut for a button that nobody sees.
TEST_F(MetaRowTest, theNameHasTheWholeRowUntilThePencilComes) {
  auto* name = row().findChild<QLabel*>();
  const auto* pencil = island_.button("Rename");
  const auto rest = [this] { island_.platform.time.advanceBy(Seconds(0.3)); };
  rest();
  EXPECT_EQ(name->geometry(), row().rect().adjusted(4, 0, -4, 0));
  QEnterEvent enter({5, 5}, {5, 5}, {5, 5});
  QCoreApplication::sendEvent(&row(), &enter);
  EXPECT_EQ(name->geometry().right() + 1, pencil->x() - 4) << "from the first moment on";
  rest();
  QEvent leave(QEvent::Leave);
  QCoreApplication::sendEvent(&row(), &leave);
  island_.platform.time.advanceBy(Seconds(0.05));
  EXPECT_EQ(name->geometry().right() + 1, pencil->x() - 4) << "until nothing is left of it";
  rest();
  EXPECT_EQ(name->width(), row().width() - 8);
  askForRename();
  press(Qt::Key_Escape);
  EXPECT_EQ(name->width(), row().width() - 8);
}

// As if the name went on in the extension.
TEST_F(MetaRowTest, aLongNameFadesWhereItIsCut) {
  island_.compositor.isThere().set(false);
  island_.ingest("Screenshot from 2026-11-15 21-04-33 of something.png");
  island_.settle();
  askForRename();
  const QPoint corner = field().mapTo(island_.view.get(), QPoint());
  // How far the selection is from what is beside the text, in the upper row of the field that no letter reaches.
  const auto strengthAt = [&](int x) {
    (void)island_.picture();  // what has been scrolled is known once it has been painted
    const QImage picture = island_.picture();
    const int top = corner.y() + (field().height() - field().fontMetrics().height()) / 2 + 1;
    return picture.pixelColor(corner.x() - 3, top).lightness() - picture.pixelColor(corner.x() + x, top).lightness();
  };
  const int end = field().width();
  const int full = strengthAt(end / 2);
  ASSERT_GT(full, 60);
  EXPECT_GT(strengthAt(4), full - 8);
  EXPECT_LT(strengthAt(end - 2), full / 4);
  press(Qt::Key_End);
  press(Qt::Key_A, {}, Qt::ControlModifier);  // everything, with the cursor at the end
  EXPECT_LT(strengthAt(1), full / 4);
  EXPECT_GT(strengthAt(end - 8), full - 8);
  type("short");
  press(Qt::Key_A, {}, Qt::ControlModifier);
  EXPECT_GT(strengthAt(4), full - 8);
}

TEST_F(MetaRowTest, aNameThatIsNoTextSurvivesAnUnchangedDraft) {
  island_.ingest("caf\xe9.png");
  island_.settle();
  askForRename();
  EXPECT_EQ(field().text(), QString::fromUtf8("caf\uFFFD"));
  press(Qt::Key_Return);
  EXPECT_FALSE(field().isVisible());
  EXPECT_TRUE(exists("caf\xe9.png"));
  askForRename();
  press(Qt::Key_End);
  press(Qt::Key_Backspace);
  type("é");
  press(Qt::Key_Return);
  EXPECT_TRUE(exists("caf\u00e9.png"));
}

// Backspace on the buttons would otherwise mean the screenshot itself.
TEST_F(MetaRowTest, theButtonsBesideTheFieldKeepAllKeysToThemselves) {
  askForRename();
  QAbstractButton* confirm = island_.button("Save filename");
  confirm->setFocus(Qt::TabFocusReason);
  QKeyEvent question(QEvent::ShortcutOverride, Qt::Key_Backspace, Qt::NoModifier);
  question.ignore();
  QCoreApplication::sendEvent(confirm, &question);
  EXPECT_TRUE(question.isAccepted());
  QKeyEvent backspace(QEvent::KeyPress, Qt::Key_Backspace, Qt::NoModifier);
  QCoreApplication::sendEvent(confirm, &backspace);
  EXPECT_TRUE(backspace.isAccepted());
  press(Qt::Key_Escape);
  EXPECT_FALSE(field().isVisible());
}

TEST_F(MetaRowTest, standsWithinItsRowInEverySize) {
  for (const IslandSize size :
       {IslandSize::extraSmall, IslandSize::small, IslandSize::medium, IslandSize::large, IslandSize::xLarge}) {
    island_.setSize(size);
    island_.settle();
    askForRename();
    QWidget* editor = field().parentWidget();
    EXPECT_EQ(editor->geometry(), row().rect());
    for (const QWidget* child : editor->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
      EXPECT_TRUE(editor->rect().contains(child->geometry())) << child->accessibleName().toStdString();
    }
    EXPECT_GT(field().width(), 90);
    press(Qt::Key_Escape);
  }
}

}  // namespace
}  // namespace quenlio
