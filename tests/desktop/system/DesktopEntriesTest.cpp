// Which programs open a type, by the lists of the user and of the system.
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "desktop/linux/system/DesktopEntries.h"
#include "desktop/linux/system/LinuxProcess.h"
#include "desktop/linux/system/LinuxStandardDirectories.h"

#include "tests/desktop/system/SampleFiles.h"
#include "tests/desktop/system/TemporaryFolder.h"

namespace quenlio {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class DesktopEntriesTest : public testing::Test {
 protected:
  DesktopEntriesTest() { put("bin/viewer", "#!/bin/sh\n", 0755); }

  void put(const std::string& name, const std::string& text, unsigned mode = 0644) {
    const FileURL file = folder_ / name;
    std::filesystem::create_directories(file.parent().path());
    writeFile(file, text);
    std::filesystem::permissions(file.path(), static_cast<std::filesystem::perms>(mode));
  }
  void putEntry(const std::string& place, const std::string& name, const std::string& more = "") {
    put(place, "[Desktop Entry]\nType=Application\nName=" + name + "\nExec=viewer %F\n" + more);
  }
  void putCache(const std::string& data, const std::string& lines) {
    put(data + "/applications/mimeinfo.cache", "[MIME Cache]\n" + lines);
  }
  [[nodiscard]] DesktopEntries entries() const {
    return DesktopEntries({.settings = {folder_ / "config", folder_ / "etc"},
                           .data = {folder_ / "home", folder_ / "usr"},
                           .programs = {folder_ / "bin"},
                           .desktops = {"TEST", "GNU"},
                           .locale = "de_DE.UTF-8"});
  }
  [[nodiscard]] std::vector<std::string> names(const std::vector<FileType>& types = {{"image/png"}}) const {
    std::vector<std::string> result;
    for (const DesktopEntry& entry : entries().programsFor(types)) {
      result.push_back(entry.name);
    }
    return result;
  }

