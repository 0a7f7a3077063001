// The tables of ScreenshotNames.h. Words hold no digits and none of the signs '#', '+' and '~'.
#include "desktop/linux/system/ScreenshotNames.h"

namespace quenlio {

std::span<const std::string_view> screenshotWords() {
  static constexpr std::string_view kWords[] = {
      "Screenshot",           // English, and the tools that do not translate
      "Screen Shot",          //
      "Bildschirmfoto",       // German
      "Bildschirmaufnahme",   //
      "Capture d’écran",      // French, with both apostrophes
      "Capture d'écran",      //
      "Capture du",           //
      "Copie d’écran",        //
      "Captura de pantalla",  // Spanish, Catalan, Galician
      "Captura desde",        // Spanish
      "Captura des de",       // Catalan
      "Captura de tela",      // Portuguese of Brazil
      "Captura de ecrã",      // Portuguese
      "Captura de ecrán",     //
      "Schermata",            // Italian
      "Istantanea",           //
      "Zrzut ekranu",         // Polish
      "Schermafdruk",         // Dutch
      "Schermopname",         //
      "Schermafbeelding",     //
      "Skärmbild",            // Swedish
      "Skjermbilde",          // Norwegian
      "Skjermdump",           //
      "Skærmbillede",         // Danish
      "Kuvakaappaus",         // Finnish
      "Ruutukaappaus",        //
      "Skjámynd",             // Icelandic
      "Снимок экрана",        // Russian
      "Скриншот",             //
      "Знімок екрана",        // Ukrainian
      "Знімок екрану",        //
      "Здымак экрана",        // Belarusian
      "Снимка на екрана",     // Bulgarian
      "Снимка от",            //
      "Снимак екрана",        // Serbian
      "Snimak ekrana",        //
      "Snimka zaslona",       // Croatian
      "Slika zaslona",        //
      "Zaslonska slika",      // Slovenian
      "Posnetek zaslona",     //
      "Snímek obrazovky",     // Czech
      "Snímka obrazovky",     // Slovak
      "Képernyőkép",          // Hungarian
      "Captură de ecran",     // Romanian
      "Ekran görüntüsü",      // Turkish, with both capitals
      "Ekran Görüntüsü",      //
      "Στιγμιότυπο",          // Greek
      "Ekrano nuotrauka",     // Lithuanian
      "Ekrano kopija",        //
      "Ekrānattēls",          // Latvian
      "Ekrānuzņēmums",        //
      "Ekraanipilt",          // Estonian
      "Ekraanitõmmis",        //
      "Pantaila-argazkia",    // Basque
      "Pantaila-kaptura",     //
      "Ekrankopio",           // Esperanto
      "Gabhail-sgrìn",        // Scottish Gaelic
      "Cuplikan layar",       // Indonesian
      "Tangkapan layar",      //
      "Petikan skrin",        // Malay
      "Ảnh chụp màn hình",    // Vietnamese
      "Ảnh chụp từ",          //
      "スクリーンショット",   // Japanese
      "截图",                 // Chinese
      "截屏",                 //
      "屏幕截图",             //
      "螢幕截圖",             //
      "螢幕擷圖",             //
      "螢幕快照",             //
      "擷取畫面",             //
      "畫面擷圖",             //
      "스크린샷",             // Korean
      "화면 캡처",            //
      "צילום מסך",            // Hebrew
      "لقطة شاشة",            // Arabic
      "لقطة الشاشة",          //
      "نماگرفت",              // Persian
      "ภาพหน้าจอ",             // Thai
      "स्क्रीनशॉट",             // Hindi
      "DeepinScreenshot",     // Deepin, which puts what was taken in between
  };
  return kWords;
}

std::span<const std::string_view> screenshotNamePatterns() {
  static constexpr std::string_view kPatterns[] = {
      "####-##-##_##-##",                          // a popular capture tool
      "####-##-##_##-##-##",                       // what users of maim and slop give
      "####-##-##-##-##-##",                       //
      "########-######",                           //
      "########_##h##m##s_grim",                   // grim
      "########_##h##m##s",                        //
      "####-##-##T##:##:##~##:##",                 // grimshot and its kin, with the zone
      "####-##-##T##:##:##,+~##:##",               //
      "####-##-##T##:##:##",                       //
      "####-##-##-######_+x+_scrot",               // scrot
      "####-##-##-######_hyprshot",                // hyprshot
      "####-##-##-######_grimblast",               // grimblast
      "####-##-##-######_screenshot",              //
      "####-##-##_##-##-##_screenshot",            //
      "####-##-## ##-##-## のスクリーンショット",  // Japanese, older
      "ksnip_########-######",                     // ksnip
      "swappy-########-######",                    // swappy
      "swappy-########_######",                    //
      "satty-########-##:##:##",                   // satty
      "satty-####-##-##_##:##:##",                 //
      "wayshot-####_##_##-##_##_##",               // wayshot
      "screen-####-##-##-##-##-##",                // LXQt
      "maim-####-##-##-##-##-##",                  //
      "maim_########_######",                      //
  };
  return kPatterns;
}

std::span<const std::string_view> screenshotFolderWords() {
  static constexpr std::string_view kWords[] = {
      "Screenshots",            // English, and the tools that do not translate
      "Screenshot",             //
      "Screen Shots",           //
      "Bildschirmfotos",        // German
      "Captures d’écran",       // French, with both apostrophes
      "Captures d'écran",       //
      "Capturas de pantalla",   // Spanish, Galician
      "Capturas",               //
      "Captures de pantalla",   // Catalan
      "Capturas de tela",       // Portuguese of Brazil
      "Capturas de ecrã",       // Portuguese
      "Schermate",              // Italian
      "Zrzuty ekranu",          // Polish
      "Schermafdrukken",        // Dutch
      "Schermopnames",          //
      "Schermafbeeldingen",     //
      "Skärmbilder",            // Swedish
      "Skjermbilder",           // Norwegian
      "Skjermdumper",           //
      "Skærmbilleder",          // Danish
      "Kuvakaappaukset",        // Finnish
      "Снимки экрана",          // Russian
      "Знімки екрана",          // Ukrainian
      "Здымкі экрана",          // Belarusian
      "Снимки на екрана",       // Bulgarian
      "Снимци екрана",          // Serbian
      "Снимке екрана",          //
      "Snimke zaslona",         // Croatian
      "Slike zaslona",          //
      "Zaslonske slike",        // Slovenian
      "Posnetki zaslona",       //
      "Snímky obrazovky",       // Czech, Slovak
      "Képernyőképek",          // Hungarian
      "Capturi de ecran",       // Romanian
      "Ekran görüntüleri",      // Turkish, with both capitals
      "Ekran Görüntüleri",      //
      "Στιγμιότυπα",            // Greek
      "Στιγμιότυπα οθόνης",     //
      "Ekrano nuotraukos",      // Lithuanian
      "Ekrānattēli",            // Latvian
      "Ekraanipildid",          // Estonian
      "Ekraanitõmmised",        //
      "Pantaila-argazkiak",     // Basque
      "Ekrankopioj",            // Esperanto
      "Cuplikan layar",         // Indonesian
      "Tangkapan layar",        //
      "Ảnh chụp màn hình",      // Vietnamese
      "スクリーンショット",     // Japanese
      "截图",                   // Chinese
      "截屏",                   //
      "屏幕截图",               //
      "螢幕截圖",               //
      "螢幕擷圖",               //
      "螢幕快照",               //
      "畫面擷圖",               //
      "스크린샷",               // Korean
      "צילומי מסך",             // Hebrew
      "لقطات الشاشة",           // Arabic
      "نماگرفت‌ها",  // Persian
      "ภาพหน้าจอ",               // Thai
      "स्क्रीनशॉट",               // Hindi
  };
  return kWords;
}

std::span<const ScreenshotFolderName> screenshotFolderNames() {
  static constexpr ScreenshotFolderName kNames[] = {
      {"ca", "Captures de pantalla"}, {"cs", "Snímky obrazovky"},     {"da", "Skærmbilleder"},
      {"de", "Bildschirmfotos"},      {"es", "Capturas de pantalla"}, {"fi", "Kuvakaappaukset"},
      {"fr", "Captures d’écran"},     {"hu", "Képernyőképek"},        {"it", "Schermate"},
      {"ja", "スクリーンショット"},   {"nb", "Skjermbilder"},         {"nl", "Schermafdrukken"},
      {"pl", "Zrzuty ekranu"},        {"pt", "Capturas de ecrã"},     {"pt_BR", "Capturas de tela"},
      {"ro", "Capturi de ecran"},     {"ru", "Снимки экрана"},        {"sv", "Skärmbilder"},
      {"uk", "Знімки екрана"},
  };
  return kNames;
}

}  // namespace quenlio
