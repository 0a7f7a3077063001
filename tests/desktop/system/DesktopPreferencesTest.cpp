// Where the desktop's own tools put screenshots, found by each desktop's own settings.
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <map>

#include "desktop/linux/system/ChildProcess.h"
#include "desktop/linux/system/DesktopPreferences.h"
#include "desktop/linux/system/JsonUserDefaults.h"

#include "tests/desktop/system/TemporaryFolder.h"

namespace quenlio {
namespace {

namespace fs = std::filesystem;

class GivenProcess final : public ProcessInfo {
 public:
  [[nodiscard]] std::optional<std::string> environment(std::string_view name) const override {
    const auto found = variables.find(name);
    return found != variables.end() ? std::optional(found->second) : std::nullopt;
  }
  [[nodiscard]] const std::vector<std::string>& arguments() const override { return arguments_; }

  std::map<std::string, std::string, std::less<>> variables;

 private:
  std::vector<std::string> arguments_{"quenlio"};
};

class GivenDirectories final : public StandardDirectories {
 public:
  explicit GivenDirectories(FileURL home) : home_(std::move(home)) {}
  [[nodiscard]] FileURL homeDirectory() const override { return home_; }
  [[nodiscard]] FileURL temporaryDirectory() const override { return FileURL("/tmp"); }
  [[nodiscard]] std::optional<FileURL> applicationSupportDirectory() const override { return std::nullopt; }
  [[nodiscard]] std::optional<FileURL> desktopDirectory() const override { return std::nullopt; }

 private:
  FileURL home_;
};

class DesktopPreferencesTest : public testing::Test {
 protected:
  // What a poll gets.
  [[nodiscard]] std::optional<PreferenceValue> location() {
    return preferences().CFPreferencesCopyAppValue("location", kScreenCaptureDomain);
  }
  [[nodiscard]] DesktopPreferences& preferences() {
    if (!preferences_) {
      preferences_.emplace(DesktopPreferences::Sources{
          suites_, diagnostics_, DesktopScreenshotFolder(process_, directories_, [this](auto schema, auto key) {
            ++storeReads_;
            return read(schema, key);
          })});
    }
    return *preferences_;
  }
  [[nodiscard]] std::optional<std::string> read(std::string_view schema, std::string_view key) const {
    const auto found = store_.find(std::string(schema) + " " + std::string(key));
    return found != store_.end() ? std::optional(found->second + "\n") : std::nullopt;
  }

  [[nodiscard]] std::optional<PreferenceValue> inHome(const std::string& path) const {
    return PreferenceValue((home_ / path).path());
  }
  void setDesktop(const std::string& names) { process_.variables["XDG_CURRENT_DESKTOP"] = names; }
  void write(const std::string& path, std::string_view text) const {
    fs::create_directories((home_ / path).parent().path());
    writeFile(home_ / path, text);
  }
  void makeFolder(const std::string& path) const { fs::create_directories((home_ / path).path()); }
  // The desktop's store writes a new file in place of the old one.
  void touchStore() const {
    write(".config/dconf/user.new", "database");
    fs::rename((home_ / ".config/dconf/user.new").path(), (home_ / ".config/dconf/user").path());
  }

