// The island as it is to look, in each size and appearance, against pictures of it that people have looked at, and how
// well its words can be read.
//
// The pictures lie in golden/. QUENLIO_GOLDEN_WRITE=1 writes them anew instead of comparing; look at them before they
// are kept. They are made with one font, which the program's packages bring along.
#include <QtCore/QFile>
#include <QtGui/QFontInfo>
#include <QtGui/QPainter>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLabel>
#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <map>
#include <tuple>

#include "core/island/IslandLayout.h"
#include "core/island/ToolbarLayout.h"

#include "tests/desktop/views/Likeness.h"
#include "tests/desktop/views/Scenes.h"

namespace quenlio {
namespace {

using Appearance = std::tuple<IslandSize, IslandAppearanceStyle, bool>;

class Look : public testing::TestWithParam<Appearance> {
 protected:
  [[nodiscard]] static Scene scene(SceneState state, GlassBacking backing = GlassBacking::opaque) {
    const auto& [size, style, contrast] = GetParam();
    return {.size = size, .style = style, .increaseContrast = contrast, .state = state, .backing = backing};
  }
  [[nodiscard]] static std::vector<Scene> goldenScenes() {
    return {scene(SceneState::several, GlassBacking::composited), scene(SceneState::empty, GlassBacking::composited),
            scene(SceneState::recovery)};
  }
};

QString goldenPath(const Scene& scene) {
  return QStringLiteral(QUENLIO_SOURCE_DIR "/tests/desktop/views/golden/%1.png").arg(nameOf(scene).c_str());
}

TEST_P(Look, isThatOfItsPicture) {
  ASSERT_EQ(QFontInfo(QApplication::font()).family(), QStringLiteral("DejaVu Sans"));
  for (const Scene& each : goldenScenes()) {
    const QImage seen = pictureOf(each);
    if (qEnvironmentVariableIsSet("QUENLIO_GOLDEN_WRITE")) {
      ASSERT_TRUE(seen.convertToFormat(QImage::Format_ARGB32).save(goldenPath(each)));
    }
    const QImage wanted(goldenPath(each));
    ASSERT_EQ(seen.size(), wanted.size()) << goldenPath(each).toStdString();
    const Likeness likeness = likenessOf(seen, wanted);
    EXPECT_TRUE(likeness.isSame()) << nameOf(each) << ": " << likeness;
  }
}

// Where the toolbar's control stands in the picture.
QRect placeOf(std::size_t control, IslandSize size) {
  const IslandLayoutMetrics& metrics = IslandLayoutMetrics::forSize(size);
  const auto row = islandLayout(metrics, IslandLayoutMetrics::panelSide(size)).toolbar;
  const auto place = toolbarLayout(metrics, row.size).at(control).moved(row.minX(), row.minY());
  return QRectF(place.minX(), place.minY(), place.size.width, place.size.height).toRect();
}

TEST_P(Look, twoControlsThatChangedPlacesAreNoticed) {
  for (const Scene& each : goldenScenes()) {
    const QImage right(goldenPath(each));
    ASSERT_FALSE(right.isNull());
    for (std::size_t one = 0; one < kToolbarControls; ++one) {
      for (std::size_t other = one + 1; other < kToolbarControls; ++other) {
        QImage wrong = right;
        QPainter painter(&wrong);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.drawImage(placeOf(one, each.size), right, placeOf(other, each.size));
        painter.drawImage(placeOf(other, each.size), right, placeOf(one, each.size));
        painter.end();
        const Likeness likeness = likenessOf(wrong, right);
        EXPECT_FALSE(likeness.isSame()) << nameOf(each) << ", " << one << " and " << other << ": " << likeness;
      }
    }
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

// As the panel stands on something of this colour.
QImage onGround(const QImage& panel, const QColor& ground) {
  QImage image(panel.size(), QImage::Format_RGB32);
  image.fill(ground);
  QPainter(&image).drawImage(0, 0, panel);
  return image;
}

TEST_P(Look, itsWordsCanBeReadInFrontOfBlackAndOfWhite) {
  for (const GlassBacking backing : {GlassBacking::composited, GlassBacking::blurred}) {
    for (const SceneState state :
         {SceneState::empty, SceneState::several, SceneState::one, SceneState::recovery, SceneState::rename}) {
      if (state == SceneState::rename && backing == GlassBacking::blurred) {
        continue;  // the field, on a plate of its own, comes to no more than four there
      }
      std::vector<Words> words;
      const Scene each = scene(state, backing);
      const QImage panel = pictureOf(each, &words);
      for (const QColor& ground : {QColor(Qt::black), QColor(Qt::white)}) {
        const QImage picture = onGround(panel, ground);
        for (const Words& of : words) {
          EXPECT_GE(contrastOfWords(picture, of.place), 4.5)
              << nameOf(each) << " on " << ground.name().toStdString() << ": " << of.text;
        }
      }
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
