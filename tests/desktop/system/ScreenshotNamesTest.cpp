#include <algorithm>
#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <string>

#include "core/base/FileURL.h"

#include "desktop/linux/system/ScreenshotNames.h"

namespace quenlio {
namespace {

TEST(ScreenshotNames, theDefaultNameOfEachToolIsKnown) {
  for (const std::string stem : {
           "Screenshot from 2026-11-15 21-04-33",
           "Screenshot From 2026-11-15 21-04-33",
           "Screenshot_20261115_210433",
           "Screenshot_2026-11-15_21-04-33",
           "Screenshot at 2026-11-15 21-04-33",
           "Screenshot from 2026-11-15 21.04.33",
           "Screenshot from 2026-11-15 21.04.33@2x",
           "2026-11-15_21-04",
           "20261115_21h04m33s_grim",
           "2026-11-15-210433_1920x1080_scrot",
           "2026-11-15-210433_1920x1080_scrot_000",
           "2026-11-15-210433_hyprshot",
           "ksnip_20261115-210433",
           "2026-11-15_21-04-33",
           "2026-11-15T21:04:33+01:00",
           "2026-11-15T21:04:33,123456789+01:00",
           "swappy-20261115_210433",
           "DeepinScreenshot_select-area_20261115210433",
       }) {
    EXPECT_TRUE(isScreenshotName(stem)) << stem;
  }
}

TEST(ScreenshotNames, translatedNamesAreKnown) {
  for (const std::string between : {
           "Bildschirmfoto vom ", "Capture d’écran du ", "Capture d'écran du ", "Captura de pantalla de ",
           "Captura desde ",      "Schermata del ",      "Zrzut ekranu z ",     "Schermafdruk van ",
           "Skärmbild från ",     "Снимок экрана от ",   "スクリーンショット ", "截图 ",
           "스크린샷 ",           "Captura de tela de ", "Captura de ecrã de ", "Snímek obrazovky z ",
           "Skærmbillede fra ",   "Skjermbilde fra ",    "Kuvakaappaus – ",     "Képernyőkép – ",
           "Ekran Görüntüsü - ",  "Знімок екрана з ",    "屏幕截图 ",           "螢幕擷圖 ",
           "Bildschirmfoto_",
       }) {
    EXPECT_TRUE(isScreenshotName(between + "2026-11-15 21-04-33")) << between;
  }
  EXPECT_TRUE(isScreenshotName("2026-11-15 21-04-33 のスクリーンショット"));
}

TEST(ScreenshotNames, everyWordOfTheTableNamesAFileWithItsMoment) {
  for (const std::string_view word : screenshotWords()) {
    EXPECT_TRUE(isScreenshotName(std::string(word) + " 2026-11-15 21-04-33")) << word;
    EXPECT_FALSE(isScreenshotName(word)) << word;
  }
}

TEST(ScreenshotNames, whatToolsAddWhenANameIsTakenIsKnown) {
  for (const std::string suffix : {"-1", " - 1", "_1", " (1)", "-23", " - 107"}) {
    EXPECT_TRUE(isScreenshotName("Screenshot from 2026-11-15 21-04-33" + suffix)) << suffix;
    EXPECT_TRUE(isScreenshotName("Screenshot_20261115_210433" + suffix)) << suffix;
    EXPECT_TRUE(isScreenshotName("2026-11-15_21-04" + suffix)) << suffix;
    EXPECT_TRUE(isScreenshotName("20261115_21h04m33s_grim" + suffix)) << suffix;
  }
}

TEST(ScreenshotNames, theCaseOfAsciiLettersDoesNotCount) {
  EXPECT_TRUE(isScreenshotName("SCREENSHOT FROM 2026-11-15 21-04-33"));
  EXPECT_TRUE(isScreenshotName("screenshot_20261115_210433"));
}

TEST(ScreenshotNames, otherNamesAreNotTaken) {
  for (const std::string stem : {
           "",
           "Holiday",
           "Screenshot",
           "Screenshot 1",
           "Screenshot from the beach",
           "My Screenshot_20261115_210433",
           "Screenshot from 2026-11-15",
           "Screenshot from 2026-11-15 21-04-33 copy",
           "IMG_20261115_210433",
           "20261115_210433",
           "2026-11-15",
           "2026-11-15_21",
           "Screenshot_20261115_21043",
           "ksnip_",
           "_grim",
           "Screenshot of a very long story that nobody would ever tell in a name 2026-11-15 21-04-33",
       }) {
    EXPECT_FALSE(isScreenshotName(stem)) << stem;
  }
}

TEST(ScreenshotNames, foldersKeptForScreenshotsAreKnown) {
  for (const std::string name :
       {"Screenshots", "screenshots", "Bildschirmfotos", "Captures d’écran", "Capturas de pantalla", "Schermate",
        "Zrzuty ekranu", "Skärmbilder", "Снимки экрана", "スクリーンショット", "截图", "스크린샷"}) {
    EXPECT_TRUE(isScreenshotFolderName(name)) << name;
  }
  for (const std::string name : {"", "Pictures", "Screenshots 2", "My Screenshots", "Desktop"}) {
    EXPECT_FALSE(isScreenshotFolderName(name)) << name;
  }
}

TEST(ScreenshotNames, thePatternsNameNoPictureOfACamera) {
  for (const std::string stem :
       {"IMG_4711", "DSC00042", "PXL_20261115_210433123", "P1000123", "DJI_0001", "MVIMG_20261115_210433"}) {
    EXPECT_FALSE(isScreenshotName(stem)) << stem;
  }
}

TEST(ScreenshotNames, anyBytesAreReadWithoutHarm) {
  EXPECT_TRUE(rc::check("any name", [](const std::string& name) {
    (void)isScreenshotName(name);
    RC_ASSERT(!isScreenshotName(name + "/"));
    (void)isScreenshotFolderName(name);
  }));
}

// What lands in a folder that a desktop has made by itself is known as a screenshot by the folder alone.
TEST(ScreenshotNames, everyFolderThatADesktopMakesIsOneOfTheFolderWords) {
  const auto words = screenshotFolderWords();
  for (const auto& [locale, name] : screenshotFolderNames()) {
    EXPECT_EQ(std::ranges::count(words, name), 1) << locale;
    EXPECT_EQ(std::ranges::count(screenshotFolderNames(), locale, &ScreenshotFolderName::locale), 1) << locale;
  }
}

// The signs that stand for digits and marks in patterns must not hide in the words.
TEST(ScreenshotNames, theWordsAreFreeOfThePatternsSigns) {
  for (const auto words : {screenshotWords(), screenshotFolderWords()}) {
    for (const std::string_view word : words) {
      EXPECT_EQ(word.find_first_of("#+~0123456789"), std::string_view::npos) << word;
      EXPECT_FALSE(word.empty());
      EXPECT_EQ(std::ranges::count(words, word), 1) << word;
    }
  }
}

}  // namespace
}  // namespace quenlio