  TemporaryFolder home_;
  GivenProcess process_;
  GivenDirectories directories_{home_.url()};
  JsonUserDefaultsSuites suites_{home_ / ".config/quenlio", std::string(kStandardSuiteName)};
  std::optional<FileURL> diagnostics_;
  std::map<std::string, std::string> store_;
  int storeReads_ = 0;
  std::optional<DesktopPreferences> preferences_;
};

TEST_F(DesktopPreferencesTest, hasNothingOnADesktopThatItDoesNotKnow) {
  EXPECT_EQ(location(), std::nullopt);
  setDesktop("sway");
  EXPECT_EQ(location(), std::nullopt);
  EXPECT_EQ(storeReads_, 0);
  EXPECT_TRUE(fs::is_empty(home_.url().path()));  // and has made nothing
}

TEST_F(DesktopPreferencesTest, takesTheDiagnosticsFolderBeforeAllElse) {
  setDesktop("GNOME");
  suites_.initWithSuiteName(kScreenCaptureDomain)->setObject("location", std::string("/own"));
  diagnostics_ = FileURL("/diagnostics");
  EXPECT_EQ(location(), PreferenceValue(std::string("/diagnostics")));
  EXPECT_EQ(preferences().CFPreferencesCopyAppValue("location", "other.domain"), std::nullopt);
  EXPECT_FALSE(exists(home_ / "Pictures"));
}

TEST_F(DesktopPreferencesTest, takesOurOwnValueBeforeTheDesktops) {
  setDesktop("GNOME");
  store_["org.gnome.gnome-screenshot auto-save-directory"] = "'/desktop'";
  UserDefaults& own = *suites_.initWithSuiteName(kScreenCaptureDomain);
  own.setObject("location", std::string("~/Shots"));
  EXPECT_EQ(location(), PreferenceValue(std::string("~/Shots")));
  own.setObject("location", std::string());
  EXPECT_EQ(location(), PreferenceValue(std::string()));
  own.setObject("location", std::int64_t{7});
  EXPECT_EQ(location(), PreferenceValue(std::int64_t{7}));
  EXPECT_EQ(storeReads_, 0);
  own.setObject("location", 1.5);
  EXPECT_EQ(location(), PreferenceValue(std::string("/desktop")));
  own.removeObjectForKey("location");
  EXPECT_EQ(location(), PreferenceValue(std::string("/desktop")));
}

TEST_F(DesktopPreferencesTest, givesOurOwnValueOfAnyOtherKey) {
  EXPECT_EQ(preferences().CFPreferencesCopyAppValue("show-thumbnail", kScreenCaptureDomain), std::nullopt);
  suites_.initWithSuiteName(kScreenCaptureDomain)->setObject("show-thumbnail", false);
  EXPECT_EQ(preferences().CFPreferencesCopyAppValue("show-thumbnail", kScreenCaptureDomain), PreferenceValue(false));
  EXPECT_EQ(preferences().CFPreferencesCopyAppValue("location", "not/a/name"), std::nullopt);
}

TEST_F(DesktopPreferencesTest, asksTheStoreOfEachDesktopThatHasOne) {
  store_ = {{"org.gnome.gnome-screenshot auto-save-directory", "'file:///data/My%20Shots'"},
            {"org.mate.screenshot last-save-directory", "'/mate'"},
            {"org.cinnamon.screenshot save-directory", "\"/it's here\""},
            {"io.elementary.screenshot folder-dir", "'~/Elementary'"}};
  const std::map<std::string, std::string> expected{{"GNOME", "/data/My Shots"},
                                                    {"ubuntu:GNOME", "/data/My Shots"},
                                                    {"MATE", "/mate"},
                                                    {"X-Cinnamon", "/it's here"},
                                                    {"Pantheon", (home_ / "Elementary").path()}};
  for (const auto& [desktop, folder] : expected) {
    setDesktop(desktop);
    preferences_.reset();
    EXPECT_EQ(location(), PreferenceValue(folder)) << desktop;
  }
}

TEST_F(DesktopPreferencesTest, asksTheStoreAgainOnlyWhenItHasChanged) {
  setDesktop("MATE");
  store_["org.mate.screenshot last-save-directory"] = "'/one'";
  for (int poll = 0; poll < 5; ++poll) {
    EXPECT_EQ(location(), PreferenceValue(std::string("/one")));
  }
  EXPECT_EQ(storeReads_, 1);
  store_["org.mate.screenshot last-save-directory"] = "'/two'";
  touchStore();
  EXPECT_EQ(location(), PreferenceValue(std::string("/two")));
  EXPECT_EQ(location(), PreferenceValue(std::string("/two")));
  EXPECT_EQ(storeReads_, 2);
  store_.clear();
  touchStore();
  EXPECT_EQ(location(), std::nullopt);
  EXPECT_EQ(location(), std::nullopt);
  EXPECT_EQ(storeReads_, 3);
}

TEST_F(DesktopPreferencesTest, readsTheSettingsOfKde) {
  setDesktop("KDE");
  const std::string file = ".config/spectaclerc";
  write(file, "[General]\nimageSaveLocation=/wrong/group\ndefaultSaveLocation=/old/place\n");
  EXPECT_EQ(location(), PreferenceValue(std::string("/old/place")));
  write(file, "[General]\ndefaultSaveLocation=/old/place\n\n[ImageSave]\nimageSaveLocation=file:///caf%C3%A9%20bar/\n");
  EXPECT_EQ(location(), PreferenceValue(std::string("/café bar")));
  write(file, "[ImageSave]\n# imageSaveLocation=/comment\nimageSaveLocation[$e]=file://$HOME/Captures\n");
  EXPECT_EQ(location(), inHome("Captures"));
  write(file, "[ImageSave]\nimageSaveLocation=smb://server/share\n");
  EXPECT_EQ(location(), inHome("Pictures/Screenshots"));
}

TEST_F(DesktopPreferencesTest, readsTheSettingsOfXfce) {
  setDesktop("XFCE");
  EXPECT_EQ(location(), std::nullopt);
  write(".config/xfce4/xfce4-screenshooter", "app=none\nscreenshot_dir=file:///one\n");
  EXPECT_EQ(location(), PreferenceValue(std::string("/one")));
  write(".config/xfce4/xfce4-screenshooter", "[Default]\nscreenshot_dir=/two\n");
  EXPECT_EQ(location(), PreferenceValue(std::string("/two")));
  fs::remove((home_ / ".config/xfce4/xfce4-screenshooter").path());
  EXPECT_EQ(location(), std::nullopt);
}

TEST_F(DesktopPreferencesTest, readsSettingsWhereTheEnvironmentHasThem) {
  setDesktop("KDE");
  process_.variables["XDG_CONFIG_HOME"] = (home_ / "settings").path();
  write("settings/spectaclerc", "[ImageSave]\nimageSaveLocation=/here\n");
  write(".config/spectaclerc", "[ImageSave]\nimageSaveLocation=/there\n");
  EXPECT_EQ(location(), PreferenceValue(std::string("/here")));
}

TEST_F(DesktopPreferencesTest, goesByTheEnvironmentWhereTheDesktopSaysNothing) {
  setDesktop("GNOME");
  store_["org.gnome.gnome-screenshot auto-save-directory"] = "''";
  write(".config/user-dirs.dirs", "XDG_SCREENSHOTS_DIR=\"$HOME/Third\"\n");
  EXPECT_EQ(location(), inHome("Third"));
  process_.variables["GRIM_DEFAULT_DIR"] = "/second";
  EXPECT_EQ(location(), PreferenceValue(std::string("/second")));
  process_.variables["XDG_SCREENSHOTS_DIR"] = "/first";
  EXPECT_EQ(location(), PreferenceValue(std::string("/first")));
  process_.variables["XDG_SCREENSHOTS_DIR"] = "relative";
  EXPECT_EQ(location(), PreferenceValue(std::string("/second")));
  EXPECT_FALSE(exists(home_ / "Pictures"));
}

TEST_F(DesktopPreferencesTest, makesTheFolderThatTheDesktopsToolWouldMake) {
  for (const char* desktop : {"GNOME", "KDE"}) {
    setDesktop(desktop);
    fs::remove_all((home_ / "Pictures").path());
    EXPECT_EQ(location(), inHome("Pictures/Screenshots"));
    EXPECT_TRUE(fs::is_directory((home_ / "Pictures/Screenshots").path()));
    EXPECT_EQ(location(), inHome("Pictures/Screenshots"));
  }
}

TEST_F(DesktopPreferencesTest, makesItInTheUsersLanguage) {
  setDesktop("GNOME");
  process_.variables["LANG"] = "pt_BR.UTF-8";
  EXPECT_EQ(location(), inHome("Pictures/Capturas de tela"));
  process_.variables["LC_MESSAGES"] = "de_AT.UTF-8";
  EXPECT_EQ(location(), inHome("Pictures/Capturas de tela"));  // one that is there is good enough
  fs::remove_all((home_ / "Pictures").path());
  EXPECT_EQ(location(), inHome("Pictures/Bildschirmfotos"));
  process_.variables["LC_ALL"] = "C";
  fs::remove_all((home_ / "Pictures").path());
  EXPECT_EQ(location(), inHome("Pictures/Screenshots"));
}

TEST_F(DesktopPreferencesTest, makesItInTheUsersPictures) {
  setDesktop("GNOME");
  write(".config/user-dirs.dirs", "XDG_PICTURES_DIR=\"$HOME/Bilder\"\n");
  makeFolder("Bilder/Bildschirmfotos");
  EXPECT_EQ(location(), inHome("Bilder/Bildschirmfotos"));
  write(".config/user-dirs.dirs", "XDG_PICTURES_DIR=\"$HOME/Images\"\n");
  EXPECT_EQ(location(), inHome("Images/Screenshots"));
}

TEST_F(DesktopPreferencesTest, usesButDoesNotMakeTheFolderElsewhere) {
  for (const char* desktop : {"MATE", "XFCE", "sway"}) {
    setDesktop(desktop);
    EXPECT_EQ(location(), std::nullopt);
  }
  makeFolder("Pictures/Screenshots");
  for (const char* desktop : {"MATE", "XFCE", "sway"}) {
    setDesktop(desktop);
    EXPECT_EQ(location(), inHome("Pictures/Screenshots"));
  }
}

TEST_F(DesktopPreferencesTest, hasNothingWhenTheFolderCannotBeMade) {
  setDesktop("GNOME");
  write("Pictures", "a file");
  EXPECT_EQ(location(), std::nullopt);
}

TEST(GSettings, readsAPrintedString) {
  EXPECT_EQ(stringOfVariant("''\n"), "");
  EXPECT_EQ(stringOfVariant("'/a b'\n"), "/a b");
  EXPECT_EQ(stringOfVariant("\"it's\"\n"), "it's");
  EXPECT_EQ(stringOfVariant(R"('a\'b\\c\nd')"), "a'b\\c\nd");
  EXPECT_EQ(stringOfVariant(R"('\u00e9\u20ac\U0001f600')"), "é€😀");
  EXPECT_EQ(stringOfVariant(R"('\u12')"), "u12");
  EXPECT_EQ(stringOfVariant(R"('\')"), "\\");
  for (const char* other : {"", "\n", "true\n", "'", "'open", "@as []", "nothing"}) {
    EXPECT_EQ(stringOfVariant(other), std::nullopt) << other;
  }
}

// The desktop's real program, with a store of its own.
TEST(GSettings, asksTheRealProgram) {
  const TemporaryFolder folder;
  fs::create_directories((folder / "glib-2.0/settings").path());
  writeFile(folder / "glib-2.0/settings/keyfile",
            "[org/gnome/gnome-screenshot]\nauto-save-directory='file:///it\\'s'\n");
  ASSERT_EQ(::setenv("GSETTINGS_BACKEND", "keyfile", 1), 0);
  ASSERT_EQ(::setenv("XDG_CONFIG_HOME", folder.url().path().c_str(), 1), 0);
  const auto printed = gsettingsGet("org.gnome.gnome-screenshot", "auto-save-directory");
  ASSERT_TRUE(printed);
  EXPECT_EQ(stringOfVariant(*printed), "file:///it's");
  EXPECT_EQ(gsettingsGet("org.example.no-such-schema", "key"), std::nullopt);
}

TEST(ChildProcess, readsOutputAsItComes) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(15);
  auto child = ChildProcess::start({"printf", "abcdef"});
  ASSERT_TRUE(child);
  std::array<char, 2> head{};
  EXPECT_TRUE(child->read(head.data(), head.size(), deadline));
  EXPECT_EQ(std::string(head.data(), head.size()), "ab");
  EXPECT_EQ(child->readToEnd(100, deadline), "cdef");
}

TEST(ChildProcess, boundsOutputAndTime) {
  const auto now = std::chrono::steady_clock::now();
  EXPECT_FALSE(ChildProcess::start({"yes"})->readToEnd(10'000, now + std::chrono::seconds(15)));
  EXPECT_FALSE(ChildProcess::start({"sleep", "60"})->readToEnd(10, now + std::chrono::milliseconds(100)));
  EXPECT_LT(std::chrono::steady_clock::now() - now, std::chrono::seconds(14));
  EXPECT_FALSE(ChildProcess::start({"/no/such/program"}));
  EXPECT_FALSE(ChildProcess::start({}));
}

}  // namespace
}  // namespace quenlio
