// Damaged files and bombs cost their own thumbnail and nothing else.
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <sys/resource.h>

#include "desktop/render/ImageDecoder.h"

#include "tests/desktop/render/Pictures.h"

namespace quenlio::test {
namespace {

constexpr QSize kWithin(64, 64);

// Kilobytes that the program has used at most since the last reset.
long peakMemory() {
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;) {
    if (word == "VmHWM:") {
      long kilobytes = 0;
      status >> kilobytes;
      return kilobytes;
    }
  }
  return -1;
}

void resetPeakMemory() {
  std::ofstream("/proc/self/clear_refs") << "5";
}

// The same of the hungriest child so far.
long peakMemoryOfChildren() {
  rusage usage{};
  ::getrusage(RUSAGE_CHILDREN, &usage);
  return usage.ru_maxrss;
}

class HostilePicturesTest : public testing::Test {
 protected:
  // Files that open, by extension.
  [[nodiscard]] std::map<std::string, std::string> goodFiles() const {
    const QImage picture = quarters({96, 64});
    return {{"png", contents(folder_.save("good.png", picture, "png"))},
            {"jpg", jpegBytes(picture)},
            {"jpeg", jpegBytes(picture, 90, true)},
            {"tiff", tiffBytes(picture)},
            {"pdf", pdfBytes(96, 64)},
            {"heic", heicBytes(folder_, picture)}};
  }

  [[nodiscard]] std::optional<DecodedImage> decode(const std::string& extension, std::string_view bytes) const {
    return decoder_.decode(folder_.write("hostile." + extension, bytes), kWithin, false);
  }

  // Nothing, or a picture as large as asked for.
  void expectNoHarm(const std::string& extension, std::string_view bytes) const {
    const auto decoded = decode(extension, bytes);
    if (decoded) {
      EXPECT_FALSE(decoded->image.isNull());
      EXPECT_LE(decoded->image.width(), kWithin.width());
      EXPECT_LE(decoded->image.height(), kWithin.height());
    }
  }

  PictureFolder folder_;
  ImageDecoder decoder_ = realDecoder();
};

TEST_F(HostilePicturesTest, survivesFilesThatEndEarly) {
  for (const auto& [extension, bytes] : goodFiles()) {
    ASSERT_TRUE(decode(extension, bytes)) << extension;
    for (std::size_t part = 0; part < 16; ++part) {
      expectNoHarm(extension, std::string_view(bytes).substr(0, bytes.size() * part / 16));
    }
    expectNoHarm(extension, std::string_view(bytes).substr(0, bytes.size() - 1));
  }
}

TEST_F(HostilePicturesTest, showsNoHalfOfAPngOrJpeg) {
  const auto files = goodFiles();
  for (const char* extension : {"png", "jpg", "jpeg"}) {
    const std::string& bytes = files.at(extension);
    EXPECT_FALSE(decode(extension, std::string_view(bytes).substr(0, bytes.size() * 3 / 4))) << extension;
  }
}

TEST_F(HostilePicturesTest, survivesFlippedBits) {
  std::mt19937 random(20261115);
  for (const auto& [extension, good] : goodFiles()) {
    const bool ownProcess = extension == "png" || extension.starts_with("jp");
    for (int round = ownProcess ? 300 : 24; round > 0; --round) {
      std::string bytes = good;
      for (std::uint32_t flips = 1 + random() % 8; flips > 0; --flips) {
        char& byte = bytes[random() % bytes.size()];
        byte = static_cast<char>(byte ^ 1 << random() % 8);
      }
      expectNoHarm(extension, bytes);
    }
  }
}

// With each of the six kinds a file of a few hundred bytes that claims 60,000 by 60,000 pixels.
TEST_F(HostilePicturesTest, refusesABombByItsHeader) {
  constexpr std::uint32_t side = 60'000;
  constexpr long mostKilobytes = 30 * 1024;
  const auto good = goodFiles();
  const std::map<std::string, std::string> bombs{{"png", hollowPng(side, side)},
                                                 {"jpg", jpegClaiming(good.at("jpg"), side, side)},
                                                 {"jpeg", jpegClaiming(good.at("jpeg"), side, side)},
                                                 {"tiff", tiffBytes(side, side, "nearly no pixels")},
                                                 {"pdf", pdfBytes(side, side)},
                                                 {"heic", heicClaiming(good.at("heic"), side, side)}};
  for (const auto& [extension, bytes] : bombs) {
    ASSERT_TRUE(decode(extension, good.at(extension))) << extension;
    const long childrenBefore = peakMemoryOfChildren();
    resetPeakMemory();
    const long before = peakMemory();
    ASSERT_GT(before, 0);
    EXPECT_FALSE(decode(extension, bytes)) << extension;
    EXPECT_LT(peakMemory() - before, mostKilobytes) << extension;
    EXPECT_LT(peakMemoryOfChildren() - childrenBefore, mostKilobytes) << extension;
  }
}

TEST_F(HostilePicturesTest, refusesASideThatIsTooLongAndAnAreaThatIsTooLarge) {
  EXPECT_FALSE(decode("png", hollowPng(0, 10)));
  // A picture that is all there, of one bit a pixel.
  const PngForm vast{.size = {20'001, 10'000}, .bitDepth = 1, .colorType = 0};
  EXPECT_FALSE(decode("png", pngBytes(vast, std::vector(10'000, std::vector<std::uint8_t>(2'501)))));
  EXPECT_FALSE(decoder_.decode(folder_.save("long.png", filled({32'769, 2}, Qt::red), "png"), kWithin, false));
  EXPECT_TRUE(decoder_.decode(folder_.save("longest.png", filled({32'768, 2}, Qt::red), "png"), kWithin, false));
}

// Just below the bound, with hardly any contents: the claim alone must not cost the memory that it speaks of.
TEST_F(HostilePicturesTest, holdsNoLargePictureInThisProgram) {
  resetPeakMemory();
  const long before = peakMemory();
  EXPECT_FALSE(decode("png", hollowPng(19'000, 10'000)));
  expectNoHarm("tiff", tiffBytes(19'000, 10'000, "nearly no pixels"));
  EXPECT_LT(peakMemory() - before, 30 * 1024);
}

TEST_F(HostilePicturesTest, needsNoMemoryForTheWholeOfALargePng) {
  QImage large(7680, 4320, QImage::Format_Grayscale8);
  large.fill(90);
  const FileURL url = folder_.save("large.png", large, "png");
  large = QImage();
  resetPeakMemory();
  const long before = peakMemory();
  EXPECT_TRUE(decoder_.decode(url, {560, 440}, false));
  EXPECT_LT(peakMemory() - before, 12 * 1024);  // the whole would be 133 MB
}

}  // namespace
}  // namespace quenlio::test
