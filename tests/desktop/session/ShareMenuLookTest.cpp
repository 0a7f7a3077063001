// The share menu's icons and colours.
#include <QtGui/QImage>
#include <QtWidgets/QMenu>
#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <utility>

#include "desktop/linux/session/ShareMenuLook.h"

#include "tests/desktop/system/TemporaryFolder.h"

namespace quenlio {
namespace {

QColor middleOf(const QIcon& icon) {
  return icon.pixmap(16).toImage().pixelColor(8, 8);
}

DesktopEntry entryWith(const std::string& name, const std::string& icon) {
  DesktopEntry entry;
  entry.name = name;
  entry.icon = icon;
  return entry;
}

TEST(ShareMenuLook, findsAnIconByItsPathAndAmongOlderOnes) {
  const TemporaryFolder folder;
  check(::mkdir((folder / "pixmaps").path().c_str(), 0755) == 0, "mkdir");
  QImage picture(48, 48, QImage::Format_RGB32);
  picture.fill(Qt::red);
  const FileURL file = folder / "pixmaps/old-viewer.png";
  ASSERT_TRUE(picture.save(QString::fromStdString(file.path())));
  EXPECT_EQ(middleOf(iconOf(entryWith("Viewer", file.path()), {})), QColor(Qt::red));
  EXPECT_EQ(middleOf(iconOf(entryWith("Viewer", "old-viewer"), {folder.url()})), QColor(Qt::red));
  EXPECT_EQ(middleOf(iconOf(entryWith("Viewer", "old-viewer.png"), {folder.url()})), QColor(Qt::red));
}

TEST(ShareMenuLook, givesAProgramWithoutAnIconATileOfItsOwn) {
  const QImage one = iconOf(entryWith("Viewer", ""), {}).pixmap(16).toImage();
  const QImage again = iconOf(entryWith("Viewer", "no-such-icon"), {}).pixmap(16).toImage();
  const QImage other = iconOf(entryWith("Annotate", "/no/such/icon.png"), {}).pixmap(16).toImage();
  EXPECT_FALSE(one.isNull());
  EXPECT_EQ(one, again);
  EXPECT_NE(one, other);
}

// The lightest and the darkest pixel in the body of a menu that shows one row of text.
std::pair<double, double> luminances(const ShareMenuLook& look) {
  QMenu menu;
  dress(menu, look);
  menu.addAction(QStringLiteral("MMMMMMMM"));
  const QImage image = menu.grab().toImage();
  const auto luminance = [](QRgb pixel) {
    const auto linear = [](int value) { return std::pow((value / 255.0 + 0.055) / 1.055, 2.4); };
    return 0.2126 * linear(qRed(pixel)) + 0.7152 * linear(qGreen(pixel)) + 0.0722 * linear(qBlue(pixel));
  };
  double darkest = 1;
  double lightest = 0;
  for (int y = 8; y < image.height() - 8; ++y) {
    for (int x = 12; x < image.width() - 12; ++x) {
      darkest = std::min(darkest, luminance(image.pixel(x, y)));
      lightest = std::max(lightest, luminance(image.pixel(x, y)));
    }
  }
  return {darkest, lightest};
}

TEST(ShareMenuLook, isReadableInEveryLook) {
  for (const bool isDark : {false, true}) {
    const auto [darkest, lightest] = luminances({.isDark = isDark});
    EXPECT_GE((lightest + 0.05) / (darkest + 0.05), 7) << isDark;
  }
}

}  // namespace
}  // namespace quenlio
