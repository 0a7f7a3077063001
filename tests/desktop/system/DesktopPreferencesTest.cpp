// Where the desktop's own tools put screenshots, found by each desktop's own settings.
#include <array>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <future>
#include <gtest/gtest.h>
#include <map>
#include <mutex>
#include <thread>

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
  // Far longer than a thread takes to begin, however busy the machine is.
  static constexpr std::chrono::seconds kLongPatience{20};

  // What a poll gets.
  [[nodiscard]] std::optional<PreferenceValue> location() {
    return preferences().CFPreferencesCopyAppValue("location", kScreenCaptureDomain);
  }
  [[nodiscard]] DesktopPreferences& preferences() {
    if (!preferences_) {
      auto read = [this](auto schema, auto key) { return readStore(schema, key); };
      preferences_.emplace(DesktopPreferences::Sources{
          suites_, diagnostics_, DesktopScreenshotFolder(process_, directories_, read, kLongPatience)});
    }
    return *preferences_;
  }
  // Any thread.
  [[nodiscard]] std::optional<std::string> readStore(std::string_view schema, std::string_view key) {
    const std::scoped_lock lock(mutex_);
    ++storeReads_;
    const auto found = store_.find(std::string(schema) + " " + std::string(key));
    return found != store_.end() ? std::optional(found->second + "\n") : std::nullopt;
  }

  [[nodiscard]] std::optional<PreferenceValue> inHome(const std::string& path) const {
    return PreferenceValue((home_ / path).path());
  }
  void setStore(std::map<std::string, std::string> store) {
    const std::scoped_lock lock(mutex_);
    store_ = std::move(store);
  }
  [[nodiscard]] int storeReads() {
    const std::scoped_lock lock(mutex_);
    return storeReads_;
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
  std::mutex mutex_;
  std::map<std::string, std::string> store_;  // guarded by mutex_
  int storeReads_ = 0;                        // guarded by mutex_
  std::optional<DesktopPreferences> preferences_;
};

