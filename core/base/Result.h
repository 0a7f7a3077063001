// A value or the reason why there is none. Failures of the platform are values: the caller logs them and goes on.
#pragma once

#include <cassert>
#include <utility>
#include <variant>

namespace quenlio {

// The value of an operation that succeeds with nothing to give.
struct Done {
  bool operator==(const Done&) const = default;
};

template <class T, class Error>
class [[nodiscard]] Result {
 public:
  // Implicit on purpose: an operation returns its value or its error as it is.
  Result(T value) : state_(std::in_place_index<0>, std::move(value)) {}
  Result(Error error) : state_(std::in_place_index<1>, std::move(error)) {}

  [[nodiscard]] bool ok() const { return state_.index() == 0; }
  [[nodiscard]] explicit operator bool() const { return ok(); }

  // Only on a success.
  [[nodiscard]] const T& value() const {
    assert(ok());
    return std::get<0>(state_);
  }
  [[nodiscard]] T& value() {
    assert(ok());
    return std::get<0>(state_);
  }

  // Only on a failure.
  [[nodiscard]] const Error& error() const {
    assert(!ok());
    return std::get<1>(state_);
  }

 private:
  std::variant<T, Error> state_;
};

}  // namespace quenlio
