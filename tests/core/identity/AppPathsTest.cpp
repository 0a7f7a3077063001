// Where the application keeps its files, and how files of its earlier name are carried over.
#include <gtest/gtest.h>
#include <map>
#include <rapidcheck/gtest.h>
#include <string>
#include <vector>

#include "core/diagnostics/QuenlioReleaseTestConfiguration.h"
#include "core/identity/AppPaths.h"
#include "core/identity/LegacyIdentifiers.h"

#include "tests/fakes/CallLog.h"
#include "tests/fakes/FakeDesktop.h"
#include "tests/fakes/FakeFileSystem.h"
#include "tests/harness/VirtualTime.h"

namespace quenlio {
namespace {

const std::string kCurrent = "/home/user/support/Quenlio";
const std::string kLegacy = "/home/user/support/Velmarin";

class Paths : public testing::Test {
 protected:
  CallLog log;
  VirtualTime time;
  FakeFileSystem files{time, log};
  FakeDirectories directories;
  QuenlioReleaseTestConfiguration configuration;
  AppPaths paths{configuration, files, directories};
};

TEST_F(Paths, theEarlierNamesAreKept) {
  EXPECT_EQ(LegacyIdentifiers::previousAppSupportFolderName, "Velmarin");
  EXPECT_EQ(LegacyIdentifiers::previousDefaultsSuiteName, "com.velmarin.app");
}

TEST_F(Paths, theFolderOfAScriptedRunIsTakenAsItIsAndNothingIsCarriedOver) {
  configuration.appSupportDirectory = FileURL("/run/support/../x");
  files.write(kLegacy + "/pinned.json");
  EXPECT_EQ(paths.appSupportDirectoryURL().path(), "/run/support/../x");
  EXPECT_TRUE(files.fileExistsAtPath(FileURL(kLegacy)));
  EXPECT_EQ(log.calls(), std::vector<std::string>{});
}

TEST_F(Paths, withoutAnApplicationSupportFolderItIsTheTemporaryOne) {
  directories.applicationSupport.reset();
  EXPECT_EQ(paths.appSupportDirectoryURL(), FileURL("/tmp"));
}

TEST_F(Paths, theAnswerIsTheCurrentFolderWhichIsNotMadeHere) {
  EXPECT_EQ(paths.appSupportDirectoryURL(), FileURL(kCurrent));
  EXPECT_FALSE(files.fileExistsAtPath(FileURL(kCurrent)));
  files.makeFolder(kCurrent);
  EXPECT_EQ(paths.appSupportDirectoryURL(), FileURL(kCurrent));
  EXPECT_EQ(log.calls(), std::vector<std::string>{});
}

TEST_F(Paths, theLegacyFolderAloneChangesItsNameInASingleMove) {
  files.write(kLegacy + "/pinned.json", "pins");
  files.write(kLegacy + "/.hidden/deep", "deep");
  EXPECT_EQ(paths.appSupportDirectoryURL(), FileURL(kCurrent));
  EXPECT_EQ(log.calls(), std::vector<std::string>{"moveItem " + kLegacy + " " + kCurrent});
  EXPECT_EQ(files.content(kCurrent + "/pinned.json"), "pins");
  EXPECT_EQ(files.content(kCurrent + "/.hidden/deep"), "deep");
  EXPECT_FALSE(files.fileExistsAtPath(FileURL(kLegacy)));
}

TEST_F(Paths, aMoveThatFailsLeavesTheLegacyFolderInUseAndIsTriedAgainNextTime) {
  files.write(kLegacy + "/pinned.json", "pins");
  files.setReadOnly(kCurrent);
  EXPECT_EQ(paths.appSupportDirectoryURL(), FileURL(kLegacy));
  EXPECT_EQ(paths.appSupportDirectoryURL(), FileURL(kLegacy));
  EXPECT_EQ(log.count("moveItem " + kLegacy + " " + kCurrent), 2);
  EXPECT_EQ(files.content(kLegacy + "/pinned.json"), "pins");
}

TEST_F(Paths, ofAFileInBothTheCurrentOneStaysAndTheLegacyOneStaysWhereItIs) {
  files.write(kCurrent + "/pinned.json", "new");
  files.write(kLegacy + "/pinned.json", "old");
  EXPECT_EQ(paths.appSupportDirectoryURL(), FileURL(kCurrent));
  EXPECT_EQ(files.content(kCurrent + "/pinned.json"), "new");
  EXPECT_EQ(files.content(kLegacy + "/pinned.json"), "old");
  EXPECT_EQ(log.calls(), std::vector<std::string>{}) << "no copy is even tried";
}

TEST_F(Paths, whatIsMissingInTheCurrentFolderIsCopiedWithItsFolders) {
  files.makeFolder(kCurrent);
  files.write(kLegacy + "/a/b/c.json", "c");
  files.makeFolder(kLegacy + "/empty");
  (void)paths.appSupportDirectoryURL();
  EXPECT_EQ(files.content(kCurrent + "/a/b/c.json"), "c");
  EXPECT_TRUE(files.isDirectory(FileURL(kCurrent + "/empty")));
  EXPECT_EQ(files.content(kLegacy + "/a/b/c.json"), "c");
}

TEST_F(Paths, aHiddenFileOfTheLegacyFolderIsCopied) {
  files.makeFolder(kCurrent);
  files.write(kLegacy + "/.identity", "id");
  (void)paths.appSupportDirectoryURL();
  EXPECT_EQ(files.content(kCurrent + "/.identity"), "id");
}

TEST_F(Paths, aFolderWhereTheCurrentOneHasAFileIsSkippedWithAllInIt) {
  files.write(kCurrent + "/a", "a file");
  files.write(kLegacy + "/a/b", "inside");
  files.write(kLegacy + "/z", "after");
  (void)paths.appSupportDirectoryURL();
  EXPECT_EQ(files.content(kCurrent + "/a"), "a file");
  EXPECT_FALSE(files.fileExistsAtPath(FileURL(kCurrent + "/a/b")));
  EXPECT_EQ(files.content(kCurrent + "/z"), "after") << "one item's error does not end the pass";
}

TEST_F(Paths, aFileThatCannotBeReadIsLeftOutAndTheOthersComeAlong) {
  files.makeFolder(kCurrent);
  files.write(kLegacy + "/a", "secret");
  files.write(kLegacy + "/b", "open");
  files.setUnreadable(kLegacy + "/a", true);
  EXPECT_EQ(paths.appSupportDirectoryURL(), FileURL(kCurrent));
  EXPECT_FALSE(files.fileExistsAtPath(FileURL(kCurrent + "/a")));
  EXPECT_EQ(files.content(kCurrent + "/b"), "open");
}

TEST_F(Paths, aLegacyFolderThatCannotBeReadChangesNothing) {
  files.makeFolder(kCurrent);
  files.write(kLegacy + "/a", "a");
  files.setUnreadable(kLegacy, true);
  EXPECT_EQ(paths.appSupportDirectoryURL(), FileURL(kCurrent));
  EXPECT_EQ(log.calls(), std::vector<std::string>{});
}

TEST_F(Paths, theMergeIsRepeatedHarmlesslyWhileBothFoldersExist) {
  files.makeFolder(kCurrent);
  files.write(kLegacy + "/a", "old");
  (void)paths.appSupportDirectoryURL();
  files.write(kCurrent + "/a", "changed since");
  files.write(kLegacy + "/b", "came later");
  (void)paths.appSupportDirectoryURL();
  EXPECT_EQ(files.content(kCurrent + "/a"), "changed since");
  EXPECT_EQ(files.content(kCurrent + "/b"), "came later");
}

TEST_F(Paths, thePresentFolderCountsOnlyWithSomethingInIt) {
  EXPECT_FALSE(paths.hasCurrentAppSupportFolder());
  files.makeFolder(kCurrent);
  EXPECT_FALSE(paths.hasCurrentAppSupportFolder());
  files.write(kCurrent + "/.hidden");
  EXPECT_TRUE(paths.hasCurrentAppSupportFolder());
}

TEST_F(Paths, thePresentFolderCountsOnlyAsAFolderThatCanBeListed) {
  files.write(kCurrent, "a file");
  EXPECT_FALSE(paths.hasCurrentAppSupportFolder());
  files.remove(kCurrent);
  files.write(kCurrent + "/a");
  files.setUnlistable(kCurrent, true);
  EXPECT_FALSE(paths.hasCurrentAppSupportFolder());
}

TEST_F(Paths, askingForThePresentFolderCarriesNothingOver) {
  files.write(kLegacy + "/a");
  EXPECT_FALSE(paths.hasCurrentAppSupportFolder());
  EXPECT_EQ(log.calls(), std::vector<std::string>{});
  EXPECT_TRUE(files.fileExistsAtPath(FileURL(kLegacy)));
}

TEST_F(Paths, thePresentFolderOfAScriptedRunIsItsOwn) {
  files.write(kCurrent + "/a");
  configuration.appSupportDirectory = FileURL("/run/support");
  EXPECT_FALSE(paths.hasCurrentAppSupportFolder());
  files.write("/run/support/a");
  EXPECT_TRUE(paths.hasCurrentAppSupportFolder());
}

// Whatever lies in the two folders: nothing current changes, nothing legacy changes, and a second pass does nothing.
RC_GTEST_PROP(PathsProperty, theMergeNeverOverwritesAndNeverDeletes, ()) {
  CallLog log;
  const VirtualTime time;
  FakeFileSystem files(time, log);
  const FakeDirectories directories;
  const QuenlioReleaseTestConfiguration configuration;
  const AppPaths paths(configuration, files, directories);
  const auto name = rc::gen::element<std::string>("/a", "/b", "/a/b", "/.h", "/a/.h/c");
  const auto fill = [&](const std::string& folder) {
    files.makeFolder(folder);
    std::map<std::string, std::string> written;
    for (const auto& file : *rc::gen::container<std::vector<std::string>>(name)) {
      const FileURL url(folder + file);
      if (!files.fileExistsAtPath(url) && files.content(url.parent().path()) == std::nullopt) {
        files.write(url.path(), folder + std::to_string(written.size()));
        written[url.path()] = folder + std::to_string(written.size());
      }
    }
    return written;
  };
  const auto current = fill(kCurrent);
  const auto legacy = fill(kLegacy);
  RC_ASSERT(paths.appSupportDirectoryURL() == FileURL(kCurrent));
  for (const auto& [path, content] : current) {
    RC_ASSERT(files.content(path) == content);
  }
  for (const auto& [path, content] : legacy) {
    RC_ASSERT(files.content(path) == content);
  }
  log.clear();
  RC_ASSERT(paths.appSupportDirectoryURL() == FileURL(kCurrent));
  RC_ASSERT(std::ranges::none_of(log.calls(), [](const std::string& call) { return call.starts_with("moveItem"); }));
}

}  // namespace
}  // namespace quenlio
