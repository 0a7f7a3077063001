#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include "desktop/linux/system/CameraPicture.h"
#include "desktop/linux/system/ScreenshotMetadata.h"

#include "tests/desktop/system/AttributeFolder.h"
#include "tests/desktop/system/SampleFiles.h"
#include "tests/desktop/system/TemporaryFolder.h"

namespace quenlio {
namespace {

constexpr auto kYes = std::optional<bool>(true);
constexpr auto kNo = std::optional<bool>(false);
constexpr auto kNoOpinion = std::optional<bool>();

class ScreenshotMetadataTest : public testing::Test {
 protected:
  std::optional<bool> answer(const FileURL& url) const {
    const auto value = metadata.MDItemCopyAttribute(url, kMDItemIsScreenCapture);
    return value ? std::optional(std::get<bool>(*value)) : std::nullopt;
  }
  std::optional<bool> answerFor(std::string_view name, std::string_view bytes) const {
    writeFile(folder / name, bytes);
    return answer(folder / name);
  }

  TemporaryFolder folder;
  OwnFiles own;
  ScreenshotMetadata metadata{own};
};

std::string textChunk(std::string_view key, std::string_view text) {
  return samples::pngChunk("tEXt", std::string(key) + '\0' + std::string(text));
}

TEST_F(ScreenshotMetadataTest, aPlainPictureUnderAPlainNameGetsNoOpinion) {
  for (const auto& [kind, bytes] : {samples::all()[0], samples::all()[2], samples::all()[5], samples::all()[12]}) {
    EXPECT_EQ(answerFor("Holiday.png", bytes), kNoOpinion) << kind;
  }
}

TEST_F(ScreenshotMetadataTest, otherAttributesAreNotKnown) {
  writeFile(folder / "Screenshot_20261115_210433.png", samples::png());
  EXPECT_FALSE(metadata.MDItemCopyAttribute(folder / "Screenshot_20261115_210433.png", "kMDItemKind"));
}

TEST_F(ScreenshotMetadataTest, aToolsTextInThePNGIsAYes) {
  EXPECT_EQ(answerFor("a.png", samples::png(textChunk("Software", "gnome-screenshot"))), kYes);
  EXPECT_EQ(answerFor("a.png", samples::png(textChunk("Software", "mate-screenshot"))), kYes);
  EXPECT_EQ(answerFor("a.png", samples::png(textChunk("windowTitle", "Terminal"))), kYes);
  EXPECT_EQ(answerFor("a.png", samples::png(textChunk("screen", "DP-1"))), kYes);
  EXPECT_EQ(answerFor("a.png", samples::png(textChunk("Title", "x") + textChunk("Software", "gnome-screenshot"))),
            kYes);
}

TEST_F(ScreenshotMetadataTest, internationalAndPackedTextsAreReadToo) {
  const std::string key("Software\0", 9);
  const std::string packed = samples::deflated("gnome-screenshot");
  EXPECT_EQ(answerFor("a.png", samples::png(samples::pngChunk("zTXt", key + '\0' + packed))), kYes);
  EXPECT_EQ(answerFor("a.png", samples::png(samples::pngChunk(
                                   "iTXt", key + std::string("\0\0en\0Soft\0", 10) + "gnome-screenshot"))),
            kYes);
  EXPECT_EQ(answerFor("a.png", samples::png(samples::pngChunk("iTXt", key + std::string("\1\0\0\0", 4) + packed))),
            kYes);
}

TEST_F(ScreenshotMetadataTest, otherTextsSayNothing) {
  EXPECT_EQ(answerFor("a.png", samples::png(textChunk("Software", "a paint program"))), kNoOpinion);
  EXPECT_EQ(answerFor("a.png", samples::png(textChunk("Comment", "gnome-screenshot"))), kNoOpinion);
  EXPECT_EQ(answerFor("a.png", samples::png(samples::pngChunk("zTXt", std::string("Software\0\0bad", 13)))),
            kNoOpinion);
  EXPECT_EQ(answerFor("a.png", samples::png(samples::pngChunk("iTXt", "Software"))), kNoOpinion);
}

TEST_F(ScreenshotMetadataTest, textsBehindThePixelsAndBehindManyChunksAreNotLookedFor) {
  std::string bytes = samples::png();
  bytes.insert(bytes.size() - 12, textChunk("Software", "gnome-screenshot"));
  EXPECT_EQ(answerFor("a.png", bytes), kNoOpinion);
  std::string many;
  for (int i = 0; i < 500; ++i) {
    many += textChunk("Comment", "x");
  }
  EXPECT_EQ(answerFor("a.png", samples::png(many + textChunk("screen", "x"))), kNoOpinion);
}

TEST_F(ScreenshotMetadataTest, aChunkThatClaimsToBeEndlessIsReadWithoutHarm) {
  std::string bytes = samples::png(textChunk("Comment", "x"));
  const std::size_t length = bytes.find("tEXt") - 4;
  bytes.replace(length, 4, "\xFF\xFF\xFF\xFF");
  EXPECT_EQ(answerFor("a.png", bytes), kNoOpinion);
}

TEST_F(ScreenshotMetadataTest, aCamerasPictureIsANo) {
  EXPECT_EQ(answerFor("a.jpg", samples::jpeg({.make = "Maker"})), kNo);
  EXPECT_EQ(answerFor("a.jpg", samples::jpeg({.model = "Model 1"})), kNo);
  EXPECT_EQ(answerFor("a.jpg", samples::jpeg({.make = "Maker", .model = "M", .hasPreview = true})), kNo);
  EXPECT_EQ(answerFor("a.tiff", samples::tiff({.make = "Maker"})), kNo);
  EXPECT_EQ(answerFor("a.tiff", samples::tiff({.order = std::endian::big, .make = "Maker"})), kNo);
}

TEST_F(ScreenshotMetadataTest, aCamerasPNGIsANo) {
  const std::string exif = samples::pngChunk("eXIf", samples::tiff({.order = std::endian::big, .make = "Maker"}));
  EXPECT_EQ(answerFor("a.png", samples::png(exif)), kNo);
  EXPECT_EQ(answerFor("a.png", samples::png(textChunk("Software", "gnome-screenshot") + exif)), kNo);
  EXPECT_EQ(answerFor("a.png", samples::png(samples::pngChunk("eXIf", samples::tiff()))), kNoOpinion);
  EXPECT_EQ(answerFor("a.png", samples::png(samples::pngChunk("eXIf", "II"))), kNoOpinion);
  EXPECT_EQ(answerFor("a.png", samples::png(samples::pngChunk("eXIf", ""))), kNoOpinion);
}

TEST_F(ScreenshotMetadataTest, aCamerasHEICIsANo) {
  EXPECT_EQ(answerFor("a.heic", samples::heicWithExif(samples::tiff({.make = "Maker"}))), kNo);
  EXPECT_EQ(answerFor("a.heic", samples::heicWithExif(samples::tiff({.make = "Maker"}), 0)), kNo);
  EXPECT_EQ(answerFor("Screenshot_20261115_210433.heic", samples::heicWithExif(samples::tiff({.make = "Maker"}))), kNo);
  EXPECT_EQ(answerFor("a.heic", samples::heicWithExif(samples::tiff())), kNoOpinion);
  EXPECT_EQ(answerFor("a.heic", samples::heicWithExif("")), kNoOpinion);
}

// Each byte in turn replaced by several others, and the file cut at each byte: an answer, whichever, and no harm.
TEST_F(ScreenshotMetadataTest, aDamagedCamerasPictureIsReadWithoutHarm) {
  const std::string tiff = samples::tiff({.make = "Maker"});
  for (const std::string& whole : {samples::heicWithExif(tiff), samples::png(samples::pngChunk("eXIf", tiff))}) {
    int cameras = 0;
    for (std::size_t at = 0; at < whole.size(); ++at) {
      for (const char byte : {'\0', '\1', '\x7F', '\xFF'}) {
        std::string damaged = whole;
        damaged[at] = byte;
        MemorySource source(damaged);
        cameras += isCameraPicture(source) ? 1 : 0;
      }
      MemorySource cut(std::string_view(whole).substr(0, at));
      (void)isCameraPicture(cut);
    }
    // Most bytes are pixels, which do not matter.
    EXPECT_GT(cameras, 0);
    EXPECT_LT(cameras, static_cast<int>(4 * whole.size()));
  }
}

TEST_F(ScreenshotMetadataTest, anExifItemThatClaimsToLieOutsideTheFileIsReadWithoutHarm) {
  const std::string whole = samples::heicWithExif(samples::tiff({.make = "Maker"}));
  const std::size_t table = whole.find("iloc") + 4;
  for (const std::size_t field : {28U, 32U}) {  // place and length of the second item, four bytes each
    std::string hostile = whole;
    hostile.replace(table + 4 + field, 4, "\xFF\xFF\xFF\xFF");
    EXPECT_EQ(answerFor("a.heic", hostile), kNoOpinion);
  }
  std::string hostile = whole;
  hostile.replace(whole.find("mdat") + 4 + 120, 4, "\xFF\xFF\xFF\xFF");  // the length of the head
  EXPECT_EQ(answerFor("a.heic", hostile), kNoOpinion);
}

TEST_F(ScreenshotMetadataTest, aCameraWinsOverTheNameAndTheFolder) {
  EXPECT_EQ(answerFor("Screenshot_20261115_210433.jpg", samples::jpeg({.make = "Maker"})), kNo);
  std::filesystem::create_directory((folder / "Screenshots").path());
  EXPECT_EQ(answerFor("Screenshots/a.jpg", samples::jpeg({.make = "Maker"})), kNo);
}

TEST_F(ScreenshotMetadataTest, aBlankMakeIsNoCamera) {
  EXPECT_EQ(answerFor("a.jpg", samples::jpeg({.make = "   "})), kNoOpinion);
}

TEST_F(ScreenshotMetadataTest, aNameOfTheTableIsAYesWhateverTheKind) {
  EXPECT_EQ(answerFor("Screenshot from 2026-11-15 21-04-33.png", samples::png()), kYes);
  EXPECT_EQ(answerFor("20261115_21h04m33s_grim.jpg", samples::jpeg()), kYes);
  EXPECT_EQ(answerFor("ksnip_20261115-210433.heic", samples::heic()), kYes);
}

TEST_F(ScreenshotMetadataTest, aFolderKeptForScreenshotsIsAYes) {
  std::filesystem::create_directory((folder / "Bildschirmfotos").path());
  EXPECT_EQ(answerFor("Bildschirmfotos/a.png", samples::png()), kYes);
}

TEST(ScreenshotMark, theMarkOfOurOwnIsAYes) {
  const AttributeFolder folder;
  const OwnFiles own;
  const ScreenshotMetadata metadata(own);
  writeFile(folder / "a.png", samples::png());
  EXPECT_FALSE(metadata.MDItemCopyAttribute(folder / "a.png", kMDItemIsScreenCapture));
  ASSERT_EQ(::setxattr((folder / "a.png").path().c_str(), kScreenshotMark, "1", 1, 0), 0);
  EXPECT_EQ(metadata.MDItemCopyAttribute(folder / "a.png", kMDItemIsScreenCapture), MetadataValue(true));
}

TEST_F(ScreenshotMetadataTest, whatOurOwnOperationPutThereIsANoBeforeAllElse) {
  writeFile(folder / "Screenshot_20261115_210433.png", samples::png(textChunk("Software", "gnome-screenshot")));
  own.note(folder / "Screenshot_20261115_210433.png");
  EXPECT_EQ(answer(folder / "Screenshot_20261115_210433.png"), kNo);
}

TEST_F(ScreenshotMetadataTest, whatIsNoRegularFileGetsNoOpinion) {
  std::filesystem::create_directory((folder / "Screenshot_20261115_210433.png").path());
  EXPECT_EQ(answer(folder / "Screenshot_20261115_210433.png"), kNoOpinion);
  ASSERT_EQ(::mkfifo((folder / "Screenshot_20261115_210434.png").path().c_str(), 0600), 0);
  EXPECT_EQ(answer(folder / "Screenshot_20261115_210434.png"), kNoOpinion);
  EXPECT_EQ(answer(folder / "Screenshot_20261115_210435.png"), kNoOpinion);
}

TEST_F(ScreenshotMetadataTest, anOwnFileIsKnownAfterItIsRenamed) {
  writeFile(folder / "a.png", samples::png());
  own.note(folder / "a.png");
  std::filesystem::rename((folder / "a.png").path(), (folder / "b.png").path());
  EXPECT_TRUE(own.contains(folder / "b.png"));
  EXPECT_FALSE(own.contains(folder / "a.png"));
}

// File systems hand the number of a removed file to the next one.
TEST_F(ScreenshotMetadataTest, aNewFileWithTheNumberOfAnOldOneIsNotOurs) {
  struct stat first {};
  struct stat next {};
  int reused = 0;
  for (int i = 0; i < 50; ++i) {
    writeFile(folder / "a.png", "1");
    own.note(folder / "a.png");
    ASSERT_EQ(::stat((folder / "a.png").path().c_str(), &first), 0);
    ASSERT_EQ(::unlink((folder / "a.png").path().c_str()), 0);
    // Births are told apart by the file system's clock, which moves in steps: the next file comes a step later.
    do {
      writeFile(folder / "b.png", "1");
      ASSERT_EQ(::stat((folder / "b.png").path().c_str(), &next), 0);
      if (next.st_ctim.tv_nsec == first.st_ctim.tv_nsec) {
        ASSERT_EQ(::unlink((folder / "b.png").path().c_str()), 0);
      }
    } while (next.st_ctim.tv_nsec == first.st_ctim.tv_nsec);
    reused += next.st_ino == first.st_ino ? 1 : 0;
    ASSERT_FALSE(own.contains(folder / "b.png"));
    ASSERT_EQ(::unlink((folder / "b.png").path().c_str()), 0);
  }
  RecordProperty("reused", reused);
}

TEST_F(ScreenshotMetadataTest, theNewest256OwnFilesAreKept) {
  for (int i = 0; i < 300; ++i) {
    writeFile(folder / std::to_string(i), "1");
    own.note(folder / std::to_string(i));
  }
  EXPECT_FALSE(own.contains(folder / "43"));
  EXPECT_TRUE(own.contains(folder / "44"));
  EXPECT_TRUE(own.contains(folder / "299"));
}

}  // namespace
}  // namespace quenlio
