// Drags of screenshots out to other programs.
#include <gtest/gtest.h>

#include "tests/harness/TestLibrary.h"

namespace quenlio {
namespace {

class DragOut : public testing::Test, protected TestLibrary {
 protected:
  DragOut() {
    platform.windows.list = {{.id = 1, .frame = {{1000, 40}, {232, 232}}}, {.id = 2, .frame = {{0, 0}, {200, 200}}}};
    platform.screens.pointer = {1100, 140};
  }
  // Screenshots whose files are there, in this order.
  std::vector<ScreenshotItem> items(std::size_t count) {
    std::vector<ScreenshotItem> made;
    for (std::size_t index = 0; index < count; ++index) {
      const std::string path = "/shots/" + std::to_string(index) + ".png";
      platform.files.write(path);
      made.emplace_back();
      made.back().id = Uuid::random();
      made.back().fileURL = FileURL(path);
    }
    return made;
  }
  [[nodiscard]] const DraggingRequest& request() const { return platform.draggingSessions.requests.back(); }
  int ends = 0;
  std::function<void()> ended = [this] { ++ends; };
};

TEST_F(DragOut, isACopyAndNothingElse) {
  ASSERT_TRUE(dragDrop.beginDraggingSession(items(1), {}));
  EXPECT_EQ(request().allowedOperations, kDragOperationCopy);
  EXPECT_TRUE(request().animatesToStartingPositionsOnCancelOrFail);
  EXPECT_EQ(request().draggingFormation, DraggingFormation::standard);
}

TEST_F(DragOut, sevenFilesFanOutByFourPointsUpToTheFifth) {
  const auto seven = items(7);
  platform.windows.event = {.type = PointerEventType::leftMouseDragged, .window = 1, .locationInWindow = {100, 80}};
  ASSERT_TRUE(dragDrop.beginDraggingSession(seven, {}));
  ASSERT_EQ(request().items.size(), 7U);
  const double offsets[] = {0, 4, 8, 12, 16, 16, 16};
  for (std::size_t index = 0; index < 7; ++index) {
    EXPECT_EQ(request().items[index].fileURL, seven[index].fileURL);
    EXPECT_EQ(request().items[index].frame,
              (Rect<WindowContent>{{68 + offsets[index], 48 - offsets[index]}, {64, 64}}));
  }
  EXPECT_EQ(request().draggingFormation, DraggingFormation::stack);
}

TEST_F(DragOut, showsTheThumbnailOfEachFile) {
  auto one = items(1);
  one.front().thumbnail = std::make_shared<FakeImages::Picture>(one.front().fileURL);
  ASSERT_TRUE(dragDrop.beginDraggingSession(one, {}));
  EXPECT_EQ(request().items.front().image, one.front().thumbnail);
}

TEST_F(DragOut, leavesOutFilesThatHaveGone) {
  const auto three = items(3);
  platform.files.remove(three[1].fileURL.path());
  ASSERT_TRUE(dragDrop.beginDraggingSession(three, {}));
  ASSERT_EQ(request().items.size(), 2U);
  EXPECT_EQ(request().items[0].fileURL, three[0].fileURL);
  EXPECT_EQ(request().items[1].fileURL, three[2].fileURL);
}

TEST_F(DragOut, ofFilesThatHaveAllGoneDoesNotBeginAndForgetsItsCallback) {
  const auto two = items(2);
  platform.files.remove(two[0].fileURL.path());
  platform.files.remove(two[1].fileURL.path());
  std::weak_ptr<int> kept;
  {
    const auto token = std::make_shared<int>(0);
    kept = token;
    EXPECT_FALSE(dragDrop.beginDraggingSession(two, [token] {}));
  }
  EXPECT_TRUE(platform.draggingSessions.requests.empty());
  EXPECT_TRUE(kept.expired());
}

TEST_F(DragOut, startsWhereTheEventIs) {
  platform.windows.event = {.type = PointerEventType::leftMouseDown,
                            .window = 2,
                            .locationInWindow = {10, 20},
                            .modifierFlags = kModifierOption,
                            .timestamp = Seconds(5)};
  ASSERT_TRUE(dragDrop.beginDraggingSession(items(1), {}));
  EXPECT_EQ(request().window, 2U);
  EXPECT_EQ(request().event, *platform.windows.event);
}

TEST_F(DragOut, withoutAMouseEventMakesOneUp) {
  platform.windows.event = {.type = PointerEventType::other, .window = 1, .locationInWindow = {3, 4}};
  platform.windows.flags = kModifierShift;
  platform.windows.uptime = Seconds(77);
  ASSERT_TRUE(dragDrop.beginDraggingSession(items(1), {}));
  EXPECT_EQ(request().event, (PointerEvent{.type = PointerEventType::leftMouseDown,
                                           .window = 1,
                                           .locationInWindow = {3, 4},
                                           .modifierFlags = kModifierShift,
                                           .timestamp = Seconds(77)}));
}

TEST_F(DragOut, withoutAnyEventStartsFromTheWindowUnderThePointerThenTheKeyThenTheMainOne) {
  const auto one = items(1);
  ASSERT_TRUE(dragDrop.beginDraggingSession(one, {}));
  EXPECT_EQ(request().window, 1U);
  EXPECT_EQ(request().event.locationInWindow, (Point<WindowContent>{100, 100}));
  platform.screens.pointer = {600, 600};
  platform.windows.list[0].isMainWindow = true;
  platform.windows.list[1].isKeyWindow = true;
  ASSERT_TRUE(dragDrop.beginDraggingSession(one, {}));
  EXPECT_EQ(request().window, 2U);
  platform.windows.list[1].isKeyWindow = false;
  ASSERT_TRUE(dragDrop.beginDraggingSession(one, {}));
  EXPECT_EQ(request().window, 1U);
  platform.windows.list[0].isMainWindow = false;
  EXPECT_FALSE(dragDrop.beginDraggingSession(one, {}));
}

TEST_F(DragOut, anEventOfAWindowWithoutContentIsNoPlaceToStartFrom) {
  platform.windows.event = {.type = PointerEventType::leftMouseDragged, .window = 2, .locationInWindow = {10, 20}};
  platform.windows.list[1].hasContentView = false;
  ASSERT_TRUE(dragDrop.beginDraggingSession(items(1), {}));
  EXPECT_EQ(request().window, 1U);
  // The event is what it is; the pictures lie around the pointer in the window that the drag starts from.
  EXPECT_EQ(request().event, *platform.windows.event);
  EXPECT_EQ(request().location, (Point<WindowContent>{100, 100}));
  EXPECT_EQ(request().items.front().frame, (Rect<WindowContent>{{68, 68}, {64, 64}}));
}

TEST_F(DragOut, doesNotBeginInAWindowWithoutContent) {
  platform.windows.list[0].hasContentView = false;
  platform.windows.list[1].isKeyWindow = true;
  EXPECT_FALSE(dragDrop.beginDraggingSession(items(1), {}));
}

TEST_F(DragOut, tellsOfItsEndOnceAndOnTheMainQueue) {
  ASSERT_TRUE(dragDrop.beginDraggingSession(items(1), ended));
  platform.draggingSessions.end(1);
  EXPECT_EQ(ends, 0);
  platform.time.runReady();
  EXPECT_EQ(ends, 1);
}

TEST_F(DragOut, eachOfTwoTellsOfItsOwnEnd) {
  const auto one = items(1);
  int others = 0;
  ASSERT_TRUE(dragDrop.beginDraggingSession(one, ended));
  ASSERT_TRUE(dragDrop.beginDraggingSession(one, [&others] { ++others; }));
  platform.draggingSessions.end(2);
  platform.time.runReady();
  EXPECT_EQ(ends, 0);
  EXPECT_EQ(others, 1);
  platform.draggingSessions.end(1);
  platform.time.runReady();
  EXPECT_EQ(ends, 1);
}

}  // namespace
}  // namespace quenlio
