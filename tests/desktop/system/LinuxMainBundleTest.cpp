// The bundle that a program lies in, and what its Info dictionary says.
#include <filesystem>
#include <gtest/gtest.h>
#include <optional>
#include <string>

#include "desktop/linux/system/LinuxProcess.h"

#include "tests/desktop/system/TemporaryFolder.h"

namespace quenlio {
namespace {

namespace fs = std::filesystem;

class LinuxMainBundleTest : public testing::Test {
 protected:
  // A bundle of this name in the folder.
  [[nodiscard]] FileURL makeBundle(const FileURL& folder, const std::string& name, const std::string& info) const {
    FileURL bundle = folder / name;
    fs::create_directories((bundle / "bin").path());
    writeFile(bundle / "Info.json", info);
    return bundle;
  }

  TemporaryFolder folder_;
};

TEST_F(LinuxMainBundleTest, isTheAppFolderAboveTheProgramWithTheStringsOfItsInfo) {
  const FileURL url = makeBundle(folder_.url(), "Quenlio.app",
                                 R"({"CFBundleName": "Quenlio", "CFBundleShortVersionString": "7.8.9", "Empty": ""})");
  for (const char* program : {"quenlio", "bin/quenlio", "usr/lib/quenlio/quenlio"}) {
    const LinuxMainBundle bundle(url / program);
    EXPECT_EQ(bundle.bundleURL(), url) << program;
    EXPECT_EQ(bundle.infoString("CFBundleName"), "Quenlio");
    EXPECT_EQ(bundle.infoString("CFBundleShortVersionString"), "7.8.9");
    EXPECT_EQ(bundle.infoString("Empty"), "");
  }
}

TEST_F(LinuxMainBundleTest, hasNoStringForAKeyThatIsMissingOrNoString) {
  const FileURL url = makeBundle(folder_.url(), "Quenlio.app",
                                 R"({"Number": 7, "Truth": true, "List": ["a"], "Nothing": null, "Text": "text"})");
  const LinuxMainBundle bundle(url / "quenlio");
  for (const char* key : {"Number", "Truth", "List", "Nothing", "Missing", "text", ""}) {
    EXPECT_EQ(bundle.infoString(key), std::nullopt) << key;
  }
  EXPECT_EQ(bundle.infoString("Text"), "text");
}

TEST_F(LinuxMainBundleTest, hasNoStringsWhenItsInfoIsDamagedButIsABundleAllTheSame) {
  for (const char* damaged : {"", "{", R"({"CFBundleName": "Quenlio")", R"(["CFBundleName"])", "7"}) {
    const FileURL url = makeBundle(folder_.url(), "Quenlio.app", damaged);
    const LinuxMainBundle bundle(url / "bin/quenlio");
    EXPECT_EQ(bundle.bundleURL(), url) << damaged;
    EXPECT_EQ(bundle.infoString("CFBundleName"), std::nullopt) << damaged;
  }
}

TEST_F(LinuxMainBundleTest, isTheNearestOneThatHoldsAnInfo) {
  const FileURL outer = makeBundle(folder_.url(), "Outer.app", R"({"CFBundleName": "Outer"})");
  const FileURL inner = makeBundle(outer, "Inner.app", R"({"CFBundleName": "Inner"})");
  EXPECT_EQ(LinuxMainBundle(inner / "bin/quenlio").infoString("CFBundleName"), "Inner");
  fs::remove((inner / "Info.json").path());
  const LinuxMainBundle bundle(inner / "bin/quenlio");
  EXPECT_EQ(bundle.bundleURL(), outer);
  EXPECT_EQ(bundle.infoString("CFBundleName"), "Outer");
}

TEST_F(LinuxMainBundleTest, isTheProgramsFolderWithoutAnyStringWhereThereIsNone) {
  const FileURL program = folder_ / "project.app/build/quenlio";
  fs::create_directories(program.parent().path());
  writeFile(program.parent() / "Info.json", R"({"CFBundleName": "Stray"})");
  writeFile(folder_ / "Info.json", R"({"CFBundleName": "Stray"})");
  const LinuxMainBundle bundle(program);
  EXPECT_EQ(bundle.bundleURL(), program.parent());
  EXPECT_EQ(bundle.infoString("CFBundleName"), std::nullopt);
}

TEST_F(LinuxMainBundleTest, takesNoFolderForAnInfo) {
  const FileURL program = folder_ / "Quenlio.app/bin/quenlio";
  fs::create_directories((folder_ / "Quenlio.app/Info.json").path());
  fs::create_directories(program.parent().path());
  EXPECT_EQ(LinuxMainBundle(program).bundleURL(), program.parent());
}

TEST_F(LinuxMainBundleTest, knowsWhereTheRunningProgramLies) {
  const FileURL program = LinuxMainBundle::executableURL();
  EXPECT_TRUE(fs::equivalent(program.path(), "/proc/self/exe"));
}

}  // namespace
}  // namespace quenlio
