#include "core/base/Date.h"

#include <array>
#include <charconv>
#include <cstdio>

namespace quenlio {

std::string iso8601(Date date) {
  // In seconds: the first moment of the earliest day is earlier than any Date in nanoseconds.
  const auto second = std::chrono::floor<std::chrono::seconds>(date);
  const auto day = std::chrono::floor<std::chrono::days>(second);
  const std::chrono::year_month_day calendar(day);
  const std::chrono::hh_mm_ss time(second - day);
  std::array<char, 32> text{};
  const int length = std::snprintf(text.data(), text.size(), "%04d-%02u-%02uT%02d:%02d:%02dZ",
                                   static_cast<int>(calendar.year()), static_cast<unsigned>(calendar.month()),
                                   static_cast<unsigned>(calendar.day()), static_cast<int>(time.hours().count()),
                                   static_cast<int>(time.minutes().count()), static_cast<int>(time.seconds().count()));
  return {text.data(), static_cast<std::size_t>(length)};
}

std::optional<Date> dateFromISO8601(std::string_view text) {
  constexpr std::string_view form = "0000-00-00T00:00:00Z";
  if (text.size() != form.size()) {
    return std::nullopt;
  }
  for (std::size_t i = 0; i < form.size(); ++i) {
    const bool fits = form[i] == '0' ? text[i] >= '0' && text[i] <= '9' : text[i] == form[i];
    if (!fits) {
      return std::nullopt;
    }
  }
  const auto number = [&](std::size_t at, std::size_t length) {
    int value = 0;
    std::from_chars(text.data() + at, text.data() + at + length, value);
    return value;
  };
  const auto day = std::chrono::year(number(0, 4)) / number(5, 2) / number(8, 2);
  // The nanoseconds of a Date reach from 1677 to 2262; the whole years in between are taken.
  constexpr auto firstYear = std::chrono::year(1678);
  constexpr auto lastYear = std::chrono::year(2261);
  if (!day.ok() || day.year() < firstYear || day.year() > lastYear || number(11, 2) > 23 || number(14, 2) > 59 ||
      number(17, 2) > 59) {
    return std::nullopt;
  }
  return Date(std::chrono::sys_days(day)) + std::chrono::hours(number(11, 2)) + std::chrono::minutes(number(14, 2)) +
         std::chrono::seconds(number(17, 2));
}

}  // namespace quenlio
