// The island as it is to look, in each size and appearance, against pictures of it that people have looked at, and how
// well its words can be read.
//
// The pictures lie in golden/. QUENLIO_GOLDEN_WRITE=1 writes them anew instead of comparing; look at them before they
// are kept. They are made with one font, which the program's packages bring along.
#include <QtCore/QFile>
#include <QtGui/QFontInfo>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLabel>
#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <map>
#include <tuple>

#include "tests/desktop/views/Scenes.h"

namespace quenlio {
namespace {

using Appearance = std::tuple<IslandSize, IslandAppearanceStyle, bool>;

// Letters are drawn a little differently by each version of the font library.
constexpr int kChannelTolerance = 40;       // of 255, of a pixel that counts as the same
constexpr double kDifferentPixels = 0.004;  // the share that may differ
constexpr double kMeanDifference = 0.6;     // of 255, over all channels of all pixels

class Look : public testing::TestWithParam<Appearance> {
 protected:
  [[nodiscard]] static Scene scene(SceneState state, GlassBacking backing = GlassBacking::opaque) {
    const auto& [size, style, contrast] = GetParam();
    return {.size = size, .style = style, .increaseContrast = contrast, .state = state, .backing = backing};
  }
};

QString goldenPath(const Scene& scene) {
  return QStringLiteral(QUENLIO_SOURCE_DIR "/tests/desktop/views/golden/%1.png").arg(nameOf(scene).c_str());
}

void compare(const QImage& seen, const QImage& wanted, const std::string& name) {
  ASSERT_EQ(seen.size(), wanted.size()) << name;
  std::size_t different = 0;
  double sum = 0;
  for (int y = 0; y < seen.height(); ++y) {
    for (int x = 0; x < seen.width(); ++x) {
      const QRgb a = seen.pixel(x, y);
      const QRgb b = wanted.pixel(x, y);
      const int channels[] = {std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)),
                              std::abs(qBlue(a) - qBlue(b)), std::abs(qAlpha(a) - qAlpha(b))};
      different += *std::ranges::max_element(channels) > kChannelTolerance ? 1U : 0U;
      for (const int channel : channels) {
        sum += channel;
      }
    }
  }
  const double pixels = static_cast<double>(seen.width()) * seen.height();
  EXPECT_LE(static_cast<double>(different) / pixels, kDifferentPixels) << name;
  EXPECT_LE(sum / pixels / 4, kMeanDifference) << name;
}

TEST_P(Look, isThatOfItsPicture) {
  ASSERT_EQ(QFontInfo(QApplication::font()).family(), QStringLiteral("DejaVu Sans"));
  for (const Scene& each : {scene(SceneState::several, GlassBacking::composited), scene(SceneState::recovery)}) {
    const QImage seen = pictureOf(each).convertToFormat(QImage::Format_ARGB32);
    if (qEnvironmentVariableIsSet("QUENLIO_GOLDEN_WRITE")) {
      ASSERT_TRUE(seen.save(goldenPath(each)));
      continue;
    }
    const QImage wanted(goldenPath(each));
    ASSERT_FALSE(wanted.isNull()) << goldenPath(each).toStdString();
    compare(seen, wanted.convertToFormat(QImage::Format_ARGB32), nameOf(each));
  }
}

// The contrast of two colours as people see it: 1 for none, 21 for black on white.
double luminance(const QColor& color) {
  const auto linear = [](double channel) {
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

double contrast(const QColor& a, const QColor& b) {
  const double one = luminance(a) + 0.05;
  const double other = luminance(b) + 0.05;
  return std::max(one, other) / std::min(one, other);
}

// Of the words in this part of the picture: between what they stand on, which most of the pixels are, and the middle of
// their strokes, which is what is farthest from that.
double contrastOfWords(const QImage& picture, const QRect& part) {
  std::map<QRgb, int> counts;
  for (int y = part.top(); y <= part.bottom(); ++y) {
    for (int x = part.left(); x <= part.right(); ++x) {
      ++counts[picture.pixel(x, y)];
    }
  }
  const QColor ground(std::ranges::max_element(counts, {}, [](const auto& entry) { return entry.second; })->first);
  double most = 1;
  for (const auto& [color, count] : counts) {
    most = std::max(most, contrast(QColor(color), ground));
  }
  return most;
}

TEST_P(Look, itsWordsCanBeRead) {
  const double enough = std::get<2>(GetParam()) ? 7 : 4.5;
  for (const SceneState state : {SceneState::empty, SceneState::several, SceneState::one, SceneState::recovery,
                                 SceneState::recoveryHover, SceneState::broken, SceneState::rename}) {
    std::vector<Words> words;
    const QImage picture = pictureOf(scene(state), &words);
    EXPECT_FALSE(words.empty());
    if (state == SceneState::recoveryHover) {
      std::erase_if(words, [](const Words& each) { return each.text != "Allow Access"; });  // its help hides others
    }
    for (const Words& each : words) {
      EXPECT_GE(contrastOfWords(picture, each.place), enough) << nameOf(scene(state)) << ": " << each.text;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Appearances, Look,
                         testing::Combine(testing::Values(IslandSize::extraSmall, IslandSize::small, IslandSize::medium,
                                                          IslandSize::large, IslandSize::xLarge),
                                          testing::Values(IslandAppearanceStyle::light, IslandAppearanceStyle::dark),
                                          testing::Bool()));

}  // namespace
}  // namespace quenlio
