// Drags out of a panel to another program, with the real pointer.
#include <QtCore/QTimer>
#include <QtGui/QCursor>
#include <QtGui/QDrag>
#include <QtGui/QIcon>
#include <QtGui/QMouseEvent>
#include <QtWidgets/QApplication>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <thread>

#include "core/library/DragDropProvider.h"

#include "desktop/linux/session/DragPicture.h"
#include "desktop/linux/session/MainQueue.h"
#include "desktop/linux/session/QtApplication.h"
#include "desktop/linux/session/QtDraggingSessions.h"
#include "desktop/linux/session/QtScreens.h"
#include "desktop/linux/session/QtWindows.h"
#include "desktop/linux/session/X11Windows.h"
#include "desktop/linux/system/FileURI.h"
#include "desktop/linux/system/LinuxClock.h"
#include "desktop/linux/system/LinuxFileManager.h"
#include "desktop/render/QtImage.h"

#include "tests/desktop/session/Hand.h"
#include "tests/desktop/session/OtherPrograms.h"
#include "tests/desktop/session/QtPanelTest.h"
#include "tests/desktop/system/TemporaryFolder.h"
#include "tests/fakes/FakeDesktop.h"

namespace quenlio {
namespace {

constexpr QRect kTarget(100, 100, 300, 200);

// Begins a drag of these files once the pointer has moved with the button down.
class DraggedView final : public QWidget {
 public:
  std::function<void()> begin;

 private:
  void mousePressEvent(QMouseEvent* /*event*/) override {}
  void mouseMoveEvent(QMouseEvent* /*event*/) override {
    if (begin) {
      std::exchange(begin, nullptr)();
    }
  }
};

class QtDraggingSessionsTest : public QtPanelTest {
 protected:
  void SetUp() override {
    QtPanelTest::SetUp();
    auto view = std::make_unique<DraggedView>();
    dragged_ = view.get();
    panel_.setContentView(std::move(view));
    ASSERT_TRUE(show());
  }

  [[nodiscard]] DraggingRequest request(const std::vector<FileURL>& files) const {
    DraggingRequest result;
    result.window = panel_.window().winId();
    result.event = windows_.currentEvent().value_or(PointerEvent{});
    result.location = result.event.locationInWindow;
    for (const FileURL& file : files) {
      const Point<WindowContent> place = result.event.locationInWindow;
      result.items.push_back({.fileURL = file, .image = nullptr, .frame = {{place.x - 32, place.y - 32}, {64, 64}}});
    }
    return result;
  }
  void begin(const std::vector<FileURL>& files) {
    const std::size_t endedBefore = ended_.size();
    begun_.push_back(
        sessions_.beginDraggingSession(request(files), [this](DraggingSessionID over) { ended_.push_back(over); }));
    EXPECT_EQ(ended_.size(), endedBefore) << "not from within the call";
  }
  // Once the pointer moves on the panel with the button down.
  void beginOnMove(const std::vector<FileURL>& files) {
    begun_.clear();
    ended_.clear();
    dragged_->begin = [this, files] { begin(files); };
  }
  // The hand's: presses on the panel and moves until the drag runs.
  void startDragging() {
    Hand::moveTo(kLeft + 100, kTop + 100);
    Hand::press();
    Hand::moveTo(kLeft + 104, kTop + 104);
    Hand::moveTo(kLeft + 120, kTop + 110);
    EXPECT_TRUE(Hand::waitsFor([] { return isDragging(); }));
  }
  // The window of the picture under the pointer.
  static const QWindow* dragged() {
    for (const QWindow* window : QGuiApplication::allWindows()) {
      if (window->inherits("QShapedPixmapWindow") && window->isVisible()) {
        return window;
      }
    }
    return nullptr;
  }
  static bool isDragging() { return dragged() != nullptr; }
  [[nodiscard]] bool isOver() const { return !begun_.empty() && ended_ == begun_ && !isDragging(); }
  void waitForEnd() const {
    EXPECT_TRUE(Hand::waitsFor([this] { return isOver(); }));
  }

