// Copies that are saved where a dialog says, under any names and with other programs about.
#include <QtCore/QFile>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QApplication>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMessageBox>
#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>

#include "desktop/linux/session/CopySaver.h"
#include "desktop/linux/session/MainQueue.h"
#include "desktop/linux/system/LinuxClock.h"
#include "desktop/linux/system/LinuxFileManager.h"

#include "tests/desktop/session/Hand.h"
#include "tests/desktop/system/TemporaryFolder.h"
#include "tests/fakes/FakeDesktop.h"
#include "tests/harness/ContestedFiles.h"

namespace quenlio {
namespace {

class CopySaverTest : public testing::Test {
 protected:
  CopySaverTest() {
    for (const char* name : {"shots", "to"}) {
      std::filesystem::create_directories((folder_ / name).path());
    }
    for (const FileURL& file : {first_, second_, third_}) {
      writeFile(file, "the picture of " + file.path());
    }
  }

  // What a test that failed has left would take the keyboard from the next one.
  ~CopySaverTest() override {
    for (QMessageBox* box : shown<QMessageBox>()) {
      box->close();
    }
  }

  // All of the kind that are up.
  template <class Dialog>
  static std::vector<Dialog*> shown() {
    std::vector<Dialog*> found;
    for (QWidget* window : QApplication::topLevelWidgets()) {
      auto* candidate = qobject_cast<Dialog*>(window);
      if (candidate != nullptr && candidate->isVisible()) {
        found.push_back(candidate);
      }
    }
    return found;
  }
  // The dialog that has just opened, once it listens to what is typed.
  static QFileDialog* opened() {
    const auto dialogs = shown<QFileDialog>();
    const auto listens = [](const QFileDialog* dialog) { return nameOf(*dialog)->hasFocus(); };
    return waitUntil([&] { return std::ranges::any_of(dialogs, listens); }) ? *std::ranges::find_if(dialogs, listens)
                                                                            : nullptr;
  }
  static QLineEdit* nameOf(const QFileDialog& dialog) {
    return dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
  }
  static void accept(QFileDialog& dialog, const FileURL& place) {
    nameOf(dialog)->setText(QFile::decodeName(QByteArray::fromStdString(place.path())));
    // accept() is for those who press the button.
    QMetaObject::invokeMethod(&dialog, "accept", Qt::QueuedConnection);
  }
  void save(const std::vector<FileURL>& files, const FileURL& place) {
    saver_.save(files);
    QFileDialog* dialog = opened();
    ASSERT_NE(dialog, nullptr);
    accept(*dialog, place);
  }
  // What is told of the copies that could not be made; it is closed by that.
  static std::string told() {
    if (!waitUntil([] { return !shown<QMessageBox>().empty(); })) {
      return "(nothing)";
    }
    const auto boxes = shown<QMessageBox>();
    const std::string text = boxes.size() == 1 ? boxes.front()->text().toStdString() : "(more than once)";
    for (QMessageBox* box : boxes) {
      box->close();
    }
    return text;
  }
  [[nodiscard]] static bool isSaved(const FileURL& from, const FileURL& to) {
    return waitUntil([&] { return exists(to) && contents(to) == contents(from); });
  }

