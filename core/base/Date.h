// Moments of wall-clock time and lengths of time. Values only: what time it is tells platform/Clock.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace quenlio {

using Seconds = std::chrono::duration<double>;

// Nanoseconds since 1970-01-01 00:00 UTC.
using Date = std::chrono::sys_time<std::chrono::nanoseconds>;

// Earlier than every real date.
inline constexpr Date kDistantPast = Date::min();

// ISO 8601 with whole seconds and the zone Z: "2026-11-15T21:04:33Z". Fractions are cut off.
[[nodiscard]] std::string iso8601(Date date);

// The reverse of iso8601(); nothing for any other form, nor before 1678 or after 2261, which a Date cannot hold.
[[nodiscard]] std::optional<Date> dateFromISO8601(std::string_view text);

}  // namespace quenlio
