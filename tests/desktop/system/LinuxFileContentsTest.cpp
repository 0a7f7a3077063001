#include <csignal>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <sys/wait.h>

#include "desktop/linux/system/LinuxFileContents.h"
#include "desktop/linux/system/LinuxStandardDirectories.h"

#include "tests/desktop/system/FullDisk.h"
#include "tests/desktop/system/TemporaryFolder.h"

namespace quenlio {
namespace {

mode_t modeOf(const FileURL& url) {
  struct stat status {};
  check(::stat(url.path().c_str(), &status) == 0, url.path());
  return status.st_mode & 07777U;
}

class LinuxFileContentsTest : public testing::Test {
 protected:
  TemporaryFolder folder;
  LinuxFileContents files;
};

TEST_F(LinuxFileContentsTest, whatWasWrittenIsRead) {
  const std::string bytes = std::string("a\0b\xFF\n", 5) + std::string(100'000, 'x');
  ASSERT_TRUE(files.writeAtomically(folder / "a", bytes));
  EXPECT_EQ(files.read(folder / "a").value(), bytes);
  ASSERT_TRUE(files.writeAtomically(folder / "a", ""));
  EXPECT_EQ(files.read(folder / "a").value(), "");
  EXPECT_EQ(entryCount(folder.url()), 1U);
}

TEST_F(LinuxFileContentsTest, onlyRegularFilesAreRead) {
  ASSERT_EQ(::mkfifo((folder / "fifo").path().c_str(), 0600), 0);
  EXPECT_FALSE(files.read(folder / "fifo"));
  EXPECT_FALSE(files.read(folder.url()));
  EXPECT_FALSE(files.read(FileURL("/dev/zero")));
  EXPECT_EQ(files.read(folder / "none").error().localizedDescription,
            "The file “none” could not be read: No such file or directory.");
}

TEST_F(LinuxFileContentsTest, aFileThatIsThereKeepsItsModeAndANewOneGetsTheUsualOne) {
  writeFile(folder / "a", "old");
  ASSERT_EQ(::chmod((folder / "a").path().c_str(), 0604), 0);
  ASSERT_TRUE(files.writeAtomically(folder / "a", "new"));
  EXPECT_EQ(modeOf(folder / "a"), 0604U);
  ASSERT_TRUE(files.writeAtomically(folder / "b", "new"));
  const UniqueFd usual(::open((folder / "c").path().c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0666));
  EXPECT_EQ(modeOf(folder / "b"), modeOf(folder / "c"));
}

TEST_F(LinuxFileContentsTest, aLinkKeepsLeadingToItsFile) {
  std::filesystem::create_directory((folder / "real").path());
  writeFile(folder / "real/a", "old");
  ASSERT_EQ(::symlink("real/a", (folder / "link").path().c_str()), 0);
  ASSERT_TRUE(files.writeAtomically(folder / "link", "new"));
  EXPECT_EQ(contents(folder / "real/a"), "new");
  EXPECT_TRUE(std::filesystem::is_symlink((folder / "link").path()));
}

PlatformResult<Done> withRoomFor1000Bytes(const std::function<PlatformResult<Done>()>& write) {
  const FullDisk disk(1000);
  return write();
}

TEST_F(LinuxFileContentsTest, aWriteThatFailsLeavesTheOldFileAndNothingElse) {
  EXPECT_FALSE(files.writeAtomically(folder / "none/a", "new"));
  std::filesystem::create_directory((folder / "d").path());
  EXPECT_FALSE(files.writeAtomically(folder / "d", "new"));
  writeFile(folder / "a", "old");
  const auto written =
      withRoomFor1000Bytes([&] { return files.writeAtomically(folder / "a", std::string(5000, 'x')); });
  ASSERT_FALSE(written);
  EXPECT_EQ(written.error().localizedDescription, "The file “a” could not be written: File too large.");
  EXPECT_EQ(contents(folder / "a"), "old");
  EXPECT_EQ(entryCount(folder.url()), 2U);
}

TEST_F(LinuxFileContentsTest, appendingAddsAtTheEndAndMakesTheFile) {
  ASSERT_TRUE(files.append(folder / "a", "one\n"));
  ASSERT_TRUE(files.append(folder / "a", "two\n"));
  EXPECT_EQ(contents(folder / "a"), "one\ntwo\n");
  EXPECT_FALSE(files.append(folder / "none/a", "x"));
}

TEST_F(LinuxFileContentsTest, appendingThatFindsNoRoomIsTakenBack) {
  writeFile(folder / "a", "one\n");
  const auto written = withRoomFor1000Bytes([&] { return files.append(folder / "a", std::string(5000, 'x')); });
  ASSERT_FALSE(written);
  EXPECT_EQ(written.error().localizedDescription, "The file “a” could not be written: File too large.");
  EXPECT_EQ(contents(folder / "a"), "one\n");
}

// A child writes two texts in turn and is killed in the midst of it, again and again.
TEST_F(LinuxFileContentsTest, aKilledWriterLeavesTheOldFileOrTheNewOne) {
  const std::string one(60'000, '1');
  const std::string two(90'000, '2');
  ASSERT_TRUE(files.writeAtomically(folder / "a", one));
  int ones = 0;
  for (int round = 0; round < 60; ++round) {
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      while (files.writeAtomically(folder / "a", two) && files.writeAtomically(folder / "a", one)) {
      }
      ::_exit(1);
    }
    // The child is at work once the file has changed; a growing number of further changes varies the moment.
    struct stat last {};
    ASSERT_EQ(::stat((folder / "a").path().c_str(), &last), 0);
    for (int changes = 0; changes <= round % 7;) {
      struct stat status {};
      ASSERT_EQ(::stat((folder / "a").path().c_str(), &status), 0);
      if (status.st_ino != last.st_ino || status.st_size != last.st_size) {
        last = status;
        ++changes;
        const std::string seen = contents(folder / "a");
        ASSERT_TRUE(seen == one || seen == two) << seen.size();
      }
    }
    ASSERT_EQ(::kill(child, SIGKILL), 0);
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status));
    const std::string left = contents(folder / "a");
    ASSERT_TRUE(left == one || left == two) << left.size();
    ones += left == one ? 1 : 0;
    ASSERT_LE(entryCount(folder.url()), 2U) << "what kills leave does not add up";
  }
  ASSERT_TRUE(files.writeAtomically(folder / "a", one));
  EXPECT_EQ(entryCount(folder.url()), 1U);
  RecordProperty("old", ones);
}

class GivenEnvironment final : public ProcessInfo {
 public:
  [[nodiscard]] std::optional<std::string> environment(std::string_view name) const override {
    const auto found = values.find(name);
    return found == values.end() ? std::nullopt : std::optional(found->second);
  }
  [[nodiscard]] const std::vector<std::string>& arguments() const override { return none_; }

