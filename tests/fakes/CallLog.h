// What the fakes were asked to do, in order.
#pragma once

#include <algorithm>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quenlio {

class CallLog {
 public:
  void add(std::string call) {
    calls_.push_back(std::move(call));
    if (whenAdded) {
      whenAdded(calls_.back());
    }
  }
  void clear() { calls_.clear(); }
  [[nodiscard]] const std::vector<std::string>& calls() const { return calls_; }
  [[nodiscard]] std::ptrdiff_t count(std::string_view call) const { return std::ranges::count(calls_, call); }
  // Where the call stands for the first time, or -1.
  [[nodiscard]] std::ptrdiff_t indexOf(std::string_view call) const {
    const auto found = std::ranges::find(calls_, call);
    return found != calls_.end() ? found - calls_.begin() : -1;
  }

  // Hears of each call as it is made: what else is true at that moment can be looked at here.
  std::function<void(const std::string&)> whenAdded;

 private:
  std::vector<std::string> calls_;
};

}  // namespace quenlio
