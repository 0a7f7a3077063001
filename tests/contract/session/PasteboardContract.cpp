// What every clipboard does.
#include <QtCore/QMimeData>
#include <QtGui/QClipboard>
#include <QtGui/QGuiApplication>
#include <QtGui/QImage>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "desktop/linux/session/MainQueue.h"
#include "desktop/linux/session/QtPasteboard.h"
#include "desktop/linux/system/FileURI.h"
#include "desktop/render/QtImage.h"

#include "tests/fakes/FakeHandOut.h"

namespace quenlio {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct FakeKind {
  CallLog log;
  FakePasteboard fake{log};
  Pasteboard& pasteboard() { return fake; }
  [[nodiscard]] static ImageRef picture() { return std::make_shared<FakeImages::Picture>(FileURL("/a.png")); }
  [[nodiscard]] bool hasPicture() const { return fake.contents && fake.contents->image != nullptr; }
  [[nodiscard]] std::vector<FileURL> files() const {
    return fake.contents ? fake.contents->fileURLs : std::vector<FileURL>{};
  }
};

class RealKind {
 public:
  ~RealKind() { QGuiApplication::clipboard()->clear(); }
  Pasteboard& pasteboard() { return real_; }
  [[nodiscard]] static ImageRef picture() {
    QImage pixels(4, 3, QImage::Format_ARGB32_Premultiplied);
    pixels.fill(Qt::red);
    return std::make_shared<QtImage>(pixels, Size{4, 3});
  }
  [[nodiscard]] bool hasPicture() const { return !QImage::fromData(data("image/png"), "png").isNull(); }
  [[nodiscard]] std::vector<FileURL> files() const {
    std::vector<FileURL> files;
    for (const QByteArray& line : data("text/uri-list").split('\n')) {
      if (const QByteArray address = line.trimmed(); address.startsWith("file://")) {
        files.emplace_back(QByteArray::fromPercentEncoding(address.mid(7)).toStdString());
      }
    }
    return files;
  }

 private:
  static QByteArray data(const char* type) {
    return QGuiApplication::clipboard()->mimeData()->data(QString::fromLatin1(type));
  }

  MainQueue scheduler_;
  QtPasteboard real_{scheduler_};
};

template <class Kind>
class PasteboardContract : public testing::Test {
 protected:
  Kind kind;
};

using Kinds = testing::Types<FakeKind, RealKind>;
TYPED_TEST_SUITE(PasteboardContract, Kinds);

const FileURL kFile("/shots/one two\xff.png");

TYPED_TEST(PasteboardContract, holdsAPictureBesideItsFile) {
  this->kind.pasteboard().writeObjects({.image = this->kind.picture(), .fileURLs = {kFile}});
  EXPECT_TRUE(this->kind.hasPicture());
  EXPECT_THAT(this->kind.files(), ElementsAre(kFile));
}

TYPED_TEST(PasteboardContract, holdsFilesInTheirOrderWithoutAPicture) {
  this->kind.pasteboard().writeObjects({.fileURLs = {FileURL("/b"), kFile, FileURL("/a")}});
  EXPECT_FALSE(this->kind.hasPicture());
  EXPECT_THAT(this->kind.files(), ElementsAre(FileURL("/b"), kFile, FileURL("/a")));
}

TYPED_TEST(PasteboardContract, holdsWhatWasWrittenLast) {
  this->kind.pasteboard().writeObjects({.image = this->kind.picture(), .fileURLs = {kFile}});
  this->kind.pasteboard().clearContents();
  this->kind.pasteboard().writeObjects({.fileURLs = {FileURL("/b")}});
  EXPECT_FALSE(this->kind.hasPicture());
  EXPECT_THAT(this->kind.files(), ElementsAre(FileURL("/b")));
}

TYPED_TEST(PasteboardContract, holdsNothingOnceItIsCleared) {
  this->kind.pasteboard().writeObjects({.image = this->kind.picture(), .fileURLs = {kFile}});
  this->kind.pasteboard().clearContents();
  EXPECT_FALSE(this->kind.hasPicture());
  EXPECT_THAT(this->kind.files(), IsEmpty());
}

}  // namespace
}  // namespace quenlio