  QtWindows windows_;
  QtDraggingSessions sessions_{compositor_};
  DraggedView* dragged_ = nullptr;
  std::vector<DraggingSessionID> begun_;
  std::vector<DraggingSessionID> ended_;
};

// Another program's window, and what it has said so far.
class Target {
 public:
  Target()
      : partner_({QStringLiteral("--accept-drops"), QString::number(kTarget.x()), QString::number(kTarget.y()),
                  QString::number(kTarget.width()), QString::number(kTarget.height())}) {
    EXPECT_EQ(partner_.nextLine(), "ready");
  }
  // The hand's: until both sides know that something can be dropped here. A second move is told only after the answer
  // to the first one has come back.
  void moveOver() {
    for (const int distance : {10, 5, 0}) {
      int before = 0;
      EXPECT_TRUE(Hand::sees([&] {
        before = overs();
        return true;
      }));
      Hand::moveTo(kTarget.center().x() - distance, kTarget.center().y() - distance);
      EXPECT_TRUE(Hand::waitsFor([&] { return overs() > before; }));
    }
  }
  [[nodiscard]] std::optional<QByteArray> nextDrop() {
    const bool isThere = waitUntil([this] {
      (void)overs();
      return !drops_.empty();
    });
    return isThere ? std::optional(drops_.front()) : std::nullopt;
  }
  [[nodiscard]] QProcess& process() { return partner_.process(); }

 private:
  int overs() {
    while (process().canReadLine()) {
      const QByteArray line = process().readLine().chopped(1);
      if (line == "over") {
        ++overs_;
      } else {
        drops_.push_back(line);
      }
    }
    return overs_;
  }