  TemporaryFolder folder_;
  const FileURL first_ = folder_ / "shots/one.png";
  const FileURL second_ = folder_ / "shots/two.png";
  const FileURL third_ = folder_ / "shots/th\xffree.png";
  FakeDirectories directories_;
  OwnFiles own_;
  LinuxClock clock_;
  LinuxFileManager files_{own_, clock_, directories_};
  std::function<void(const FileURL& to)> before_ = [](const FileURL&) {};  // on another thread
  ContestedFiles contested_{files_, [this](const FileURL& to) { before_(to); }};
  MainQueue scheduler_;
  CopySaver saver_{contested_, scheduler_};
};

TEST_F(CopySaverTest, aNameThatIsNoTextKeepsItsBytesWhenTheUserLeavesIt) {
  save({third_}, folder_ / "to/th\xffree.png");
  EXPECT_TRUE(isSaved(third_, folder_ / "to/th\xffree.png"));
  EXPECT_EQ(entryCount(folder_ / "to"), 1U);
}

TEST_F(CopySaverTest, aFreeNameIsProposedInTheFilesFolder) {
  writeFile(folder_ / "shots/one 2.png", "another");
  saver_.save({first_});
  QFileDialog* dialog = opened();
  ASSERT_NE(dialog, nullptr);
  ASSERT_EQ(nameOf(*dialog)->text().toStdString(), "one 3.png");
  QMetaObject::invokeMethod(dialog, "accept", Qt::QueuedConnection);
  EXPECT_TRUE(isSaved(first_, folder_ / "shots/one 3.png"));
  EXPECT_EQ(contents(folder_ / "shots/one 2.png"), "another");
}

TEST_F(CopySaverTest, theProposedNameKeepsItsBytesWhenItIsNoText) {
  saver_.save({third_});
  QFileDialog* dialog = opened();
  ASSERT_NE(dialog, nullptr);
  ASSERT_EQ(nameOf(*dialog)->text().toStdString(),
            "th\xef\xbf\xbd"
            "ree 2.png");
  QMetaObject::invokeMethod(dialog, "accept", Qt::QueuedConnection);
  EXPECT_TRUE(isSaved(third_, folder_ / "shots/th\xffree 2.png"));
}

TEST_F(CopySaverTest, aNameWithQuotesIsNoListOfNames) {
  const FileURL quoted = folder_ / "shots/a \"b\" c.png";
  writeFile(quoted, "the picture");
  saver_.save({quoted});
  QFileDialog* dialog = opened();
  ASSERT_NE(dialog, nullptr);
  ASSERT_EQ(nameOf(*dialog)->text().toStdString(), "a 'b' c.png");
  QMetaObject::invokeMethod(dialog, "accept", Qt::QueuedConnection);
  EXPECT_TRUE(isSaved(quoted, folder_ / "shots/a 'b' c.png"));
}

TEST_F(CopySaverTest, aFolderWhoseNameIsNoTextIsTheOneThatIsThere) {
  const FileURL folder = folder_ / "t\xc3o";
  std::filesystem::create_directory(folder.path());
  save({first_}, folder / "copy.png");
  EXPECT_TRUE(isSaved(first_, folder / "copy.png"));
}

TEST_F(CopySaverTest, severalCopiesKeepTheBytesOfTheirNames) {
  save({first_, third_}, folder_ / "to");
  EXPECT_TRUE(isSaved(first_, folder_ / "to/one.png"));
  EXPECT_TRUE(isSaved(third_, folder_ / "to/th\xffree.png"));
}

TEST_F(CopySaverTest, aFileThatAppearsAfterTheDialogIsNotReplaced) {
  before_ = [](const FileURL& to) { writeFile(to, "somebody else's"); };
  save({first_}, folder_ / "to/copy.png");
  EXPECT_EQ(told(), "The file “one.png” could not be copied: File exists.");
  EXPECT_EQ(contents(folder_ / "to/copy.png"), "somebody else's");
  EXPECT_EQ(entryCount(folder_ / "to"), 1U);
}

TEST_F(CopySaverTest, aLinkThatLeadsNowhereIsNotReplaced) {
  const std::string link = (folder_ / "to/copy.png").path();
  ASSERT_EQ(::symlink("nowhere", link.c_str()), 0);
  save({first_}, folder_ / "to/copy.png");
  EXPECT_EQ(told(), "The file “one.png” could not be copied: File exists.");
  EXPECT_EQ(std::filesystem::read_symlink(link), "nowhere");
}

// In these the dialog asks about what is there, and something else is there when the answer comes.
class Replaced : public CopySaverTest {
 protected:
  const FileURL copy_ = folder_ / "to/copy.png";

