#include "tests/harness/TestPlatform.h"

#include <algorithm>
#include <stdexcept>

#include "core/base/Json.h"

namespace quenlio {

std::vector<std::string> TestPlatform::eventNames() const {
  std::vector<std::string> names;
  const std::string text = files.content("/run/events.jsonl").value_or("");
  // Pretty-printed objects stand one after the other; each ends with a brace in the first column.
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = text.find("\n}\n", at);
    if (end == std::string::npos) {
      throw std::runtime_error("events.jsonl does not end with a whole object");
    }
    const auto event = json::read(text.substr(at, end + 2 - at));
    if (!event) {
      throw std::runtime_error("events.jsonl holds something that is no JSON");
    }
    names.push_back((*event)["name"].get<std::string>());
    at = end + 3;
  }
  return names;
}

std::ptrdiff_t TestPlatform::eventCount(std::string_view name) const {
  return std::ranges::count(eventNames(), name);
}

QuenlioReleaseTestState TestPlatform::state() const {
  const auto state = decodeState(files.content("/run/state.json").value_or(""));
  if (!state) {
    throw std::runtime_error("state.json cannot be read");
  }
  return *state;
}

}  // namespace quenlio
