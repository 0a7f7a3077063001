#include <cstdlib>
#include <gtest/gtest.h>
#include <random>
#include <rapidcheck.h>

#include "desktop/linux/system/CameraPicture.h"
#include "desktop/linux/system/CompleteFormats.h"
#include "desktop/linux/system/ScreenshotMetadata.h"

#include "tests/desktop/system/SampleFiles.h"
#include "tests/desktop/system/TemporaryFolder.h"

namespace quenlio {
namespace {

bool isComplete(std::string_view bytes) {
  MemorySource source(bytes);
  return isCompleteByFormat(source);
}

// A number of four bytes, most significant first, in place of those at the offset.
std::string withNumber(std::string bytes, std::size_t offset, std::uint32_t value) {
  for (std::size_t i = 0; i < 4; ++i) {
    bytes[offset + i] = static_cast<char>(value >> (24 - 8 * i) & 0xFF);
  }
  return bytes;
}

TEST(CompleteFormats, everyWholeFileIsComplete) {
  for (const auto& [kind, bytes] : samples::all()) {
    EXPECT_TRUE(isComplete(bytes)) << kind;
  }
}

TEST(CompleteFormats, noFileIsCompleteBeforeItsLastByte) {
  for (const auto& [kind, bytes] : samples::all()) {
    for (std::size_t length = 0; length < bytes.size(); ++length) {
      ASSERT_FALSE(isComplete(std::string_view(bytes).substr(0, length))) << kind << " cut off at " << length;
    }
  }
}

// Some writers set the file's length first and fill it from the front.
TEST(CompleteFormats, aPictureWhoseEndIsStillZeroIsNotComplete) {
  for (const auto& [kind, bytes] : {samples::all()[0], samples::all()[2], samples::all()[10], samples::all()[5]}) {
    for (std::size_t length = 0; length + 2 < bytes.size(); ++length) {
      std::string part = bytes.substr(0, length);
      part.resize(bytes.size(), '\0');
      if (part != bytes) {
        ASSERT_FALSE(isComplete(part)) << kind << " filled up to " << length;
      }
    }
  }
}

TEST(CompletePNG, anEndChunkWithAWrongChecksumIsNoEnd) {
  std::string bytes = samples::png();
  bytes.back() = static_cast<char>(bytes.back() ^ 1);
  EXPECT_FALSE(isComplete(bytes));
}

TEST(CompletePNG, bytesBehindTheEndAreLeftToTime) {
  EXPECT_FALSE(isComplete(samples::png() + "more"));
}

TEST(CompleteJPEG, aFewZeroBytesBehindTheEndAreTolerated) {
  EXPECT_TRUE(isComplete(samples::jpeg() + std::string(3, '\0')));
  EXPECT_TRUE(isComplete(samples::jpeg() + std::string(16, '\0')));
  EXPECT_FALSE(isComplete(samples::jpeg() + std::string(64, '\0')));
}

TEST(CompleteJPEG, theEndOfAnEmbeddedPreviewIsNotTheEndOfThePicture) {
  const std::string bytes = samples::jpeg({.hasPreview = true});
  const std::size_t end = bytes.find("\xFF\xD9") + 2;
  ASSERT_LT(end, bytes.size());
  EXPECT_FALSE(isComplete(std::string_view(bytes).substr(0, end)));
}

TEST(CompletePDF, blanksBehindTheEndMarkAreTolerated) {
  EXPECT_TRUE(isComplete(samples::pdf() + "\r\n"));
  EXPECT_TRUE(isComplete(samples::pdf() + std::string(500, ' ')));
  EXPECT_FALSE(isComplete(samples::pdf() + std::string(1500, ' ')));
}

TEST(CompletePDF, theEndOfTheFirstSectionIsNotTheEndOfTheDocument) {
  const std::string bytes = samples::linearizedPdf();
  const std::size_t end = bytes.find("%%EOF") + 5;
  ASSERT_LT(end, bytes.size());
  EXPECT_FALSE(isComplete(std::string_view(bytes).substr(0, end)));
}

TEST(CompletePDF, theEndOfAnAttachedDocumentIsNotTheEndOfTheDocument) {
  const std::string inner = samples::pdf();
  EXPECT_FALSE(isComplete("%PDF-1.7\n1 0 obj\n<< /Length 400 /Subtype /pdf >>\nstream\n" + inner));
}

// It may be whole: its places may count from its own beginning or from the file's.
TEST(CompletePDF, aDocumentBehindOtherBytesIsNotCalledComplete) {
  const std::string head = "%PDF-1.7\n";
  const auto behind = [&](const std::string& bytes) {
    const std::string table = std::to_string(bytes.size() + head.size());
    return bytes + head + "xref\n0 1\ntrailer\n<<>>\nstartxref\n" + table + "\n%%EOF\n";
  };
  EXPECT_TRUE(isComplete(behind("")));
  EXPECT_FALSE(isComplete(behind("other bytes\n")));
}

TEST(CompleteTIFF, aHeaderThatNamesNoDirectoryYetIsNotComplete) {
  const std::string bytes = samples::tiff({.order = std::endian::big});
  EXPECT_FALSE(isComplete(withNumber(bytes, 4, 0)));
}

TEST(CompleteTIFF, directoriesInALoopAreNotComplete) {
  const std::string bytes = samples::tiff({.order = std::endian::big});
  const std::size_t directory = 8 + 128;
  EXPECT_FALSE(isComplete(withNumber(bytes, directory + 2 + 5 * 12, directory)));
}

TEST(CompleteTIFF, countsBeyondAllReasonAreNotComplete) {
  const std::string bytes = samples::tiff({.order = std::endian::big});
  const std::size_t strips = 8 + 128 + 2 + 2 * 12;  // the third entry
  EXPECT_FALSE(isComplete(withNumber(bytes, strips + 4, 0xFFFFFFFF)));
  EXPECT_FALSE(isComplete(withNumber(bytes, strips + 4, 0x40000000)));
}

TEST(CompleteHEIC, aBoxThatReachesBeyondTheFileIsNotComplete) {
  const std::string bytes = samples::heic();
  const std::size_t data = bytes.find("mdat") - 4;
  EXPECT_FALSE(isComplete(withNumber(bytes, data, 129)));
  EXPECT_FALSE(isComplete(withNumber(bytes, data, 127)));
  EXPECT_FALSE(isComplete(withNumber(bytes, data, 7)));
}

TEST(CompleteHEIC, aBoxUpToTheEndOfTheFileProvesNothing) {
  const std::string bytes = samples::heic();
  EXPECT_FALSE(isComplete(withNumber(bytes, bytes.find("mdat") - 4, 0)));
}

TEST(CompleteHEIC, aFileOfBoxesWithoutADescriptionIsNotComplete) {
  const std::string bytes = samples::heic();
  EXPECT_FALSE(isComplete(bytes.substr(0, bytes.find("meta") - 4) + bytes.substr(bytes.find("mdat") - 4)));
}

TEST(CompleteFormats, otherKindsAreNeverCompleteByThemselves) {
  EXPECT_FALSE(isComplete(std::string("GIF89a\x01\0\x01\0\0\0\0;", 14)));
  EXPECT_FALSE(isComplete("plain text\n"));
  EXPECT_FALSE(isComplete(""));
}

void runAllParsers(const std::string& bytes) {
  MemorySource complete(bytes);
  (void)isCompleteByFormat(complete);
  for (const auto parse : {isCompletePNG, isCompleteJPEG, isCompletePDF, isCompleteTIFF, isCompleteHEIC}) {
    MemorySource source(bytes);
    (void)parse(source);
  }
  MemorySource camera(bytes);
  (void)isCameraPicture(camera);
  MemorySource text(bytes);
  (void)hasScreenshotToolText(text);
}

TEST(CompleteFormats, anyBytesAreReadWithoutHarm) {
  EXPECT_TRUE(rc::check("random bytes behind every known head", [] {
    static const std::vector<std::string> kHeads{std::string("\x89PNG\r\n\x1a\n", 8),
                                                 "\xFF\xD8\xFF",
                                                 "%PDF-",
                                                 std::string("II*\0", 4),
                                                 std::string("MM\0*", 4),
                                                 std::string("\0\0\0\x18"
                                                             "ftypheic",
                                                             12),
                                                 ""};
    const auto head = *rc::gen::elementOf(kHeads);
    runAllParsers(head + *rc::gen::arbitrary<std::string>());
  }));
}

TEST(CompleteFormats, flippedBitsAreReadWithoutHarm) {
  const auto wholes = samples::all();
  std::mt19937 random(20261115);  // a fixed seed: a failure comes again
  const auto below = [&](std::size_t limit) {
    return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random);
  };
  for (int round = 0; round < 20000; ++round) {
    std::string bytes = wholes[below(wholes.size())].second;
    for (std::size_t changes = 1 + below(8); changes > 0; --changes) {
      bytes[below(bytes.size())] = static_cast<char>(below(256));
    }
    if (below(4) == 0) {
      bytes.resize(below(bytes.size()));
    }
    runAllParsers(bytes);
  }
}

TEST(CompleteFormats, aHostileFileCostsBoundedWork) {
  // Every count at its highest, at the place where a reader follows it.
  std::string bytes = samples::tiff({.order = std::endian::big, .pages = 3});
  for (std::size_t place = 8; place + 4 <= bytes.size(); ++place) {
    const std::string hostile = withNumber(bytes, place, 0xFFFFFFFF);
    MemorySource source(hostile);
    (void)isCompleteTIFF(source);
  }
  MemorySource source(bytes);
  std::uint64_t total = 0;
  while (source.read(0, 512)) {
    total += 512;
  }
  EXPECT_LE(total, 2048U * 512U);
  EXPECT_FALSE(source.read(0, 1));
}

// Files as a common encoder writes them, cut off anywhere.
TEST(CompleteFormats, anEncodersFilesAreCompleteWithTheirLastByteAndNotBefore) {
  const TemporaryFolder folder;
  for (const std::string arguments :
       {"a.png", "-interlace Plane a.jpg", "b.jpg", "-compress zip a.tiff", "-compress none -endian MSB b.tiff",
        "-compress lzw -define tiff:rows-per-strip=1 c.tiff", "a.heic"}) {
    const std::string name = arguments.substr(arguments.rfind(' ') + 1);
    const std::string options = arguments.substr(0, arguments.size() - name.size());
    const FileURL file = folder / name;
    const std::string command = "convert -size 70x60 plasma:red-blue -seed 4 " + options + file.path();
    ASSERT_EQ(std::system(command.c_str()), 0) << command;
    const std::string bytes = contents(file);
    EXPECT_TRUE(isComplete(bytes)) << arguments;
    for (std::size_t length = 0; length < bytes.size(); ++length) {
      ASSERT_FALSE(isComplete(std::string_view(bytes).substr(0, length))) << arguments << " cut off at " << length;
    }
  }
}

}  // namespace
}  // namespace quenlio
