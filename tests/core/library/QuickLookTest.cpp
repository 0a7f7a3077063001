// What the preview window is given to show.
#include <gtest/gtest.h>

#include "tests/harness/TestLibrary.h"

namespace quenlio {
namespace {

class QuickLook : public testing::Test, protected TestLibrary {
 protected:
  using Calls = std::vector<std::string>;
  QuickLook() {
    for (const FileURL& url : urls) {
      platform.files.write(url.path());
    }
    platform.log.clear();
  }
  const FileURL a{"/shots/a.png"};
  const FileURL b{"/shots/b.png"};
  const FileURL c{"/shots/c.png"};
  const std::vector<FileURL> urls{a, b, c};
};

TEST_F(QuickLook, opensAtTheFile) {
  quickLook.preview(b, urls);
  EXPECT_EQ(platform.log.calls(), (Calls{"preview setDataSource", "preview makeKeyAndOrderFront",
                                         "preview setCurrentPreviewItemIndex 1", "preview reloadData"}));
  EXPECT_EQ(platform.previewPanel.files, urls);
  EXPECT_EQ(platform.previewPanel.shownFile(), b);
}

TEST_F(QuickLook, opensAtTheFirstOfTheRestWhenTheFileHasGone) {
  platform.files.remove(b.path());
  quickLook.preview(b, urls);
  EXPECT_EQ(platform.previewPanel.files, (std::vector{a, c}));
  EXPECT_EQ(platform.previewPanel.shownFile(), a);
}

TEST_F(QuickLook, opensAtTheFirstWhenTheFileIsNotAmongThem) {
  quickLook.preview(FileURL("/else.png"), urls);
  EXPECT_EQ(platform.previewPanel.shownFile(), a);
}

TEST_F(QuickLook, doesNotOpenWithoutAnyFileOrWithoutAPanel) {
  quickLook.preview(a, {});
  quickLook.preview(FileURL("/gone.png"), {FileURL("/gone.png")});
  platform.previewPanel.canExist = false;
  quickLook.preview(a, urls);
  EXPECT_EQ(platform.log.calls(), Calls{});
  EXPECT_FALSE(platform.previewPanel.isVisible());
}

TEST_F(QuickLook, aFileThatMayBeOpenedIsPreparedAndIsOpenedAsAnyOther) {
  quickLook.prepare(b);
  EXPECT_EQ(platform.previewPanel.prepared, b);
  EXPECT_FALSE(platform.previewPanel.isVisible());
  quickLook.preview(b, urls);
  EXPECT_EQ(platform.previewPanel.shownFile(), b);
  EXPECT_EQ(platform.previewPanel.prepared, std::nullopt);
}

TEST_F(QuickLook, whatIsNotOpenedAfterAllIsDropped) {
  quickLook.prepare(b);
  quickLook.dropPrepared();
  EXPECT_EQ(platform.previewPanel.prepared, std::nullopt);
  quickLook.prepare(b);
  for (const FileURL& url : urls) {
    platform.files.remove(url.path());
  }
  quickLook.preview(b, urls);
  EXPECT_EQ(platform.previewPanel.prepared, std::nullopt) << "nothing was left to be opened";
}

TEST_F(QuickLook, preparesNothingWithoutTheFileOrWithoutAPanel) {
  quickLook.prepare(FileURL("/gone.png"));
  platform.previewPanel.canExist = false;
  quickLook.prepare(a);
  quickLook.dropPrepared();
  EXPECT_EQ(platform.log.calls(), Calls{});
}

TEST_F(QuickLook, followsTheSelectionWithoutComingForward) {
  quickLook.preview(a, urls);
  platform.log.clear();
  quickLook.syncSelection(c, urls);
  EXPECT_EQ(platform.log.calls(),
            (Calls{"preview setDataSource", "preview reloadData", "preview setCurrentPreviewItemIndex 2"}));
  EXPECT_EQ(platform.previewPanel.shownFile(), c);
}

TEST_F(QuickLook, followsNothingWhileItIsNotUpOrNothingIsLeft) {
  quickLook.syncSelection(a, urls);
  EXPECT_EQ(platform.log.calls(), Calls{});
  quickLook.preview(b, urls);
  platform.log.clear();
  quickLook.syncSelection(FileURL("/gone.png"), {FileURL("/gone.png")});
  EXPECT_EQ(platform.log.calls(), Calls{});
  EXPECT_EQ(platform.previewPanel.shownFile(), b);
  platform.previewPanel.orderOut();
  platform.log.clear();
  quickLook.syncSelection(c, urls);
  EXPECT_EQ(platform.log.calls(), Calls{});
}

TEST_F(QuickLook, takesTheWindowAlongWhenItGoes) {
  FakePreviewPanel panel(platform.log);
  {
    QuickLookPreviewController controller(platform.files, panel);
    controller.preview(a, urls);
    ASSERT_TRUE(panel.isVisible());
  }
  EXPECT_FALSE(panel.isVisible());
}

}  // namespace
}  // namespace quenlio
