// What the fakes were asked to do, in order.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace quenlio {

class CallLog {
 public:
  void add(std::string call) { calls_.push_back(std::move(call)); }
  void clear() { calls_.clear(); }
  [[nodiscard]] const std::vector<std::string>& calls() const { return calls_; }
  [[nodiscard]] std::ptrdiff_t count(std::string_view call) const { return std::ranges::count(calls_, call); }
  // Where the call stands for the first time, or -1.
  [[nodiscard]] std::ptrdiff_t indexOf(std::string_view call) const {
    const auto found = std::ranges::find(calls_, call);
    return found != calls_.end() ? found - calls_.begin() : -1;
  }

 private:
  std::vector<std::string> calls_;
};

}  // namespace quenlio
