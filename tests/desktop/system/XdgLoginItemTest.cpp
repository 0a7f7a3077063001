#include <gtest/gtest.h>

#include "desktop/linux/system/XdgLoginItem.h"

#include "tests/fakes/FakeDesktop.h"
#include "tests/fakes/FakeFileSystem.h"
#include "tests/harness/VirtualTime.h"

namespace quenlio {
namespace {

class XdgLoginItemTest : public testing::Test {
 protected:
  [[nodiscard]] XdgLoginItem item() {
    return XdgLoginItem({.files = files_, .contents = files_, .process = process_, .directories = directories_},
                        FileURL("/opt/Quenlio.app/quenlio"));
  }

  VirtualTime time_;
  CallLog log_;
  FakeFileSystem files_{time_, log_};
  FakeProcessInfo process_;
  FakeDirectories directories_;
  const std::string entry_ = directories_.homeDirectory().path() + "/.config/autostart/quenlio.desktop";
};

TEST_F(XdgLoginItemTest, registeringWritesAnEntryThatStartsTheProgram) {
  EXPECT_EQ(item().status(), LoginItemStatus::notRegistered);
  ASSERT_TRUE(item().registerItem().ok());
  EXPECT_EQ(item().status(), LoginItemStatus::enabled);
  const std::string text = files_.content(entry_).value_or("");
  EXPECT_TRUE(text.starts_with("[Desktop Entry]\n")) << text;
  EXPECT_NE(text.find("\nExec=\"/opt/Quenlio.app/quenlio\"\n"), std::string::npos) << text;
}

TEST_F(XdgLoginItemTest, unregisteringTakesItAway) {
  ASSERT_TRUE(item().registerItem().ok());
  ASSERT_TRUE(item().unregisterItem().ok());
  EXPECT_EQ(item().status(), LoginItemStatus::notRegistered);
  EXPECT_FALSE(files_.content(entry_));
  EXPECT_TRUE(item().unregisterItem().ok());
}

TEST_F(XdgLoginItemTest, anEntryThatTheUserSwitchedOffRequiresApproval) {
  files_.write(entry_, "[Desktop Entry]\nType=Application\nHidden=true\n");
  EXPECT_EQ(item().status(), LoginItemStatus::requiresApproval);
  files_.write(entry_, "[Desktop Entry]\nX-GNOME-Autostart-enabled=false\n");
  EXPECT_EQ(item().status(), LoginItemStatus::requiresApproval);
}

TEST_F(XdgLoginItemTest, theEntryIsReadAsDesktopsReadIt) {
  files_.write(entry_, "[Desktop Entry]\r\nHidden = true\r\n");
  EXPECT_EQ(item().status(), LoginItemStatus::requiresApproval);
  files_.write(entry_, "[Desktop Entry]\nHidden=true\nHidden=false\n");
  EXPECT_EQ(item().status(), LoginItemStatus::enabled);
  files_.write(entry_, "[Desktop Entry]\n#Hidden=true\n[Desktop Action Other]\nHidden=true\n");
  EXPECT_EQ(item().status(), LoginItemStatus::enabled);
}

TEST_F(XdgLoginItemTest, failsWhereTheFolderCannotBeWritten) {
  files_.setReadOnly(directories_.homeDirectory().path());
  EXPECT_FALSE(item().registerItem().ok());
  EXPECT_EQ(item().status(), LoginItemStatus::notRegistered);
}

TEST(QuotedForExec, escapesWhatHasAMeaningThere) {
  EXPECT_EQ(quotedForExec("/a b/c"), "\"/a b/c\"");
  EXPECT_EQ(quotedForExec("/100%"), "\"/100%%\"");
  EXPECT_EQ(quotedForExec("/a$b"), "\"/a\\\\$b\"");
  EXPECT_EQ(quotedForExec("/a\"b"), "\"/a\\\\\"b\"");
  EXPECT_EQ(quotedForExec("/a\\b"), "\"/a\\\\\\\\b\"");
}

}  // namespace
}  // namespace quenlio