TEST_F(DesktopPreferencesTest, hasNothingOnADesktopThatItDoesNotKnow) {
  EXPECT_EQ(location(), std::nullopt);
  makeFolder("Pictures");
  for (const char* desktop : {"an unknown one", "Swayed", "GNOME-like"}) {
    setDesktop(desktop);
    EXPECT_EQ(location(), std::nullopt) << desktop;
  }
  EXPECT_EQ(storeReads(), 0);
  EXPECT_TRUE(fs::is_empty((home_ / "Pictures").path()));  // and has made nothing
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
  setStore({{"org.gnome.gnome-screenshot auto-save-directory", "'/desktop'"}});
  UserDefaults& own = *suites_.initWithSuiteName(kScreenCaptureDomain);
  own.setObject("location", std::string("~/Shots"));
  EXPECT_EQ(location(), PreferenceValue(std::string("~/Shots")));
  own.setObject("location", std::string());
  EXPECT_EQ(location(), PreferenceValue(std::string()));
  own.setObject("location", std::int64_t{7});
  EXPECT_EQ(location(), PreferenceValue(std::int64_t{7}));
  EXPECT_EQ(storeReads(), 0);
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
  setStore({{"org.gnome.gnome-screenshot auto-save-directory", "'file:///data/My%20Shots'"},
            {"org.mate.screenshot last-save-directory", "'/mate'"},
            {"org.cinnamon.screenshot save-directory", "\"/it's here\""},
            {"io.elementary.screenshot folder-dir", "'~/Elementary'"}});
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

TEST_F(DesktopPreferencesTest, theCallAfterAChangeGivesTheNewFolderAndLaterOnesDoNotAskAgain) {
  setDesktop("MATE");
  const auto one = PreferenceValue(std::string("/one"));
  const auto two = PreferenceValue(std::string("/two"));
  setStore({{"org.mate.screenshot last-save-directory", "'/one'"}});
  for (int poll = 0; poll < 5; ++poll) {
    EXPECT_EQ(location(), one);
  }
  EXPECT_EQ(storeReads(), 1);
  setStore({{"org.mate.screenshot last-save-directory", "'/two'"}});
  touchStore();
  EXPECT_EQ(location(), two);
  EXPECT_EQ(location(), two);
  EXPECT_EQ(storeReads(), 2);
  setStore({});
  touchStore();
  EXPECT_EQ(location(), std::nullopt);
  EXPECT_EQ(location(), std::nullopt);
  EXPECT_EQ(storeReads(), 3);
}

// A store that hangs holds up a question about a change for a moment only.
TEST_F(DesktopPreferencesTest, answersAsBeforeWhileTheStoreIsAskedAnew) {
  setDesktop("MATE");
  std::promise<void> open;
  std::atomic<int> asked = 0;
  std::atomic<int> answered = 0;
  DesktopScreenshotFolder folder(process_, directories_,
                                 [&, gate = open.get_future().share()](auto, auto) -> std::optional<std::string> {
                                   const int question = ++asked;
                                   if (question == 2) {
                                     gate.wait_for(std::chrono::seconds(5));
                                   }
                                   ++answered;
                                   return "'/answer" + std::to_string(question) + "'";
                                 });
  EXPECT_EQ(folder.current(), FileURL("/answer1"));
  touchStore();
  const auto changed = std::chrono::steady_clock::now();
  EXPECT_EQ(folder.current(), FileURL("/answer1"));
  EXPECT_GE(std::chrono::steady_clock::now() - changed, kPatienceAfterChange);
  touchStore();  // once more meanwhile: seen when the question on its way is done
  EXPECT_EQ(folder.current(), FileURL("/answer1"));
  EXPECT_EQ(answered, 1);
  open.set_value();
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  while (folder.current() != FileURL("/answer3") && std::chrono::steady_clock::now() < deadline) {
    std::this_thread::yield();
  }
  EXPECT_EQ(folder.current(), FileURL("/answer3"));
  EXPECT_EQ(asked, 3);
}

TEST_F(DesktopPreferencesTest, waitsAtItsEndForAQuestionThatIsOnItsWay) {
  setDesktop("MATE");
  std::promise<void> begun;
  std::atomic<int> asked = 0;
  std::atomic<int> answered = 0;
  {
    DesktopScreenshotFolder folder(process_, directories_, [&](auto, auto) -> std::optional<std::string> {
      if (++asked == 2) {
        begun.set_value();
      }
      std::this_thread::yield();
      ++answered;
      return std::nullopt;
    });
    (void)folder.current();
    touchStore();
    (void)folder.current();
    begun.get_future().wait();
  }
  EXPECT_EQ(answered, 2);
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
  setStore({{"org.gnome.gnome-screenshot auto-save-directory", "''"}});
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

// Their tools put screenshots into the pictures themselves, unless a folder kept for screenshots is there.
TEST_F(DesktopPreferencesTest, usesButDoesNotMakeTheUsersPicturesElsewhere) {
  constexpr std::array desktops{"MATE", "X-Cinnamon", "XFCE", "Pantheon", "sway", "sway:wlroots", "Hyprland", "river"};
  const auto expectOnAll = [&](const std::optional<PreferenceValue>& expected) {
    for (const char* desktop : desktops) {
      setDesktop(desktop);
      preferences_.reset();
      EXPECT_EQ(location(), expected) << desktop;
    }
  };
  expectOnAll(std::nullopt);
  EXPECT_FALSE(exists(home_ / "Pictures"));
  makeFolder("Pictures");
  expectOnAll(inHome("Pictures"));
  EXPECT_TRUE(fs::is_empty((home_ / "Pictures").path()));
  write(".config/user-dirs.dirs", "XDG_PICTURES_DIR=\"$HOME/Bilder\"\n");
  expectOnAll(std::nullopt);
  makeFolder("Bilder/Screenshots");
  expectOnAll(inHome("Bilder/Screenshots"));
}

TEST_F(DesktopPreferencesTest, hasNothingWhenTheFolderCannotBeMade) {
  setDesktop("GNOME");
  write("Pictures", "a file");
  EXPECT_EQ(location(), std::nullopt);
}

}  // namespace
}  // namespace quenlio