  TemporaryFolder folder_;
};

TEST_F(DesktopEntriesTest, areThoseOfTheSystemInItsOrder) {
  putEntry("usr/applications/b.desktop", "B");
  putEntry("usr/applications/a.desktop", "A");
  putCache("usr", "image/png=b.desktop;a.desktop;gone.desktop;\nimage/jpeg=a.desktop\n");
  EXPECT_THAT(names(), ElementsAre("B", "A"));
  EXPECT_THAT(names({{"image/jpeg"}}), ElementsAre("A"));
  EXPECT_THAT(names({{"image/gif"}}), IsEmpty());
  EXPECT_THAT(names({}), IsEmpty());
  const auto program = entries().programsFor({{"image/jpeg"}});
  ASSERT_EQ(program.size(), 1U);
  EXPECT_EQ(program[0].id, "a.desktop");
  EXPECT_EQ(program[0].file, folder_ / "usr/applications/a.desktop");
}

TEST_F(DesktopEntriesTest, comeInTheUsersOrder) {
  for (const char* name : {"a", "b", "c", "d"}) {
    putEntry("usr/applications/" + std::string(name) + ".desktop", name);
  }
  putCache("usr", "image/png=a.desktop;b.desktop;\n");
  put("config/mimeapps.list",
      "[Added Associations]\nimage/png=c.desktop\n[Default Applications]\nimage/png=gone.desktop;b.desktop;\n");
  EXPECT_THAT(names(), ElementsAre("b", "c", "a"));
  put("config/test-mimeapps.list", "[Default Applications]\nimage/png=d.desktop\n");
  EXPECT_THAT(names(), ElementsAre("d", "b", "c", "a"));
}

TEST_F(DesktopEntriesTest, leaveOutWhatTheUserHasTakenAway) {
  putEntry("usr/applications/a.desktop", "A");
  putEntry("usr/applications/b.desktop", "B");
  putCache("usr", "image/png=a.desktop;b.desktop;\n");
  put("config/mimeapps.list", "[Removed Associations]\nimage/png=a.desktop;\n");
  EXPECT_THAT(names(), ElementsAre("B"));
  // A list farther from the user takes nothing away from one nearer to them.
  put("config/mimeapps.list", "[Added Associations]\nimage/png=a.desktop;\n");
  put("etc/mimeapps.list", "[Removed Associations]\nimage/png=a.desktop;b.desktop\n");
  EXPECT_THAT(names(), ElementsAre("A"));
}

TEST_F(DesktopEntriesTest, areTheUsersOwnWhereBothHaveOne) {
  putEntry("usr/applications/a.desktop", "System's");
  putEntry("home/applications/a.desktop", "User's", "Name[de]=Eigener\n");
  putCache("usr", "image/png=a.desktop;\n");
  EXPECT_THAT(names(), ElementsAre("Eigener"));
  putEntry("home/applications/a.desktop", "User's", "Hidden=true\n");
  EXPECT_THAT(names(), IsEmpty());
}

TEST_F(DesktopEntriesTest, areFoundInFoldersThatTheirNamesTell) {
  putEntry("usr/applications/vendor/some-viewer.desktop", "Deep");
  putCache("usr", "image/png=vendor-some-viewer.desktop;../evil.desktop;\n");
  putEntry("usr/evil.desktop", "Evil");
  EXPECT_THAT(names(), ElementsAre("Deep"));
}

TEST_F(DesktopEntriesTest, leaveOutWhatCannotBeOpenedHere) {
  putEntry("usr/applications/terminal.desktop", "Terminal", "Terminal=true\n");
  putEntry("usr/applications/other.desktop", "Other desktop's", "OnlyShowIn=KDE;\n");
  putEntry("usr/applications/not.desktop", "Not this desktop's", "NotShowIn=GNU;\n");
  putEntry("usr/applications/try.desktop", "Half there", "TryExec=gone\n");
  put("usr/applications/exec.desktop", "[Desktop Entry]\nType=Application\nName=Gone\nExec=gone %f\n");
  put("usr/applications/bad.desktop", "[Desktop Entry]\nType=Application\nName=Bad\nExec=viewer \"%f\n");
  put("usr/applications/bus.desktop", "[Desktop Entry]\nType=Application\nName=No command\n");
  put("usr/applications/link.desktop", "[Desktop Entry]\nType=Link\nName=Link\nExec=viewer %f\n");
  put("bin/plain", "no program", 0644);
  put("usr/applications/plain.desktop", "[Desktop Entry]\nType=Application\nName=Plain\nExec=plain %f\n");
  putEntry("usr/applications/good.desktop", "Good", "TryExec=viewer\nOnlyShowIn=GNU;\n");
  putCache("usr",
           "image/png=terminal.desktop;other.desktop;not.desktop;try.desktop;exec.desktop;bad.desktop;bus.desktop;"
           "link.desktop;plain.desktop;good.desktop;\n");
  EXPECT_THAT(names(), ElementsAre("Good"));
}

TEST_F(DesktopEntriesTest, leaveOutWhatWantsNoMenuUnlessItIsSet) {
  putEntry("usr/applications/helper.desktop", "Helper", "NoDisplay=true\n");
  putCache("usr", "image/png=helper.desktop;\n");
  EXPECT_THAT(names(), IsEmpty());
  put("config/mimeapps.list", "[Default Applications]\nimage/png=helper.desktop;\n");
  EXPECT_THAT(names(), ElementsAre("Helper"));
}

TEST_F(DesktopEntriesTest, openEveryOneOfSeveralTypes) {
  for (const char* name : {"a", "b", "c"}) {
    putEntry("usr/applications/" + std::string(name) + ".desktop", name);
  }
  putCache("usr", "image/png=a.desktop;b.desktop;c.desktop\nimage/heif=c.desktop;b.desktop\n");
  EXPECT_THAT(names({{"image/png"}, {"image/heic", "image/heif"}, {"image/png"}}), ElementsAre("b", "c"));
}

TEST_F(DesktopEntriesTest, findProgramsByNameAndByPath) {
  const FileURL viewer = folder_ / "bin/viewer";
  EXPECT_EQ(entries().findProgram("viewer"), viewer);
  EXPECT_EQ(entries().findProgram(viewer.path()), viewer);
  for (const char* name : {"", "gone", "../bin/viewer", "/nowhere/viewer"}) {
    EXPECT_EQ(entries().findProgram(name), std::nullopt) << name;
  }
}

TEST_F(DesktopEntriesTest, lookWhereTheEnvironmentSays) {
  const std::pair<const char*, std::string> variables[] = {{"XDG_CONFIG_HOME", (folder_ / "config").path()},
                                                           {"XDG_CONFIG_DIRS", "relative:/etc/one:/etc/two"},
                                                           {"XDG_DATA_HOME", (folder_ / "home").path()},
                                                           {"XDG_DATA_DIRS", "/usr/one:/usr/two"},
                                                           {"PATH", "/bin/one::/bin/two"},
                                                           {"XDG_CURRENT_DESKTOP", "ubuntu:GNOME"},
                                                           {"LC_ALL", ""},
                                                           {"LC_MESSAGES", "de_DE"},
                                                           {"LANG", "fr_FR"}};
  std::vector<std::pair<const char*, std::optional<std::string>>> before;
  for (const auto& [name, value] : variables) {
    const char* old = std::getenv(name);
    before.emplace_back(name, old != nullptr ? std::optional<std::string>(old) : std::nullopt);
    ::setenv(name, value.c_str(), 1);
  }
  const LinuxProcessInfo process({});
  const auto places = DesktopEntries::surroundings(process, LinuxStandardDirectories(process));
  for (const auto& [name, value] : before) {
    value ? ::setenv(name, value->c_str(), 1) : ::unsetenv(name);
  }
  EXPECT_THAT(places.settings, ElementsAre(folder_ / "config", FileURL("/etc/one"), FileURL("/etc/two")));
  EXPECT_THAT(places.data, ElementsAre(folder_ / "home", FileURL("/usr/one"), FileURL("/usr/two")));
  EXPECT_THAT(places.programs, ElementsAre(FileURL("/bin/one"), FileURL("/bin/two")));
  EXPECT_THAT(places.desktops, ElementsAre("ubuntu", "GNOME"));
  EXPECT_EQ(places.locale, "de_DE");
}

TEST_F(DesktopEntriesTest, knowATypeByTheContentsAndOtherwiseByTheName) {
  put("really.jpg", "\x89PNG\r\n\x1a\n and so on");
  put("text.pdf", "no such thing");
  put("other.txt", "no such thing");
  EXPECT_EQ(fileTypeOf(folder_ / "really.jpg").front(), "image/png");
  EXPECT_EQ(fileTypeOf(folder_ / "text.pdf").front(), "application/pdf");
  EXPECT_EQ(fileTypeOf(folder_ / "gone.HEIC").front(), "image/heic");
  EXPECT_EQ(fileTypeOf(folder_ / "other.txt").front(), "application/octet-stream");
}

}  // namespace
}  // namespace quenlio
