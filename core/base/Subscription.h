// A registration that ends when this object goes away. Whoever installs an observer, a timer or a monitor keeps
// the Subscription and thereby owns the registration's lifetime.
//
// Movable, not copyable. Not thread safe: it belongs to the thread that made it.
#pragma once

#include <functional>
#include <utility>

namespace quenlio {

class [[nodiscard]] Subscription {
 public:
  Subscription() = default;
  explicit Subscription(std::function<void()> end) : end_(std::move(end)) {}
  Subscription(Subscription&& other) noexcept : end_(std::exchange(other.end_, nullptr)) {}
  Subscription& operator=(Subscription&& other) noexcept {
    if (this != &other) {
      cancel();
      end_ = std::exchange(other.end_, nullptr);
    }
    return *this;
  }
  Subscription(const Subscription&) = delete;
  Subscription& operator=(const Subscription&) = delete;
  ~Subscription() { cancel(); }

  // Ends the registration now. A second call does nothing.
  void cancel() {
    if (auto end = std::exchange(end_, nullptr)) {
      end();
    }
  }

  // Whether a registration is held. It does not tell whether a one-shot has already fired.
  [[nodiscard]] explicit operator bool() const { return static_cast<bool>(end_); }

 private:
  std::function<void()> end_;
};

}  // namespace quenlio
