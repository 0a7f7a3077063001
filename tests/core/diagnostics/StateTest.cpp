// The text of state.json and of an event.
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>
#include <string>

#include "core/base/Json.h"
#include "core/diagnostics/QuenlioReleaseTestState.h"

namespace quenlio {
namespace {

using namespace std::chrono_literals;

constexpr Date kMoment = std::chrono::sys_days(std::chrono::year(2026) / 11 / 15) + 21h;

QuenlioReleaseTestState emptyState(const std::string& runID) {
  QuenlioReleaseTestState state;
  state.runID = runID;
  return state;
}

QuenlioReleaseTestState fullState() {
  return {
      .runID = "run",
      .appVersion = "1.2",
      .launchedAt = kMoment,
      .lastUpdatedAt = kMoment + 5s,
      .onboardingVisible = true,
      .onboardingState = "pending",
      .onboardingCurrentStep = "welcome",
      .installPromptVisible = true,
      .firstRunRecoveryApplied = true,
      .firstRunRecoveryForcedPending = true,
      .firstRunRecoveryAction = "none",
      .onboardingScreenshotRecoveryResult = "notNeeded",
      .screenshotCount = 3,
      .latestScreenshotPath = "/shots/a.png",
      .selectedScreenshotPath = "/shots/b.png",
      .floatingThumbnailDisabledRequested = true,
      .statusItemVisible = true,
      .lastInteractiveScreenshotTrigger = "interactive",
      .permissionState = {.screenRecordingGranted = true, .desktopFolderReadable = true},
  };
}

TEST(StateText, isPrettyWithSortedKeysAndISODates) {
  EXPECT_EQ(encode(fullState()),
            "{\n"
            "  \"appVersion\" : \"1.2\",\n"
            "  \"firstRunRecoveryAction\" : \"none\",\n"
            "  \"firstRunRecoveryApplied\" : true,\n"
            "  \"firstRunRecoveryForcedPending\" : true,\n"
            "  \"floatingThumbnailDisabledRequested\" : true,\n"
            "  \"installPromptVisible\" : true,\n"
            "  \"lastInteractiveScreenshotTrigger\" : \"interactive\",\n"
            "  \"lastUpdatedAt\" : \"2026-11-15T21:00:05Z\",\n"
            "  \"latestScreenshotPath\" : \"\\/shots\\/a.png\",\n"
            "  \"launchedAt\" : \"2026-11-15T21:00:00Z\",\n"
            "  \"onboardingCurrentStep\" : \"welcome\",\n"
            "  \"onboardingScreenshotRecoveryResult\" : \"notNeeded\",\n"
            "  \"onboardingState\" : \"pending\",\n"
            "  \"onboardingVisible\" : true,\n"
            "  \"permissionState\" : {\n"
            "    \"desktopFolderReadable\" : true,\n"
            "    \"screenRecordingGranted\" : true\n"
            "  },\n"
            "  \"runID\" : \"run\",\n"
            "  \"screenshotCount\" : 3,\n"
            "  \"selectedScreenshotPath\" : \"\\/shots\\/b.png\",\n"
            "  \"statusItemVisible\" : true\n"
            "}");
}

TEST(StateText, anAbsentValueHasNoKeyAndTheRestIsEmptyOrFalse) {
  const auto object = json::read(encode(emptyState("local")));
  ASSERT_TRUE(object);
  EXPECT_EQ(*object,
            json::Value({{"runID", "local"},
                         {"onboardingVisible", false},
                         {"installPromptVisible", false},
                         {"firstRunRecoveryApplied", false},
                         {"firstRunRecoveryForcedPending", false},
                         {"onboardingScreenshotRecoveryResult", "notAttempted"},
                         {"screenshotCount", 0},
                         {"floatingThumbnailDisabledRequested", false},
                         {"statusItemVisible", false},
                         {"permissionState", {{"screenRecordingGranted", false}, {"desktopFolderReadable", false}}}}));
}

TEST(StateText, comesBackAsItWas) {
  EXPECT_EQ(decodeState(encode(fullState())), fullState());
  EXPECT_EQ(decodeState(encode(emptyState(""))), emptyState(""));
}

TEST(StateText, aPathThatIsNotUTF8ComesBack) {
  auto state = fullState();
  state.latestScreenshotPath = "/shots/\xFF.png";
  EXPECT_EQ(decodeState(encode(state)), state);
}

TEST(StateText, isNotReadWithoutAKeyThatIsAlwaysThere) {
  for (const char* key : {"runID", "onboardingVisible", "installPromptVisible", "firstRunRecoveryApplied",
                          "firstRunRecoveryForcedPending", "onboardingScreenshotRecoveryResult", "screenshotCount",
                          "floatingThumbnailDisabledRequested", "statusItemVisible", "permissionState"}) {
    auto object = *json::read(encode(fullState()));
    object.erase(key);
    EXPECT_EQ(decodeState(json::write(object, json::Style::compact)), std::nullopt) << key;
  }
}

TEST(StateText, isReadWithoutTheKeysOfAbsentValuesAndWithKeysThatItDoesNotKnow) {
  auto object = *json::read(encode(fullState()));
  object.erase("appVersion");
  object["launchedAt"] = nullptr;
  object["other"] = 1;
  const auto state = decodeState(json::write(object, json::Style::compact));
  ASSERT_TRUE(state);
  EXPECT_EQ(state->appVersion, std::nullopt);
  EXPECT_EQ(state->launchedAt, std::nullopt);
}

TEST(StateText, isNotReadWithAValueOfAnotherType) {
  const std::pair<const char*, json::Value> wrong[] = {{"runID", 1},
                                                       {"appVersion", 1},
                                                       {"launchedAt", "yesterday"},
                                                       {"lastUpdatedAt", 5},
                                                       {"screenshotCount", "3"},
                                                       {"screenshotCount", 1.5},
                                                       {"statusItemVisible", 1},
                                                       {"permissionState", true},
                                                       {"permissionState", json::Value::object()},
                                                       {"onboardingState", false}};
  for (const auto& [key, value] : wrong) {
    auto object = *json::read(encode(fullState()));
    object[key] = value;
    EXPECT_EQ(decodeState(json::write(object, json::Style::compact)), std::nullopt) << key;
  }
}

TEST(StateText, isNotReadFromWhatIsNoObject) {
  for (const char* text : {"", "[]", "1", "null", "{", "{}"}) {
    EXPECT_EQ(decodeState(text), std::nullopt) << text;
  }
}

RC_GTEST_PROP(StateTextProperty, anyStateComesBack,
              (const std::string& runID, const std::string& path, std::int64_t count, bool flag)) {
  QuenlioReleaseTestState state = emptyState(runID);
  state.launchedAt = kMoment;
  state.onboardingVisible = flag;
  state.screenshotCount = count;
  state.latestScreenshotPath = path;
  state.permissionState.desktopFolderReadable = flag;
  RC_ASSERT(decodeState(encode(state)) == state);
}

RC_GTEST_PROP(StateTextProperty, aCutTextIsNeverRead, ()) {
  const std::string text = encode(fullState());
  const auto length = *rc::gen::inRange<std::size_t>(0, text.size());
  RC_ASSERT(!decodeState(text.substr(0, length)));
}

TEST(EventText, holdsItsTimeNameAndMetadata) {
  EXPECT_EQ(encode(QuenlioReleaseTestEvent{kMoment, "screenshot_detected", {{"path", "/a"}, {"k", "v"}}}),
            "{\n"
            "  \"metadata\" : {\n"
            "    \"k\" : \"v\",\n"
            "    \"path\" : \"\\/a\"\n"
            "  },\n"
            "  \"name\" : \"screenshot_detected\",\n"
            "  \"timestamp\" : \"2026-11-15T21:00:00Z\"\n"
            "}");
}

TEST(EventText, itsMetadataMayBeEmpty) {
  const auto object = json::read(encode(QuenlioReleaseTestEvent{kMoment, "n", {}}));
  ASSERT_TRUE(object);
  EXPECT_EQ((*object)["metadata"], json::Value::object());
}

}  // namespace
}  // namespace quenlio
