// What a picture's header tells without its pixels, and decoding that nobody waits for any more.
#include <QSizeF>
#include <chrono>
#include <filesystem>
#include <future>
#include <gtest/gtest.h>
#include <stop_token>
#include <sys/stat.h>

#include "desktop/render/ImageDecoder.h"

#include "tests/desktop/render/Pictures.h"

namespace quenlio::test {
namespace {

class PointSizeTest : public testing::Test {
 protected:
  PictureFolder folder;
  ImageDecoder decoder = realDecoder();
  std::stop_source stopping;
};

TEST_F(PointSizeTest, isWhatDecodingTellsToo) {
  QImage dense = quarters({400, 240});
  dense.setDotsPerMeterX(5669);  // 144 dots an inch
  dense.setDotsPerMeterY(5669);
  const std::string jpeg = jpegBytes(quarters({320, 160}));
  for (const FileURL& url : {
           folder.save("plain.png", quarters({300, 200}), "PNG"),
           folder.save("dense.png", dense, "PNG"),
           folder.write("plain.jpg", jpeg),
           folder.write("turned.jpg", jpegTurned(jpeg, 6)),
           folder.write("progressive.jpg", jpegBytes(quarters({320, 160}), 95, true)),
       }) {
    const auto decoded = decoder.decode(url, QSize(64, 64), false);
    ASSERT_TRUE(decoded) << url.path();
    EXPECT_EQ(decoder.pointSize(url), decoded->pointSize) << url.path();
  }
}

TEST_F(PointSizeTest, aDensePictureIsHalfAsLarge) {
  QImage dense = quarters({400, 240});
  dense.setDotsPerMeterX(5669);
  dense.setDotsPerMeterY(5669);
  EXPECT_EQ(decoder.pointSize(folder.save("dense.png", dense, "PNG")), QSizeF(200, 120));
}

TEST_F(PointSizeTest, theHeaderAloneIsEnough) {
  EXPECT_EQ(decoder.pointSize(folder.write("hollow.png", hollowPng(8000, 5000))), QSizeF(8000, 5000));
}

TEST_F(PointSizeTest, whatIsNotOpenedHasNone) {
  EXPECT_FALSE(decoder.pointSize(folder.url("none.png")));
  EXPECT_FALSE(decoder.pointSize(folder.write("text.png", "no picture")));
  EXPECT_FALSE(decoder.pointSize(folder.write("cut.png", hollowPng(800, 500).substr(0, 20))));
  EXPECT_FALSE(decoder.pointSize(folder.write("bomb.png", hollowPng(60'000, 60'000))));
  EXPECT_FALSE(decoder.pointSize(folder.write("bomb.jpg", jpegClaiming(jpegBytes(quarters({8, 8})), 65'000, 65'000))));
  EXPECT_FALSE(decoder.pointSize(folder.write("a.pdf", pdfBytes(200, 100)))) << "only decoding tells";
}

TEST_F(PointSizeTest, decodingThatIsStoppedGivesNothing) {
  const std::vector<FileURL> files{
      folder.save("plain.png", quarters({300, 200}), "PNG"),
      folder.write("plain.jpg", jpegBytes(quarters({320, 160}))),
      folder.write("progressive.jpg", jpegBytes(quarters({320, 160}), 95, true)),
      folder.write("a.tiff", tiffBytes(quarters({64, 64}))),
  };
  for (const FileURL& url : files) {
    EXPECT_TRUE(decoder.decode(url, QSize(64, 64), false, stopping.get_token())) << url.path();
  }
  stopping.request_stop();
  for (const FileURL& url : files) {
    EXPECT_FALSE(decoder.decode(url, QSize(64, 64), false, stopping.get_token())) << url.path();
  }
}

TEST_F(PointSizeTest, aStopEndsAChildThatIsWaitedFor) {
  const FileURL started = folder.url("started");
  const FileURL program = folder.write("child", "#!/bin/sh\n: >'" + started.path() + "'\nexec sleep 600\n");
  ::chmod(program.path().c_str(), 0700);
  const ImageDecoder slow(ChildDecoder(program, std::chrono::minutes(9)));
  const FileURL url = folder.write("a.tiff", tiffBytes(quarters({64, 64})));
  auto answer = std::async(std::launch::async, [&slow, &url, stop = stopping.get_token()] {
    return slow.decode(url, QSize(64, 64), false, stop).has_value();
  });
  while (!std::filesystem::exists(started.path()) &&
         answer.wait_for(std::chrono::milliseconds(2)) != std::future_status::ready) {
  }
  stopping.request_stop();
  ASSERT_EQ(answer.wait_for(std::chrono::seconds(20)), std::future_status::ready);
  EXPECT_FALSE(answer.get());
}

}  // namespace
}  // namespace quenlio::test
