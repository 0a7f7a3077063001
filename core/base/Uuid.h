// A random identity (RFC 4122, version 4). A plain value, ordered by its bytes.
#pragma once

#include <array>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

namespace quenlio {

class Uuid {
 public:
  // A fresh one from the system's source of randomness. Any thread.
  [[nodiscard]] static Uuid random();

  // Upper-case hexadecimal in groups of 8-4-4-4-12.
  [[nodiscard]] std::string string() const;

  auto operator<=>(const Uuid&) const = default;

 private:
  std::array<std::uint8_t, 16> bytes_{};
};

}  // namespace quenlio
