// How items get their thumbnails: later, off the main thread, and never for an item that has gone.
#include <utility>

#include "tests/core/library/LibraryTest.h"
#include "tests/harness/SchedulerRecorder.h"

namespace quenlio {
namespace {

// Lets something happen on the main thread while a thumbnail is being rendered.
class InterruptedRenderer final : public ThumbnailRenderer {
 public:
  [[nodiscard]] ImageRef render(const FileURL& url, Size canvas) override {
    ++count;
    if (meanwhile) {
      meanwhile();
    }
    return std::make_shared<FakeImage>(url, canvas);
  }
  std::function<void()> meanwhile;
  int count = 0;
};

class Thumbnails : public LibraryTest {
 protected:
  void SetUp() override { open(); }
};

TEST_F(Thumbnails, anItemIsListedAtOnceWithoutAThumbnailWhichFollows) {
  add("a.png");
  EXPECT_EQ(item("a.png").thumbnail, nullptr);
  EXPECT_TRUE(platform.thumbnails.rendered.empty());
  platform.time.runReady();
  ASSERT_NE(item("a.png").thumbnail, nullptr);
  EXPECT_EQ(item("a.png").thumbnail->size(), (Size{280, 220}));
  EXPECT_EQ(platform.thumbnails.rendered, Names{"/shots/a.png"});
}

TEST_F(Thumbnails, theyAreMadeAtUtilityPriority) {
  SchedulerRecorder scheduler(platform.time);
  store = std::make_unique<ScreenshotStore>(dependencies(scheduler, platform.thumbnails));
  const FileURL url = file("a.png");
  store->ingestScreenshot(url, std::nullopt);
  store->refreshEditedScreenshot(url);
  EXPECT_EQ(scheduler.detachedPriorities, (std::vector{QualityOfService::utility, QualityOfService::utility}));
}

TEST_F(Thumbnails, aFileThatIsNoPictureStaysInTheListWithoutOne) {
  platform.thumbnails.undecodable.insert("/shots/a.png");
  add("a.png");
  platform.time.runReady();
  EXPECT_EQ(platform.thumbnails.rendered, Names{"/shots/a.png"});
  EXPECT_EQ(names(), Names{"a.png"});
  EXPECT_EQ(item("a.png").thumbnail, nullptr);
}

TEST_F(Thumbnails, theFirstOfTwoForTheSameFileFindsNoItemAndIsDropped) {
  add("a.png");
  add("a.png");
  const Announcements announcements(*store);
  platform.time.runReady();
  EXPECT_EQ(platform.thumbnails.rendered.size(), 2U);
  EXPECT_EQ(announcements.list, Names{"items a.png"});
  EXPECT_NE(item("a.png").thumbnail, nullptr);
}

TEST_F(Thumbnails, oneForAnItemThatHasGoneIsDropped) {
  add("a.png");
  platform.files.remove("/shots/a.png");
  store->removeMissingFiles();
  const Announcements announcements(*store);
  platform.time.runReady();
  EXPECT_EQ(announcements.list, Names{});
}

TEST_F(Thumbnails, theyMoveNeitherTheListNorTheSelection) {
  const Uuid first = add("a.png", 1);
  add("b.png", 2);
  store->select(first);
  Announcements announcements(*store);
  platform.time.runReady();
  EXPECT_EQ(announcements.list, (Names{"items b.png a.png", "items b.png a.png"}));
}

TEST_F(Thumbnails, noneIsRenderedOnceTheLibraryIsGone) {
  add("a.png");
  store.reset();
  platform.time.runReady();
  EXPECT_TRUE(platform.thumbnails.rendered.empty());
  EXPECT_EQ(platform.time.pending(), 0U);
}

TEST_F(Thumbnails, oneThatIsReadyAfterTheLibraryIsGoneIsDropped) {
  InterruptedRenderer renderer;
  store = std::make_unique<ScreenshotStore>(dependencies(platform.time, renderer));
  renderer.meanwhile = [this] { store.reset(); };
  add("a.png");
  platform.time.runReady();
  EXPECT_EQ(renderer.count, 1);
  EXPECT_EQ(store, nullptr);
  EXPECT_EQ(platform.time.pending(), 0U);
}

TEST_F(Thumbnails, oneWhoseItemGoesWhileItIsRenderedIsDropped) {
  InterruptedRenderer renderer;
  store = std::make_unique<ScreenshotStore>(dependencies(platform.time, renderer));
  renderer.meanwhile = [this] {
    platform.files.remove("/shots/a.png");
    store->removeMissingFiles();
  };
  add("a.png");
  platform.time.runReady();
  EXPECT_EQ(renderer.count, 1);
  EXPECT_TRUE(store->items.get().empty());
}

}  // namespace
}  // namespace quenlio
