// Callbacks that do nothing once their owner is gone.
//
//   class Panel {
//     void arm() { timer_ = scheduler_.after(1s, weak_.bind([](Panel& self) { self.hide(); })); }
//     WeakOwner<Panel> weak_{this};  // the last member, so that it is the first to go
//   };
//
// Use: keep one as the last member and make every stored callback with bind() (or bindOr(), where the caller wants an
// answer). An owner whose members are given such callbacks while it is being made keeps it as the first member instead,
// and its destructor begins with letGo(). Threads: a bound callback may be copied and destroyed on any thread, but only
// the owner's thread (the main one) may call it; another queue posts it there.
#pragma once

#include <memory>
#include <utility>

namespace quenlio {

template <class Owner>
class WeakOwner {
 public:
  explicit WeakOwner(Owner* owner) : box_(std::make_shared<Box>(Box{owner})) {}
  WeakOwner(const WeakOwner&) = delete;
  WeakOwner& operator=(const WeakOwner&) = delete;
  ~WeakOwner() { letGo(); }

  // From now on every bound callback does nothing.
  void letGo() { box_->owner = nullptr; }

  // A callback (Args...) -> void that calls function(owner, args...) while the owner lives.
  template <class Function>
  [[nodiscard]] auto bind(Function function) const {
    return [box = box_, function = std::move(function)](auto&&... args) -> void {
      if (box->owner != nullptr) {
        function(*box->owner, std::forward<decltype(args)>(args)...);
      }
    };
  }

  // The same with a result: the fallback is the answer once the owner is gone.
  template <class Fallback, class Function>
  [[nodiscard]] auto bindOr(Fallback fallback, Function function) const {
    return [box = box_, fallback = std::move(fallback), function = std::move(function)](auto&&... args) -> Fallback {
      if (box->owner == nullptr) {
        return fallback;
      }
      return function(*box->owner, std::forward<decltype(args)>(args)...);
    };
  }

 private:
  // Shared, and never read but on the owner's thread: the count alone crosses threads.
  struct Box {
    Owner* owner;
  };
  std::shared_ptr<Box> box_;
};

}  // namespace quenlio
