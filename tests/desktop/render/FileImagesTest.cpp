// Pictures as files hold them, and as PNG for those who paste.
#include <cstdio>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "desktop/render/FileImages.h"
#include "desktop/render/QtImage.h"

#include "tests/desktop/render/Pictures.h"

namespace quenlio::test {
namespace {

class FileImagesTest : public testing::Test {
 protected:
  [[nodiscard]] static std::string text(const QByteArray& bytes) { return bytes.toStdString(); }
  [[nodiscard]] static QImage read(const QByteArray& png) { return QImage::fromData(png, "png"); }

  PictureFolder folder_;
  FileImages images_{realDecoder()};
};

TEST_F(FileImagesTest, keepAPNGsOwnBytesWhateverBecomesOfTheFile) {
  const FileURL file = folder_.save("a.png", quarters({40, 20}), "png");
  QByteArray own;
  {
    std::FILE* const stream = std::fopen(file.path().c_str(), "rb");
    ASSERT_NE(stream, nullptr);
    char buffer[4096];
    own = QByteArray(buffer, static_cast<qsizetype>(std::fread(buffer, 1, sizeof buffer, stream)));
    std::fclose(stream);
  }
  const ImageRef image = images_.imageWithContentsOfFile(file);
  ASSERT_NE(image, nullptr);
  EXPECT_EQ(image->size(), (Size{40, 20}));
  folder_.write("a.png", "something else");
  EXPECT_EQ(pngBytes(*image), own);
  std::remove(file.path().c_str());
  EXPECT_EQ(pngBytes(*image), own);
}

TEST_F(FileImagesTest, becomePNGsOfTheSamePixels) {
  const QImage picture = quarters({64, 32});
  const FileURL jpeg = folder_.write("a.jpg", jpegBytes(picture));
  const FileURL tiff = folder_.write("a.tiff", tiffBytes(picture));
  for (const FileURL& file : {jpeg, tiff}) {
    const ImageRef image = images_.imageWithContentsOfFile(file);
    ASSERT_NE(image, nullptr) << file.path();
    std::remove(file.path().c_str());
    const QImage png = read(pngBytes(*image));
    ASSERT_EQ(png.size(), picture.size()) << file.path();
    for (const QPoint place : {QPoint(8, 8), QPoint(56, 8), QPoint(8, 24), QPoint(56, 24)}) {
      const QColor seen = png.pixelColor(place);
      const QColor expected = picture.pixelColor(place);
      EXPECT_NEAR(seen.red(), expected.red(), 6) << file.path();
      EXPECT_NEAR(seen.green(), expected.green(), 6) << file.path();
      EXPECT_NEAR(seen.blue(), expected.blue(), 6) << file.path();
    }
  }
}

TEST_F(FileImagesTest, keepTheirDensity) {
  QImage picture = quarters({64, 32});
  picture.setDotsPerMeterX(5669);  // two pixels a point
  picture.setDotsPerMeterY(5669);
  const ImageRef image = images_.imageWithContentsOfFile(folder_.save("a.jpg", picture, "jpg"));
  ASSERT_NE(image, nullptr);
  EXPECT_EQ(image->size(), (Size{32, 16}));
  const ImageRef again = images_.imageWithContentsOfFile(folder_.write("b.png", text(pngBytes(*image))));
  ASSERT_NE(again, nullptr);
  EXPECT_EQ(again->size(), (Size{32, 16}));
}

TEST_F(FileImagesTest, areNoneOfWhatIsNoWholePicture) {
  const std::string jpeg = jpegBytes(quarters({40, 20}));
  const std::pair<const char*, std::string> files[] = {
      {"empty.png", ""},
      {"text.png", "no picture at all"},
      {"bomb.png", hollowPng(60'000, 60'000)},
      {"bomb.jpg", jpegClaiming(jpeg, 60'000, 60'000)},
  };
  for (const auto& [name, bytes] : files) {
    EXPECT_EQ(images_.imageWithContentsOfFile(folder_.write(name, bytes)), nullptr) << name;
  }
  EXPECT_EQ(images_.imageWithContentsOfFile(folder_.url("gone.png")), nullptr);
  ASSERT_EQ(::mkdir(folder_.url("folder.png").path().c_str(), 0755), 0);
  EXPECT_EQ(images_.imageWithContentsOfFile(folder_.url("folder.png")), nullptr);
  ASSERT_EQ(::mkfifo(folder_.url("pipe.png").path().c_str(), 0644), 0);
  EXPECT_EQ(images_.imageWithContentsOfFile(folder_.url("pipe.png")), nullptr);
}

TEST_F(FileImagesTest, giveNoBytesWhenTheyCannotBeDecodedAfterAll) {
  std::string jpeg = jpegBytes(quarters({40, 20}));
  const std::size_t table = jpeg.find("\xff\xc4");
  ASSERT_NE(table, std::string::npos);
  std::fill_n(jpeg.begin() + static_cast<std::ptrdiff_t>(table) + 21, 3, '\xff');
  const ImageRef image = images_.imageWithContentsOfFile(folder_.write("a.jpg", jpeg));
  ASSERT_NE(image, nullptr);
  EXPECT_TRUE(pngBytes(*image).isEmpty());
}

TEST_F(FileImagesTest, giveNoBytesWhenTheyHaveNoEnd) {
  const std::string png = text(pngBytes(QtImage(quarters({40, 20}), {40, 20})));
  const std::string jpeg = jpegBytes(quarters({400, 200}));
  const std::pair<const char*, std::string> files[] = {
      {"cut.png", png.substr(0, png.size() - 30)},
      {"cut.jpg", jpeg.substr(0, jpeg.size() * 9 / 10)},
  };
  for (const auto& [name, bytes] : files) {
    const ImageRef image = images_.imageWithContentsOfFile(folder_.write(name, bytes));
    ASSERT_NE(image, nullptr) << name;
    EXPECT_TRUE(pngBytes(*image).isEmpty()) << name;
  }
}

TEST_F(FileImagesTest, tellAPNGThatIsDamagedInside) {
  std::string png = text(pngBytes(QtImage(quarters({40, 20}), {40, 20})));
  const auto isSound = [&] { return isSoundAsPNG(*images_.imageWithContentsOfFile(folder_.write("a.png", png))); };
  EXPECT_TRUE(isSound());
  const std::size_t data = png.find("IDAT");
  ASSERT_NE(data, std::string::npos);
  png[data + 8] = static_cast<char>(png[data + 8] ^ 1);
  EXPECT_FALSE(isSound());
  png = hollowPng(300, 200);
  EXPECT_FALSE(isSound());
}

TEST_F(FileImagesTest, arePNGsAlsoFromPixelsInMemory) {
  const QImage picture = quarters({40, 20}).convertToFormat(QImage::Format_ARGB32_Premultiplied);
  EXPECT_EQ(read(pngBytes(QtImage(picture, {40, 20}))).convertToFormat(picture.format()), picture);
}

}  // namespace
}  // namespace quenlio::test