  std::map<std::string, std::string, std::less<>> values;

 private:
  std::vector<std::string> none_;
};

class LinuxStandardDirectoriesTest : public testing::Test {
 protected:
  void SetUp() override { process.values["HOME"] = folder.url().path(); }

  TemporaryFolder folder;
  GivenEnvironment process;
  LinuxStandardDirectories directories{process};
};

TEST_F(LinuxStandardDirectoriesTest, theEnvironmentNamesTheFolders) {
  EXPECT_EQ(directories.homeDirectory(), folder.url());
  EXPECT_EQ(directories.temporaryDirectory(), FileURL("/tmp"));
  EXPECT_EQ(directories.applicationSupportDirectory(), folder / ".local/share");
  process.values["TMPDIR"] = "/some/place/";
  process.values["XDG_DATA_HOME"] = "/data";
  EXPECT_EQ(directories.temporaryDirectory(), FileURL("/some/place"));
  EXPECT_EQ(directories.applicationSupportDirectory(), FileURL("/data"));
}

TEST_F(LinuxStandardDirectoriesTest, relativeAndEmptyPathsAreIgnored) {
  process.values["TMPDIR"] = "";
  process.values["XDG_DATA_HOME"] = "data";
  EXPECT_EQ(directories.temporaryDirectory(), FileURL("/tmp"));
  EXPECT_EQ(directories.applicationSupportDirectory(), folder / ".local/share");
}

TEST_F(LinuxStandardDirectoriesTest, withoutAVariableTheHomeComesFromTheSystemsUserList) {
  process.values.clear();
  EXPECT_TRUE(directories.homeDirectory().path().starts_with('/'));
}

TEST_F(LinuxStandardDirectoriesTest, theDesktopIsWhereTheDesktopsSettingsSay) {
  EXPECT_EQ(directories.desktopDirectory(), folder / "Desktop");
  std::filesystem::create_directory((folder / ".config").path());
  writeFile(folder / ".config/user-dirs.dirs",
            "# comment\nXDG_DESKTOP_DIR=\"$HOME/Schreibtisch\"\nXDG_PICTURES_DIR=\"$HOME/Bilder\"\n");
  EXPECT_EQ(directories.desktopDirectory(), folder / "Schreibtisch");
  process.values["XDG_CONFIG_HOME"] = (folder / "other").path();
  EXPECT_EQ(directories.desktopDirectory(), folder / "Desktop");
  std::filesystem::create_directory((folder / "other").path());
  writeFile(folder / "other/user-dirs.dirs", "XDG_DESKTOP_DIR=\"/desk\"\n");
  EXPECT_EQ(directories.desktopDirectory(), FileURL("/desk"));
}

TEST(UserDirectory, valuesAreReadAsAShellReadsThem) {
  const FileURL home("/home/u");
  const auto desktop = [&](std::string_view text) { return userDirectory(text, "XDG_DESKTOP_DIR", home); };
  EXPECT_EQ(desktop("XDG_DESKTOP_DIR=\"$HOME/A \\\"B\\\" \\$C\""), FileURL("/home/u/A \"B\" $C"));
  EXPECT_EQ(desktop("XDG_DESKTOP_DIR = \"$HOME/a\"\nXDG_DESKTOP_DIR=\"$HOME/b\"\n"), FileURL("/home/u/b"));
  EXPECT_EQ(desktop("XDG_DESKTOP_DIR=\"$HOME/\""), home);
  EXPECT_EQ(desktop("#XDG_DESKTOP_DIR=\"$HOME/a\""), std::nullopt);
  EXPECT_EQ(desktop("XDG_DESKTOP_DIR=\"$HOMER/a\""), std::nullopt);
  EXPECT_EQ(desktop("XDG_DESKTOP_DIR=\"relative\""), std::nullopt);
  EXPECT_EQ(desktop("XDG_DESKTOP_DIR=\"/open"), std::nullopt);
  EXPECT_EQ(desktop("XDG_DESKTOP_DIR=/plain"), std::nullopt);
  EXPECT_EQ(desktop("XDG_DESKTOP_DIRS=\"/a\""), std::nullopt);
  EXPECT_EQ(desktop(""), std::nullopt);
}

}  // namespace
}  // namespace quenlio