  Partner partner_;
  int overs_ = 0;
  std::vector<QByteArray> drops_;
};

std::vector<FileURL> files(int count) {
  std::vector<FileURL> result;
  for (int i = 0; i < count; ++i) {
    result.emplace_back("/shots/Screenshot " + std::to_string(i) + ".png");
  }
  return result;
}

// What the other program says of a drop: a copy of these files; and to those who want text, their paths.
void expectCopy(Target& target, const std::vector<FileURL>& dropped) {
  QByteArray expected = "copy";
  for (const FileURL& file : dropped) {
    expected += " " + QByteArray::fromStdString(fileURI(file));
  }
  expected += " | " + QByteArray::fromStdString(pathLines(dropped)).toPercentEncoding();
  EXPECT_EQ(target.nextDrop().value_or("nothing").toStdString(), expected.toStdString());
}

class DropOf : public QtDraggingSessionsTest, public testing::WithParamInterface<std::vector<FileURL>> {};

TEST_P(DropOf, arrivesWithAnotherProgramAsACopyOfEachFile) {
  Target target;
  beginOnMove(GetParam());
  Hand::perform([this, &target] {
    startDragging();
    target.moveOver();
    Hand::release();
    waitForEnd();
  });
  expectCopy(target, GetParam());
}

INSTANTIATE_TEST_SUITE_P(Files, DropOf,
                         testing::Values(files(1), files(7),
                                         std::vector<FileURL>{FileURL("/shots/a b\n\xff\xfe%.png")}));

class DropWith : public QtDraggingSessionsTest, public testing::WithParamInterface<const char*> {};

TEST_P(DropWith, heldKeysIsACopyAllTheSame) {
  Target target;
  beginOnMove(files(1));
  Hand::perform([this, &target] {
    startDragging();
    Hand::xdotool({QStringLiteral("keydown"), QString::fromLatin1(GetParam())});
    target.moveOver();
    Hand::release();
    Hand::xdotool({QStringLiteral("keyup"), QString::fromLatin1(GetParam())});
    waitForEnd();
  });
  expectCopy(target, files(1));
}

INSTANTIATE_TEST_SUITE_P(Keys, DropWith, testing::Values("shift", "ctrl", "alt"));

// A drag that begins without an event that tells where: from what the mouse and the windows are like.
TEST_F(QtDraggingSessionsTest, beginWithAButtonDownAndNoEvent) {
  const TemporaryFolder folder;
  writeFile(folder / "a.png", "content");
  OwnFiles own;
  const LinuxClock clock;
  const FakeDirectories directories;
  const LinuxFileManager files(own, clock, directories);
  const QtScreens screens;
  MainQueue scheduler;
  std::unique_ptr<QtWindows> windows;
  std::unique_ptr<DragDropProvider> provider;
  bool isEnded = false;
  Target target;
  Hand::perform([&] {
    Hand::moveTo(kLeft + 100, kTop + 100);
    Hand::press();
    Hand::has([&] {
      windows = std::make_unique<QtWindows>();  // which has not seen the press
      EXPECT_EQ(windows->currentEvent(), std::nullopt);
      provider = std::make_unique<DragDropProvider>(DragDropProvider::Dependencies{
          .files = files, .windows = *windows, .screens = screens, .sessions = sessions_, .scheduler = scheduler});
      ScreenshotItem item;
      item.fileURL = folder / "a.png";
      EXPECT_TRUE(provider->beginDraggingSession({item}, [&isEnded] { isEnded = true; }));
    });
    EXPECT_TRUE(Hand::waitsFor([] { return isDragging(); }));
    target.moveOver();
    Hand::release();
    EXPECT_TRUE(Hand::waitsFor([&isEnded] { return isEnded; }));
  });
  expectCopy(target, {folder / "a.png"});
}

TEST_F(QtDraggingSessionsTest, showThePictureUnderThePointerAlsoWhenTheEventWasInAnotherWindow) {
  dragged_->begin = [this] {
    DraggingRequest drag = request(files(1));
    drag.event.locationInWindow.x -= 600;
    begun_.push_back(sessions_.beginDraggingSession(drag, [this](DraggingSessionID over) { ended_.push_back(over); }));
  };
  Hand::perform([this] {
    startDragging();
    EXPECT_TRUE(Hand::waitsFor([] { return dragged() && dragged()->geometry().contains(QCursor::pos()); }));
    Hand::release();
    waitForEnd();
  });
}

TEST_F(QtDraggingSessionsTest, allowWhatIsAllowedAndNothingElse) {
  for (const auto& [allowed, actions] : {std::pair(kDragOperationCopy, Qt::CopyAction), {0U, Qt::IgnoreAction}}) {
    dragged_->begin = [this, allowed = allowed] {
      DraggingRequest drag = request(files(1));
      drag.allowedOperations = allowed;
      begun_ = {sessions_.beginDraggingSession(drag, [this](DraggingSessionID over) { ended_ = {over}; })};
    };
    Hand::perform([this, actions = actions] {
      startDragging();
      EXPECT_TRUE(Hand::sees([&] {
        const auto* drag = panel_.window().findChild<QDrag*>();
        return drag != nullptr && drag->supportedActions() == Qt::DropActions(actions);
      }));
      Hand::release();
      waitForEnd();
    });
  }
}

TEST_F(QtDraggingSessionsTest, endOnEscapeAndDropNothing) {
  Target target;
  beginOnMove(files(1));
  Hand::perform([this, &target] {
    startDragging();
    target.moveOver();
    Hand::strike("Escape");
    waitForEnd();
    Hand::release();
  });
  // What is heard next is the next drop.
  beginOnMove(files(2));
  Hand::perform([this, &target] {
    startDragging();
    target.moveOver();
    Hand::release();
    waitForEnd();
  });
  expectCopy(target, files(2));
}

TEST_F(QtDraggingSessionsTest, endOnEscapeAlsoWhereAnotherProgramHasTheKeyboard) {
  OtherProgram other;
  ASSERT_TRUE(other.showAndTakeKeyboard({100, 500, 300, 200}));
  beginOnMove(files(1));
  Hand::perform([this, &other] {
    startDragging();
    EXPECT_TRUE(Hand::sees([&other] {
      x11::giveKeyboard(other.window());
      return waitUntil([&other] { return focusedWindow() == other.window(); });
    }));
    Hand::moveOver({100, 500, 300, 200});
    Hand::strike("Escape");
    waitForEnd();
    Hand::release();
  });
}

TEST_F(QtDraggingSessionsTest, endOverNothing) {
  beginOnMove(files(1));
  Hand::perform([this] {
    startDragging();
    Hand::moveOver({600, 300, 100, 100});
    Hand::release();
    waitForEnd();
  });
}

TEST_F(QtDraggingSessionsTest, endWhereTheProgramUnderThePointerIsGone) {
  Target target;
  beginOnMove(files(1));
  Hand::perform([this, &target] {
    startDragging();
    target.moveOver();
    EXPECT_TRUE(Hand::sees([&target] {
      target.process().kill();
      return true;
    }));
    EXPECT_TRUE(Hand::waitsFor([&target] { return target.process().state() == QProcess::NotRunning; }));
    Hand::moveTo(kTarget.center().x() + 5, kTarget.center().y());
    Hand::release();
    waitForEnd();
  });
}

TEST_F(QtDraggingSessionsTest, endWithTheWindow) {
  beginOnMove(files(1));
  Hand::perform([this] {
    startDragging();
    Hand::moveTo(600, 300);
    EXPECT_TRUE(Hand::sees([this] {
      panel_.orderOut();
      return true;
    }));
    waitForEnd();
    Hand::release();
  });
}

TEST_F(QtDraggingSessionsTest, endWithTheProgram) {
  beginOnMove(files(1));
  QtApplication application(intent_);
  std::thread hand([this, &application] {
    startDragging();
    QMetaObject::invokeMethod(
        QCoreApplication::instance(), [&application] { application.terminate(); }, Qt::QueuedConnection);
  });
  EXPECT_EQ(QCoreApplication::exec(), 0);
  hand.join();
  EXPECT_EQ(ended_, begun_);
  EXPECT_FALSE(isDragging());
  Hand::release();
}

TEST_F(QtDraggingSessionsTest, letTheRestOfTheProgramGoOn) {
  int ticks = 0;
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, &timer, [&ticks] { ++ticks; });
  timer.start(1);
  beginOnMove(files(1));
  Hand::perform([this, &ticks] {
    startDragging();
    int before = 0;
    EXPECT_TRUE(Hand::sees([&] {
      before = ticks;
      return true;
    }));
    EXPECT_TRUE(Hand::waitsFor([&] { return ticks > before + 20; }));
    EXPECT_TRUE(Hand::sees([] { return isDragging(); }));
    Hand::release();
    waitForEnd();
  });
}

TEST_F(QtDraggingSessionsTest, areOverAtOnceWithNoButtonDown) {
  begin(files(1));
  EXPECT_TRUE(waitUntil([this] { return isOver(); }));
}

TEST_F(QtDraggingSessionsTest, areOverAtOnceWhileAnotherRuns) {
  beginOnMove(files(1));
  Hand::perform([this] {
    startDragging();
    EXPECT_TRUE(Hand::sees([this] {
      begin(files(2));
      return true;
    }));
    EXPECT_TRUE(Hand::waitsFor([this] { return ended_.size() == 1; }));
    EXPECT_TRUE(Hand::sees([this] { return ended_.front() == begun_.back() && isDragging(); }));
    Hand::release();
    EXPECT_TRUE(Hand::waitsFor([this] { return ended_.size() == 2; }));
  });
}

TEST_F(QtDraggingSessionsTest, leaveNoButtonDownBehind) {
  beginOnMove(files(1));
  Hand::perform([this] {
    startDragging();
    EXPECT_TRUE(Hand::sees([this] { return windows_.currentEvent().has_value(); }));
    Hand::release();
    waitForEnd();
    EXPECT_TRUE(Hand::waitsFor([this] { return !windows_.currentEvent(); }));
  });
}

// The picture under the pointer.

ImageRef plain(QSize size, QColor color, const QRectF& picture) {
  QImage image(size, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter(&image).fillRect(picture, color);
  const Size points{static_cast<double>(size.width()), static_cast<double>(size.height())};
  return std::make_shared<QtImage>(image, points, picture, points);
}

DraggingItem item(ImageRef image, double offset) {
  return {.fileURL = FileURL("/a.png"), .image = std::move(image), .frame = {{68 + offset, 18 - offset}, {64, 64}}};
}

TEST(DragPicture, showsThePictureAroundThePointerAndFillsTheCardWithIt) {
  for (const double scale : {1.0, 2.0}) {
    const auto drag = dragPicture({item(plain({160, 90}, Qt::blue, {40, 0, 80, 90}), 0)}, {100, 50}, {.scale = scale});
    const QImage image = drag.pixmap.toImage();
    const auto at = [&](int dx, int dy) { return image.pixelColor((drag.hotSpot + QPoint(dx, dy)) * scale); };
    for (const QPoint corner : {QPoint(-27, -27), QPoint(27, -27), QPoint(-27, 27), QPoint(27, 27), QPoint(0, 0)}) {
      EXPECT_EQ(at(corner.x(), corner.y()), QColor(Qt::blue)) << scale;
    }
    EXPECT_GT(at(0, 34).alpha(), 0) << "a shadow below";
    EXPECT_LT(at(0, 34).alpha(), 255);
    EXPECT_DOUBLE_EQ(drag.pixmap.devicePixelRatio(), scale);
  }
}

TEST(DragPicture, fansTheCardsWithTheFirstOnTop) {
  std::vector<DraggingItem> items;
  const QColor colors[] = {Qt::red, Qt::green, Qt::blue};
  for (int i = 0; i < 3; ++i) {
    items.push_back(item(plain({64, 64}, colors[i], {0, 0, 64, 64}), 4 * i));
  }
  const auto drag = dragPicture(items, {100, 50}, {});
  const QImage image = drag.pixmap.toImage();
  const auto at = [&](int dx, int dy) { return image.pixelColor(drag.hotSpot + QPoint(dx, dy)); };
  EXPECT_EQ(at(0, 0), QColor(Qt::red));
  // To the right and downward, in the shadow of the card above.
  EXPECT_EQ(at(20, 34).hslHue(), QColor(Qt::green).hslHue());
  EXPECT_EQ(at(20, 38).hslHue(), QColor(Qt::blue).hslHue());
}

TEST(DragPicture, ofSevenShowsFiveCardsAndTheNumberOfAll) {
  std::vector<DraggingItem> items;
  const QColor colors[] = {Qt::red, Qt::green, Qt::blue, Qt::cyan, Qt::magenta, Qt::yellow, Qt::gray};
  for (int i = 0; i < 7; ++i) {
    items.push_back(item(plain({64, 64}, colors[i], {0, 0, 64, 64}), std::min(i, 4) * 4));
  }
  const auto drag = dragPicture(items, {100, 50}, {.hasShadow = false});
  const QImage image = drag.pixmap.toImage();
  const auto at = [&](int dx, int dy) { return image.pixelColor(drag.hotSpot + QPoint(dx, dy)); };
  EXPECT_EQ(at(0, 0), colors[0]);
  // The edges of the cards below, each four points further, and of the sixth and the seventh nothing.
  for (int i = 1; i < 5; ++i) {
    EXPECT_EQ(at(20, 30 + 4 * i), colors[i]) << i;
  }
  EXPECT_EQ(image.size(), QSize(1 + 64 + 16 + 10, 10 + 64 + 16 + 1));
  EXPECT_EQ(at(42, -31), QColor(0xd93025)) << "the number's badge, at the corner";
}

// A theme of icons of one colour each.
class IconTheme {
 public:
  explicit IconTheme(const std::vector<std::pair<std::string, QColor>>& icons) {
    const std::string sizes = "[Icon Theme]\nName=plain\nDirectories=48\n[48]\nSize=48\nType=Threshold\n";
    std::filesystem::create_directories((folder_ / "plain/48").path());
    writeFile(folder_ / "plain/index.theme", sizes);
    for (const auto& [name, color] : icons) {
      QImage icon(48, 48, QImage::Format_RGB32);
      icon.fill(color);
      check(icon.save(QString::fromStdString((folder_ / "plain/48" / (name + ".png")).path())), name);
    }
    QIcon::setThemeSearchPaths({QString::fromStdString(folder_.url().path())});
    QIcon::setThemeName(QStringLiteral("plain"));
  }
  ~IconTheme() {
    QIcon::setThemeSearchPaths(paths_);
    QIcon::setThemeName(name_);
  }
  IconTheme(const IconTheme&) = delete;
  IconTheme& operator=(const IconTheme&) = delete;

 private:
  TemporaryFolder folder_;
  const QStringList paths_ = QIcon::themeSearchPaths();
  const QString name_ = QIcon::themeName();
};

TEST(DragPicture, showsTheIconOfTheFilesTypeWithoutAPicture) {
  const IconTheme theme({{"application-pdf", Qt::red}, {"image-x-generic", Qt::blue}});
  for (const auto& [file, color] : {std::pair("/a.pdf", Qt::red), std::pair("/a.png", Qt::blue)}) {
    DraggingItem dragged = item(nullptr, 0);
    dragged.fileURL = FileURL(file);
    const auto drag = dragPicture({dragged}, {100, 50}, {});
    EXPECT_EQ(drag.pixmap.toImage().pixelColor(drag.hotSpot), QColor(color)) << file;
  }
}

TEST(DragPicture, hasNoHalfClearPixelsAroundItWithoutACompositor) {
  const auto drag = dragPicture({item(plain({64, 64}, Qt::blue, {0, 0, 64, 64}), 0)}, {100, 50}, {.hasShadow = false});
  const QImage image = drag.pixmap.toImage();
  EXPECT_EQ(image.size(), QSize(66, 66));
  for (int along = 10; along < 56; ++along) {
    EXPECT_LT(image.pixelColor(along, 65).alpha(), 32);
    EXPECT_EQ(image.pixelColor(along, 62), QColor(Qt::blue));
  }
}

TEST(DragPicture, showsSomethingWithoutAPicture) {
  const auto drag = dragPicture({item(nullptr, 0)}, {100, 50}, {});
  EXPECT_EQ(drag.pixmap.toImage().pixelColor(drag.hotSpot).alpha(), 255);
}

}  // namespace
}  // namespace quenlio
