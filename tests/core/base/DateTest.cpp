// Moments as ISO 8601 text and back.
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>
#include <string>

#include "core/base/Date.h"

namespace quenlio {
namespace {

using namespace std::chrono_literals;

constexpr Date kMoment = std::chrono::sys_days(std::chrono::year(2026) / 11 / 15) + 21h + 4min + 33s;

TEST(ISO8601, writesWholeSecondsWithTheZoneZ) {
  EXPECT_EQ(iso8601(kMoment), "2026-11-15T21:04:33Z");
  EXPECT_EQ(iso8601(Date{}), "1970-01-01T00:00:00Z");
}

TEST(ISO8601, cutsFractionsOff) {
  EXPECT_EQ(iso8601(kMoment + 999'999'999ns), "2026-11-15T21:04:33Z");
  EXPECT_EQ(iso8601(Date{} - 1ns), "1969-12-31T23:59:59Z") << "also before 1970";
}

TEST(ISO8601, writesTheEarliestAndTheLatestDateThatThereIs) {
  EXPECT_EQ(iso8601(kDistantPast), "1677-09-21T00:12:43Z");
  EXPECT_EQ(iso8601(Date::max()), "2262-04-11T23:47:16Z");
}

TEST(DateFromISO8601, readsTheFormThatIsWritten) {
  EXPECT_EQ(dateFromISO8601("2026-11-15T21:04:33Z"), kMoment);
  EXPECT_EQ(dateFromISO8601("2024-02-29T00:00:00Z"), Date(std::chrono::sys_days(std::chrono::year(2024) / 2 / 29)));
}

TEST(DateFromISO8601, refusesEveryOtherForm) {
  for (const char* text :
       {"", "2026-11-15", "2026-11-15T21:04:33", "2026-11-15T21:04:33.5Z", "2026-11-15T21:04:33+01:00",
        "2026-11-15t21:04:33Z", "2026-11-15 21:04:33Z", "2026-1-15T21:04:33Z", " 2026-11-15T21:04:33Z",
        "2026-11-15T21:04:33Z ", "2026-11-15T21:04:3xZ", "-026-11-15T21:04:33Z", "+026-11-15T21:04:33Z"}) {
    EXPECT_EQ(dateFromISO8601(text), std::nullopt) << text;
  }
}

TEST(DateFromISO8601, refusesDaysAndTimesThatDoNotExist) {
  for (const char* text :
       {"2026-02-29T00:00:00Z", "2026-13-01T00:00:00Z", "2026-00-01T00:00:00Z", "2026-01-32T00:00:00Z",
        "2026-01-00T00:00:00Z", "2026-01-01T24:00:00Z", "2026-01-01T00:60:00Z", "2026-01-01T00:00:60Z"}) {
    EXPECT_EQ(dateFromISO8601(text), std::nullopt) << text;
  }
}

TEST(DateFromISO8601, refusesYearsThatADateCannotHold) {
  for (const char* text :
       {"0000-01-01T00:00:00Z", "1677-12-31T23:59:59Z", "2262-01-01T00:00:00Z", "9999-12-31T23:59:59Z"}) {
    EXPECT_EQ(dateFromISO8601(text), std::nullopt) << text;
  }
  EXPECT_TRUE(dateFromISO8601("1678-01-01T00:00:00Z"));
  EXPECT_TRUE(dateFromISO8601("2261-12-31T23:59:59Z"));
}

RC_GTEST_PROP(DateProperty, everyMomentComesBackAsItsWholeSecond, ()) {
  const auto seconds = *rc::gen::inRange<std::int64_t>(-9'000'000'000, 9'000'000'000);
  const auto fraction = *rc::gen::inRange<std::int64_t>(0, 1'000'000'000);
  const Date date = Date(std::chrono::seconds(seconds));
  RC_ASSERT(dateFromISO8601(iso8601(date + std::chrono::nanoseconds(fraction))) == date);
}

RC_GTEST_PROP(DateProperty, textsSortAsTheirMoments, ()) {
  const auto moment = rc::gen::inRange<std::int64_t>(-9'000'000'000, 9'000'000'000);
  const auto [one, other] = *rc::gen::pair(moment, moment);
  RC_ASSERT((one < other) == (iso8601(Date(std::chrono::seconds(one))) < iso8601(Date(std::chrono::seconds(other)))));
}

}  // namespace
}  // namespace quenlio