  void putTheirs() const {
    writeFile(folder_ / "theirs", "somebody else's");
    check(::rename((folder_ / "theirs").path().c_str(), copy_.path().c_str()) == 0, "rename");
  }
  void agreeToReplace(const std::function<void()>& duringQuestion) {
    writeFile(copy_, "what was there");
    saver_.save({first_});
    QFileDialog* dialog = opened();
    ASSERT_NE(dialog, nullptr);
    Hand::perform([&] {
      Hand::has([&] { accept(*dialog, copy_); });
      ASSERT_TRUE(Hand::waitsFor([] { return !shown<QMessageBox>().empty(); }));
      duringQuestion();
      Hand::has([] {
        QMetaObject::invokeMethod(shown<QMessageBox>().front()->button(QMessageBox::Yes), "click",
                                  Qt::QueuedConnection);
      });
      EXPECT_TRUE(Hand::waitsFor([] { return shown<QFileDialog>().empty(); }));
    });
  }
};

TEST_F(Replaced, isTheFileThatTheDialogHasAskedAbout) {
  agreeToReplace([] {});
  EXPECT_TRUE(isSaved(first_, copy_));
  EXPECT_TRUE(waitUntil([this] { return entryCount(folder_ / "to") == 1U; }));
}

TEST_F(Replaced, isNoneThatHasComeInItsPlaceDuringTheQuestion) {
  agreeToReplace([this] { putTheirs(); });
  EXPECT_EQ(told(), "The file “one.png” could not be copied: File exists.");
  EXPECT_EQ(contents(copy_), "somebody else's");
  EXPECT_EQ(entryCount(folder_ / "to"), 1U);
}

TEST_F(Replaced, isNoneThatHasComeInItsPlaceAfterTheAnswer) {
  before_ = [this](const FileURL& to) {
    EXPECT_NE(to, copy_);
    putTheirs();
  };
  agreeToReplace([] {});
  EXPECT_EQ(told(), "The file “copy.png” could not be replaced.");
  EXPECT_EQ(contents(copy_), "somebody else's");
  EXPECT_EQ(entryCount(folder_ / "to"), 1U);
}

TEST_F(CopySaverTest, theOthersAreSavedWhenSomeFailWhichIsToldOnce) {
  ASSERT_EQ(::unlink(first_.path().c_str()), 0);
  ASSERT_EQ(::unlink(second_.path().c_str()), 0);
  save({first_, second_, third_}, folder_ / "to");
  EXPECT_TRUE(isSaved(third_, folder_ / "to/th\xffree.png"));
  EXPECT_EQ(told(),
            "The file “one.png” could not be copied: No such file or directory.\n"
            "The file “two.png” could not be copied: No such file or directory.");
}

TEST_F(CopySaverTest, aNameThatIsTakenMeanwhileIsPassedOver) {
  before_ = [this](const FileURL& to) {
    if (to == folder_ / "to/one.png") {
      writeFile(to, "somebody else's");
    }
  };
  save({first_, second_}, folder_ / "to");
  EXPECT_TRUE(isSaved(first_, folder_ / "to/one 2.png"));
  EXPECT_TRUE(isSaved(second_, folder_ / "to/two.png"));
  EXPECT_EQ(contents(folder_ / "to/one.png"), "somebody else's");
}

TEST_F(CopySaverTest, aSecondDialogLeavesTheFirst) {
  saver_.save({first_});
  QFileDialog* first = opened();
  saver_.save({second_});
  ASSERT_EQ(shown<QFileDialog>().size(), 2U);
  ASSERT_NE(first, nullptr);
  accept(*first, folder_ / "to/a.png");
  EXPECT_TRUE(isSaved(first_, folder_ / "to/a.png"));
  ASSERT_EQ(shown<QFileDialog>().size(), 1U);
  QFileDialog* second = opened();
  ASSERT_NE(second, nullptr);
  accept(*second, folder_ / "to/b.png");
  EXPECT_TRUE(isSaved(second_, folder_ / "to/b.png"));
  EXPECT_TRUE(shown<QFileDialog>().empty());
}

}  // namespace
}  // namespace quenlio
