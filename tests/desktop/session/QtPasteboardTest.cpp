// The clipboard as other programs find it.
#include <QtCore/QBuffer>
#include <QtCore/QElapsedTimer>
#include <QtGui/QClipboard>
#include <QtGui/QGuiApplication>
#include <QtGui/QImage>
#include <future>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "desktop/linux/session/ClipboardManager.h"
#include "desktop/linux/session/MainQueue.h"
#include "desktop/linux/session/QtPasteboard.h"
#include "desktop/linux/session/X11.h"
#include "desktop/render/FileImages.h"

#include "tests/desktop/session/Desk.h"
#include "tests/desktop/session/OtherPrograms.h"
#include "tests/desktop/system/TemporaryFolder.h"

namespace quenlio {
namespace {

using testing::Contains;
using testing::Not;

QImage noise(QSize size) {
  QImage image(size, QImage::Format_RGB32);
  quint32 seed = 1;
  for (int y = 0; y < size.height(); ++y) {
    for (int x = 0; x < size.width(); ++x) {
      seed = seed * 1664525 + 1013904223;
      image.setPixel(x, y, 0xff000000U | seed >> 8U);
    }
  }
  return image;
}

// A clipboard manager that says it is one and never answers, nor reads anything.
class DeafManager {
 public:
  DeafManager() {
    const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
    const xcb_window_t window = xcb_generate_id(connection_);
    xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window, screen->root, 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, 0, nullptr);
    xcb_set_selection_owner(connection_, window, x11::atom("CLIPBOARD_MANAGER"), XCB_CURRENT_TIME);
    std::free(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));  // it has happened
  }
  ~DeafManager() { xcb_disconnect(connection_); }
  DeafManager(const DeafManager&) = delete;
  DeafManager& operator=(const DeafManager&) = delete;

  // What it is asked to keep next. Waits for that; on any one thread.
  [[nodiscard]] std::vector<xcb_atom_t> nextWish() const {
    const x11::Reply<xcb_generic_event_t> event(xcb_wait_for_event(connection_));
    if (!event || (event->response_type & x11::kEventNumber) != XCB_SELECTION_REQUEST) {
      return {};
    }
    const auto* request = reinterpret_cast<const xcb_selection_request_event_t*>(event.get());
    const auto cookie = xcb_get_property(connection_, 0, request->requestor, request->property, XCB_ATOM_ATOM, 0, 1024);
    const x11::Reply<xcb_get_property_reply_t> list(xcb_get_property_reply(connection_, cookie, nullptr));
    if (!list) {
      return {};
    }
    const auto* atoms = static_cast<const xcb_atom_t*>(xcb_get_property_value(list.get()));
    return {atoms, atoms + list->value_len};
  }

 private:
  xcb_connection_t* connection_ = xcb_connect(nullptr, nullptr);
};

bool isManagerThere() {
  const auto cookie = xcb_get_selection_owner(x11::connection(), x11::atom("CLIPBOARD_MANAGER"));
  const x11::Reply<xcb_get_selection_owner_reply_t> reply(
      xcb_get_selection_owner_reply(x11::connection(), cookie, nullptr));
  return reply && reply->owner != XCB_NONE;
}

class QtPasteboardTest : public testing::Test {
 protected:
  ~QtPasteboardTest() override { QGuiApplication::clipboard()->clear(); }

  FileURL save(const std::string& name, const QImage& image, const char* format) const {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    EXPECT_TRUE(image.save(&buffer, format));
    writeFile(folder_ / name, bytes.toStdString());
    return folder_ / name;
  }
  void copy(const FileURL& file) {
    pasteboard_.writeObjects({.image = images_.imageWithContentsOfFile(file), .fileURLs = {file}});
  }

  TemporaryFolder folder_;
  MainQueue scheduler_;
  QtPasteboard pasteboard_{scheduler_};
  FileImages images_{ImageDecoder(ChildDecoder(FileURL("/nowhere")))};
};

TEST_F(QtPasteboardTest, offersAPNGsOwnBytesAsTheyWereWhateverBecomesOfTheFile) {
  const FileURL file = save("one two.png", noise({300, 200}), "png");
  const std::string bytes = contents(file);
  copy(file);
  writeFile(file, "something else");
  EXPECT_EQ(pasted("image/png"), QByteArray::fromStdString(bytes));
  check(::unlink(file.path().c_str()) == 0, "unlink");
  EXPECT_EQ(pasted("image/png"), QByteArray::fromStdString(bytes));
}

