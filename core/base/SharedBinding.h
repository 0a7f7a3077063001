// Makes one instance reachable as X::shared() for as long as the binding lives. The composition root binds; shared()
// asserts when nothing is bound. A binding covers the one made before it, and bindings end in the reverse order of
// their making: out of order, the later one would bring an instance back that may be gone. Logic takes references in
// its constructor instead, so that each object can be built alone; shared() serves the outermost callers only.
#pragma once

#include <cassert>
#include <utility>

namespace quenlio {

template <class T>
class SharedBinding {
 public:
  explicit SharedBinding(T& instance) : previous_(std::exchange(current_, &instance)) {}
  SharedBinding(const SharedBinding&) = delete;
  SharedBinding& operator=(const SharedBinding&) = delete;
  ~SharedBinding() { current_ = previous_; }

  [[nodiscard]] static T& shared() {
    assert(current_ != nullptr && "nothing is bound as the shared instance");
    return *current_;
  }

 private:
  inline static T* current_ = nullptr;
  T* previous_;
};

}  // namespace quenlio
