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
  [[nodiscard]] std::optional<ImageRef> renderHere(const FileURL& url, Size canvas) override {
    return isDecodedApart ? std::nullopt : std::optional(render(url, canvas));
  }
  bool isDecodedApart = false;
  std::function<void()> meanwhile;
  int count = 0;
};

// What holds wherever the files are decoded: here, or in another process.
class Thumbnails : public LibraryTest, public testing::WithParamInterface<bool> {
 protected:
  void SetUp() override {
    if (isDecodedApart) {
      platform.thumbnails.decodedApart = {"/shots/a.png", "/shots/b.png"};
    }
    open();
  }
  const bool isDecodedApart = GetParam();
};

INSTANTIATE_TEST_SUITE_P(HereAndApart, Thumbnails, testing::Bool());

TEST_P(Thumbnails, anItemIsListedAtOnceWithoutAThumbnailWhichFollows) {
  add("a.png");
  EXPECT_EQ(item("a.png").thumbnail, nullptr);
  EXPECT_TRUE(platform.thumbnails.rendered.empty());
  platform.time.runReady();
  ASSERT_NE(item("a.png").thumbnail, nullptr);
  EXPECT_EQ(item("a.png").thumbnail->size(), (Size{280, 220}));
  EXPECT_EQ(platform.thumbnails.rendered, Names{"/shots/a.png"});
}

TEST_P(Thumbnails, aFileThatIsNoPictureStaysInTheListWithoutOne) {
  platform.thumbnails.undecodable.insert("/shots/a.png");
  add("a.png");
  platform.time.runReady();
  EXPECT_EQ(platform.thumbnails.rendered, Names{"/shots/a.png"});
  EXPECT_EQ(names(), Names{"a.png"});
  EXPECT_EQ(item("a.png").thumbnail, nullptr);
}

TEST_P(Thumbnails, theFirstOfTwoForTheSameFileFindsNoItemAndIsDropped) {
  add("a.png");
  add("a.png");
  const Announcements announcements(*store);
  platform.time.runReady();
  EXPECT_EQ(platform.thumbnails.rendered.size(), 2U);
  EXPECT_EQ(announcements.list, Names{"items a.png"});
  EXPECT_NE(item("a.png").thumbnail, nullptr);
}

TEST_P(Thumbnails, oneForAnItemThatHasGoneIsDropped) {
  add("a.png");
  platform.files.remove("/shots/a.png");
  store->removeMissingFiles();
  const Announcements announcements(*store);
  platform.time.runReady();
  EXPECT_EQ(announcements.list, Names{});
}

TEST_P(Thumbnails, theyMoveNeitherTheListNorTheSelection) {
  const Uuid first = add("a.png", 1);
  add("b.png", 2);
  store->select(first);
  Announcements announcements(*store);
  platform.time.runReady();
  EXPECT_EQ(announcements.list, (Names{"items b.png a.png", "items b.png a.png"}));
}

TEST_P(Thumbnails, aFileThatWasRenamedBeforeItsTurnIsFoundUnderItsNewName) {
  platform.thumbnails.undecodable.insert("/shots/a.png");  // where no file is any more
  add("a.png");
  ASSERT_TRUE(store->rename(item("a.png"), "b"));
  platform.time.runReady();
  EXPECT_EQ(platform.thumbnails.rendered, (Names{"/shots/a.png", "/shots/b.png"}));
  EXPECT_NE(item("b.png").thumbnail, nullptr);
}

TEST_P(Thumbnails, noItemGetsTheOneOfAnotherFileThatHasTakenItsOldName) {
  add("a.png");
  ASSERT_TRUE(store->rename(item("a.png"), "b"));
  add("a.png");
  platform.time.runReady();
  for (const ScreenshotItem& item : store->items.get()) {
    const auto thumbnail = std::dynamic_pointer_cast<const FakeImage>(item.thumbnail);
    ASSERT_NE(thumbnail, nullptr);
    EXPECT_EQ(thumbnail->url, item.fileURL);
  }
}

TEST_P(Thumbnails, noneIsRenderedOnceTheLibraryIsGone) {
  add("a.png");
  store.reset();
  platform.time.runReady();
  EXPECT_TRUE(platform.thumbnails.rendered.empty());
  EXPECT_EQ(platform.time.pending(), 0U);
}

TEST_P(Thumbnails, oneThatIsReadyAfterTheLibraryIsGoneIsDropped) {
  InterruptedRenderer renderer;
  store = std::make_unique<ScreenshotStore>(dependencies(platform.time, renderer));
  renderer.isDecodedApart = isDecodedApart;
  renderer.meanwhile = [this] { store.reset(); };
  add("a.png");
  platform.time.runReady();
  EXPECT_EQ(renderer.count, 1);
  EXPECT_EQ(store, nullptr);
  EXPECT_EQ(platform.time.pending(), 0U);
}

TEST_P(Thumbnails, oneWhoseItemGoesWhileItIsRenderedIsDropped) {
  InterruptedRenderer renderer;
  store = std::make_unique<ScreenshotStore>(dependencies(platform.time, renderer));
  renderer.isDecodedApart = isDecodedApart;
  renderer.meanwhile = [this] {
    platform.files.remove("/shots/a.png");
    store->removeMissingFiles();
  };
  add("a.png");
  platform.time.runReady();
  EXPECT_EQ(renderer.count, 1);
  EXPECT_TRUE(store->items.get().empty());
}

class ThumbnailPriority : public LibraryTest {
 protected:
  ThumbnailPriority() {
    open();
    store = std::make_unique<ScreenshotStore>(dependencies(scheduler, platform.thumbnails));
  }
  SchedulerRecorder scheduler{platform.time};
};

TEST_F(ThumbnailPriority, isUtility) {
  const FileURL url = file("a.png");
  store->ingestScreenshot(url, std::nullopt);
  store->refreshEditedScreenshot(url);
  platform.time.runReady();
  EXPECT_EQ(scheduler.detachedPriorities, (std::vector{QualityOfService::utility, QualityOfService::utility}));
}

TEST_F(ThumbnailPriority, isBackgroundForWhatAnotherProcessDecodes) {
  platform.thumbnails.decodedApart = {"/shots/slow.pdf", "/shots/slower.heic"};
  for (const char* name : {"slow.pdf", "slower.heic", "plain.png"}) {
    add(name);
  }
  platform.time.runReady();
  constexpr auto utility = QualityOfService::utility;
  constexpr auto background = QualityOfService::background;
  EXPECT_EQ(scheduler.detachedPriorities, (std::vector{utility, utility, utility, background, background}));
  EXPECT_EQ(platform.thumbnails.rendered, (Names{"/shots/plain.png", "/shots/slow.pdf", "/shots/slower.heic"}));
  for (const ScreenshotItem& item : store->items.get()) {
    EXPECT_NE(item.thumbnail, nullptr) << item.fileURL.path();
  }
}

// It has been told by then that another process decodes the file, and waits for its turn.
TEST_F(ThumbnailPriority, noneIsRenderedAtBackgroundOnceTheLibraryIsGone) {
  platform.thumbnails.decodedApart = {"/shots/slow.pdf"};
  add("slow.pdf");
  scheduler.post([this] { store.reset(); });
  platform.time.runReady();
  EXPECT_EQ(scheduler.detachedPriorities, (std::vector{QualityOfService::utility, QualityOfService::background}));
  EXPECT_TRUE(platform.thumbnails.rendered.empty());
  EXPECT_EQ(platform.time.pending(), 0U);
}

}  // namespace
}  // namespace quenlio