TEST_F(QtPasteboardTest, offersTheFileAsAnAddressAFileManagersCopyAndAPath) {
  const FileURL file = save(".one two\n%\xff.png", noise({30, 20}), "png");
  copy(file);
  const QByteArray folder = QByteArray::fromStdString(folder_.url().path());
  EXPECT_EQ(pasted("text/uri-list"), "file://" + folder + "/.one%20two%0A%25%FF.png\r\n");
  EXPECT_EQ(pasted("x-special/gnome-copied-files"), "copy\nfile://" + folder + "/.one%20two%0A%25%FF.png");
  EXPECT_EQ(pasted("UTF8_STRING"), folder + "/.one two\n%\xff.png");
  EXPECT_EQ(pasted("text/plain"), folder + "/.one two\n%\xff.png");
}

TEST_F(QtPasteboardTest, offersOtherPicturesAsPNG) {
  const QImage image = noise({400, 300});
  copy(save("a.jpg", image, "jpg"));
  const auto bytes = pasted("image/png");
  ASSERT_TRUE(bytes);
  const QImage read = QImage::fromData(*bytes, "png");
  const QImage expected = QImage::fromData(QByteArray::fromStdString(contents(folder_ / "a.jpg")));
  ASSERT_EQ(read.size(), image.size());
  EXPECT_EQ(read.convertToFormat(QImage::Format_RGB32), expected.convertToFormat(QImage::Format_RGB32));
}

TEST_F(QtPasteboardTest, makesThePNGOfALargePictureWhileThisThreadGoesOn) {
  const FileURL file = save("large.jpg", noise({3840, 2160}), "jpg");
  copy(file);
  int turns = 0;
  QTimer ticking;
  QObject::connect(&ticking, &QTimer::timeout, &ticking, [&turns] { ++turns; });
  ticking.start(1);
  // Until the worker is done, which the next detached work waits for on one of the two threads, and more on the other.
  std::atomic<int> done = 0;
  for (int i = 0; i < 2; ++i) {
    scheduler_.detached(QualityOfService::userInitiated, [&done] { ++done; });
  }
  ASSERT_TRUE(waitUntil([&done] { return done == 2; }));
  ASSERT_TRUE(waitUntil([&turns] { return turns > 10; }));
  const auto bytes = pasted("image/png");
  ASSERT_TRUE(bytes);
  EXPECT_EQ(QImage::fromData(*bytes, "png").size(), QSize(3840, 2160));
}

TEST_F(QtPasteboardTest, offersSeveralFilesWithoutAPicture) {
  pasteboard_.writeObjects({.fileURLs = {FileURL("/a b.png"), FileURL("/c.png")}});
  EXPECT_EQ(pasted("text/uri-list"), "file:///a%20b.png\r\nfile:///c.png\r\n");
  EXPECT_EQ(pasted("x-special/gnome-copied-files"), "copy\nfile:///a%20b.png\nfile:///c.png");
  EXPECT_EQ(pasted("text/plain"), "/a b.png\n/c.png");
  EXPECT_THAT(offeredTypes(), Not(Contains(QStringLiteral("image/png"))));
}

TEST_F(QtPasteboardTest, withdrawsAPictureThatTurnsOutToBeDamaged) {
  // Whole by their structure: tables that no decoder understands, and rows that are not what was written.
  std::string jpeg = contents(save("good.jpg", noise({64, 64}), "jpg"));
  const std::size_t tables = jpeg.find("\xff\xc4");
  std::string png = contents(save("good.png", noise({64, 64}), "png"));
  const std::size_t rows = png.find("IDAT");
  ASSERT_TRUE(tables != std::string::npos && rows != std::string::npos);
  std::fill_n(jpeg.begin() + static_cast<std::ptrdiff_t>(tables) + 21, 3, '\xff');
  png[rows + 100] = static_cast<char>(png[rows + 100] ^ 1);
  for (const auto& [name, bytes] : {std::pair("a.jpg", jpeg), std::pair("a.png", png)}) {
    writeFile(folder_ / name, bytes);
    const ImageRef image = images_.imageWithContentsOfFile(folder_ / name);
    ASSERT_NE(image, nullptr) << name;
    pasteboard_.writeObjects({.image = image, .fileURLs = {folder_ / name}});
    EXPECT_TRUE(waitUntil([] { return !offeredTypes().contains(QStringLiteral("image/png")); })) << name;
    EXPECT_THAT(offeredTypes(), Contains(QStringLiteral("text/uri-list"))) << name;
  }
}

