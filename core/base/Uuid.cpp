#include "core/base/Uuid.h"

#include <random>

namespace quenlio {

Uuid Uuid::random() {
  thread_local std::random_device source;
  Uuid uuid;
  for (std::size_t i = 0; i < uuid.bytes_.size(); i += sizeof(std::uint32_t)) {
    const std::uint32_t word = source();
    for (std::size_t j = 0; j < sizeof word; ++j) {
      uuid.bytes_[i + j] = static_cast<std::uint8_t>(word >> (8 * j));
    }
  }
  uuid.bytes_[6] = static_cast<std::uint8_t>((uuid.bytes_[6] & 0x0F) | 0x40);  // version 4
  uuid.bytes_[8] = static_cast<std::uint8_t>((uuid.bytes_[8] & 0x3F) | 0x80);  // the RFC's variant
  return uuid;
}

std::string Uuid::string() const {
  constexpr char digits[] = "0123456789ABCDEF";
  std::string text;
  text.reserve(36);
  for (std::size_t i = 0; i < bytes_.size(); ++i) {
    if (i == 4 || i == 6 || i == 8 || i == 10) {
      text += '-';
    }
    text += digits[bytes_[i] >> 4];
    text += digits[bytes_[i] & 0x0F];
  }
  return text;
}

}  // namespace quenlio
