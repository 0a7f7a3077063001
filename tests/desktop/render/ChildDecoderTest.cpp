// Whatever the child does, the program goes on.
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <future>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "desktop/render/ChildDecoder.h"
#include "desktop/render/DecoderProtocol.h"

#include "tests/desktop/render/Pictures.h"

namespace quenlio::test {
namespace {

constexpr Fit kFit{QSize(8, 4), Fit::Mode::centred};

class ChildDecoderTest : public testing::Test {
 protected:
  ChildDecoderTest() : file_(::open(folder_.write("a.tiff", tiffBytes(quarters({16, 8}))).path().c_str(), O_RDONLY)) {}
  ~ChildDecoderTest() override { ::close(file_); }

  // A child that runs these commands.
  [[nodiscard]] std::optional<DecodedImage> decodeWith(
      const std::string& commands, std::chrono::milliseconds patience = std::chrono::seconds(15)) const {
    const FileURL program = folder_.write("child", "#!/bin/sh\n" + commands + "\n");
    ::chmod(program.path().c_str(), 0700);
    return ChildDecoder(program, patience).decode(file_, PictureKind::tiff, kFit);
  }

  // A child that answers with these bytes.
  [[nodiscard]] std::optional<DecodedImage> decodeAnswer(const decoder::Header& header, std::size_t pixelBytes,
                                                         char fill = '\xFF') const {
    std::string answer(reinterpret_cast<const char*>(&header), sizeof header);
    folder_.write("answer", answer + std::string(pixelBytes, fill));
    return decodeWith("exec cat \"${0%child}answer\"");
  }

  static decoder::Header header(int width, int height) {
    return {.width = width, .height = height, .pointWidth = 16, .pointHeight = 8};
  }

  PictureFolder folder_;
  int file_;
};

TEST_F(ChildDecoderTest, givesTheRealChildsPicture) {
  const auto decoded = ChildDecoder(FileURL(QUENLIO_DECODER)).decode(file_, PictureKind::tiff, kFit);
  ASSERT_TRUE(decoded);
  EXPECT_EQ(decoded->image.size(), QSize(8, 4));
  EXPECT_EQ(decoded->pointSize, QSizeF(16, 8));
  EXPECT_EQ(decoded->image.pixel(0, 0), qRgb(255, 0, 0));
  EXPECT_EQ(decoded->image.pixel(7, 3), qRgb(255, 255, 255));
}

TEST_F(ChildDecoderTest, hasNothingWithoutItsProgram) {
  EXPECT_FALSE(ChildDecoder(folder_.url("missing")).decode(file_, PictureKind::tiff, kFit));
}

TEST_F(ChildDecoderTest, hasNothingWhenTheChildFails) {
  EXPECT_FALSE(decodeWith("exit 1"));
  EXPECT_FALSE(decodeWith("exit 0"));
  EXPECT_FALSE(decodeWith("kill -SEGV $$"));
  EXPECT_FALSE(decodeWith("printf QNLIMG01; kill -SEGV $$"));
  EXPECT_FALSE(decodeWith("head -c 1000000 /dev/zero"));
}

TEST_F(ChildDecoderTest, takesAWholeAnswer) {
  EXPECT_TRUE(decodeAnswer(header(8, 4), 8 * 4 * 4));
}

TEST_F(ChildDecoderTest, refusesAnAnswerThatWasNotAskedFor) {
  EXPECT_FALSE(decodeAnswer(header(8, 4), 8 * 4 * 4 - 1));
  EXPECT_FALSE(decodeAnswer(header(8, 3), 8 * 4 * 4));
  EXPECT_FALSE(decodeAnswer(header(9, 4), 9 * 4 * 4));
  EXPECT_FALSE(decodeAnswer(header(-8, -4), 8 * 4 * 4));
  EXPECT_FALSE(decodeAnswer(header(60'000, 60'000), 8 * 4 * 4));
  decoder::Header strange = header(8, 4);
  strange.magic[0] = 'X';
  EXPECT_FALSE(decodeAnswer(strange, 8 * 4 * 4));
  strange = header(8, 4);
  strange.pointWidth = -1;
  EXPECT_FALSE(decodeAnswer(strange, 8 * 4 * 4));
}

TEST_F(ChildDecoderTest, letsNoColourExceedItsAlpha) {
  const auto decoded = decodeAnswer(header(8, 4), 8 * 4 * 4, '\x40');
  ASSERT_TRUE(decoded);
  EXPECT_EQ(*reinterpret_cast<const QRgb*>(decoded->image.constScanLine(0)), 0x40404040U);
  std::string pixels;
  for (int i = 0; i < 8 * 4; ++i) {
    pixels += "\xFF\xFF\xFF\x10";
  }
  const decoder::Header whole = header(8, 4);
  folder_.write("answer", std::string(reinterpret_cast<const char*>(&whole), sizeof whole) + pixels);
  const auto bounded = decodeWith("exec cat \"${0%child}answer\"");
  ASSERT_TRUE(bounded);
  EXPECT_EQ(*reinterpret_cast<const QRgb*>(bounded->image.constScanLine(0)), 0x10101010U);
}

TEST_F(ChildDecoderTest, killsAChildThatTakesTooLong) {
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_FALSE(decodeWith("exec sleep 60", std::chrono::milliseconds(200)));
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(20));
}

TEST_F(ChildDecoderTest, stoppingEndsAChildThatIsWaitedFor) {
  const FileURL started = folder_.url("started");
  const FileURL program = folder_.write("child", "#!/bin/sh\n: >'" + started.path() + "'\nexec sleep 600\n");
  ::chmod(program.path().c_str(), 0700);
  const ChildDecoder decoder(program, std::chrono::minutes(9));
  auto answer = std::async(std::launch::async,
                           [copy = decoder, this] { return copy.decode(file_, PictureKind::tiff, kFit).has_value(); });
  while (!std::filesystem::exists(started.path()) &&
         answer.wait_for(std::chrono::milliseconds(2)) != std::future_status::ready) {
  }
  decoder.stop();
  ASSERT_EQ(answer.wait_for(std::chrono::seconds(20)), std::future_status::ready);
  EXPECT_FALSE(answer.get());
}

TEST_F(ChildDecoderTest, startsNothingThatIsWaitedForAfterItWasStopped) {
  const FileURL program = folder_.write("child", "#!/bin/sh\nexec sleep 600\n");
  ::chmod(program.path().c_str(), 0700);
  const ChildDecoder decoder(program, std::chrono::minutes(9));
  decoder.stop();
  auto answer =
      std::async(std::launch::async, [&] { return decoder.decode(file_, PictureKind::tiff, kFit).has_value(); });
  ASSERT_EQ(answer.wait_for(std::chrono::seconds(20)), std::future_status::ready);
  EXPECT_FALSE(answer.get());
}

TEST_F(ChildDecoderTest, leavesNoProcessBehind) {
  EXPECT_FALSE(decodeWith("exec sleep 60", std::chrono::milliseconds(50)));
  EXPECT_FALSE(decodeWith("exit 1"));
  EXPECT_TRUE(decodeAnswer(header(8, 4), 8 * 4 * 4));
  EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1);
  EXPECT_EQ(errno, ECHILD);
}

}  // namespace
}  // namespace quenlio::test