TEST_F(QtPasteboardTest, clearsWhatWasThere) {
  pasteboard_.writeObjects({.fileURLs = {FileURL("/a.png")}});
  pasteboard_.clearContents();
  EXPECT_FALSE(pasted("text/uri-list").value_or(QByteArray()).contains("a.png"));
  EXPECT_THAT(offeredTypes(), Not(Contains(QStringLiteral("text/uri-list"))));
}

TEST_F(QtPasteboardTest, copiesPathsAsTextAlone) {
  copyPaths({FileURL("/a b.png"), FileURL("/c\xff.png")});
  EXPECT_EQ(pasted("UTF8_STRING"), "/a b.png\n/c\xff.png");
  EXPECT_THAT(offeredTypes(), Not(Contains(QStringLiteral("text/uri-list"))));
}

TEST_F(QtPasteboardTest, handsNothingOverWhereNobodyKeepsIt) {
  pasteboard_.writeObjects({.fileURLs = {FileURL("/a.png")}});
  EXPECT_FALSE(handOverClipboard());
  EXPECT_EQ(pasted("text/plain"), "/a.png");
}

TEST_F(QtPasteboardTest, isNotHeldUpByAManagerThatDoesNotAnswer) {
  const DeafManager manager;
  const FileURL file = save("a.png", noise({30, 20}), "png");
  Partner program({QStringLiteral("--copy"), QString::fromStdString(file.path())});
  ASSERT_EQ(program.nextLine(), "ready");
  ASSERT_EQ(pasted("text/plain"), QByteArray::fromStdString(file.path()));
  EXPECT_TRUE(program.terminate(4000));
}

// A clipboard manager as people have it.
class Manager {
 public:
  Manager() {
    process_.start(QStringLiteral("xfce4-clipman"), {});
    EXPECT_TRUE(waitUntil(isManagerThere)) << "no clipboard manager";
  }
  ~Manager() {
    process_.terminate();
    EXPECT_TRUE(waitUntil([this] { return process_.state() == QProcess::NotRunning; }));
  }
  Manager(const Manager&) = delete;
  Manager& operator=(const Manager&) = delete;

 private:
  QProcess process_;
};

TEST_F(QtPasteboardTest, handsOverTheFileAloneOfAPictureThatCannotBeMade) {
  const DeafManager manager;
  const FileURL file = save("a.tiff", noise({30, 20}), "tiff");
  const ImageRef image = images_.imageWithContentsOfFile(file);
  ASSERT_NE(image, nullptr);
  ASSERT_TRUE(pngBytes(*image).isEmpty()) << "there is no decoder for it";
  const xcb_atom_t picture = x11::atom("image/png");
  const xcb_atom_t address = x11::atom("text/uri-list");
  pasteboard_.writeObjects({.image = image, .fileURLs = {file}});
  std::future<std::vector<xcb_atom_t>> wish = std::async(std::launch::async, [&manager] { return manager.nextWish(); });
  pasteboard_.handOver();
  const std::vector<xcb_atom_t> kept = wish.get();
  EXPECT_THAT(kept, Contains(address));
  EXPECT_THAT(kept, Not(Contains(picture)));
}

TEST_F(QtPasteboardTest, isStillThereAfterTheProgramWithAClipboardManager) {
  const Manager manager;
  const FileURL png = save("a.png", noise({1200, 800}), "png");
  const FileURL jpeg = save("b.jpg", noise({1200, 800}), "jpg");
  for (const FileURL& file : {png, jpeg}) {
    Partner program({QStringLiteral("--copy"), QString::fromStdString(file.path())});
    ASSERT_EQ(program.nextLine(), "ready");
    ASSERT_TRUE(program.terminate());
    ASSERT_EQ(pasted("x-special/gnome-copied-files").value_or("gone"),
              "copy\nfile://" + QByteArray::fromStdString(file.path()));
    EXPECT_EQ(pasted("text/uri-list"), "file://" + QByteArray::fromStdString(file.path()) + "\r\n");
    const auto picture = pasted("image/png");
    ASSERT_TRUE(picture);
    if (file == png) {
      EXPECT_EQ(*picture, QByteArray::fromStdString(contents(file)));
    }
    EXPECT_EQ(QImage::fromData(*picture, "png").size(), QSize(1200, 800));
  }
}

}  // namespace
}  // namespace quenlio
