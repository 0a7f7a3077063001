#include "desktop/linux/system/JsonDefaultsCoding.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace quenlio {
namespace {

constexpr std::string_view kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

std::string base64(const Bytes& bytes) {
  std::string text;
  for (std::size_t at = 0; at < bytes.size(); at += 3) {
    const std::size_t count = std::min<std::size_t>(3, bytes.size() - at);
    unsigned group = 0;
    for (std::size_t i = 0; i < 3; ++i) {
      group = group << 8 | (i < count ? std::to_integer<unsigned>(bytes[at + i]) : 0U);
    }
    for (std::size_t i = 0; i < 4; ++i) {
      text += i <= count ? kDigits[group >> (18 - 6 * i) & 0x3F] : '=';
    }
  }
  return text;
}

// Only what base64() writes: whole groups, padded.
std::optional<Bytes> bytesOfBase64(std::string_view text) {
  if (text.size() % 4 != 0) {
    return std::nullopt;
  }
  const std::size_t padding = text.ends_with("==") ? 2 : text.ends_with('=') ? 1 : 0;
  text.remove_suffix(padding);
  Bytes bytes;
  unsigned group = 0;
  unsigned bits = 0;
  for (const char c : text) {
    const std::size_t digit = kDigits.find(c);
    if (digit == std::string_view::npos) {
      return std::nullopt;
    }
    group = group << 6 | static_cast<unsigned>(digit);
    bits += 6;
    if (bits >= 8) {
      bits -= 8;
      bytes.push_back(static_cast<std::byte>(group >> bits & 0xFF));
    }
  }
  return bytes;
}

// JSON has no numbers that are not finite: they stand as a word.
struct NamedNumber {
  std::string_view name;
  double value;
};
constexpr std::array<NamedNumber, 3> kNotFinite{{{"infinity", std::numeric_limits<double>::infinity()},
                                                 {"-infinity", -std::numeric_limits<double>::infinity()},
                                                 {"nan", std::numeric_limits<double>::quiet_NaN()}}};

json::Value encodedNumber(double number) {
  if (std::isfinite(number)) {
    return number;
  }
  const auto named = std::ranges::find_if(kNotFinite, [number](const NamedNumber& candidate) {
    return candidate.value == number || (std::isnan(candidate.value) && std::isnan(number));
  });
  return std::string(named->name);
}

std::optional<DefaultsObject> decodedNumber(const json::Value& value) {
  if (value.is_number()) {
    return value.get<double>();
  }
  if (!value.is_string()) {
    return std::nullopt;
  }
  const auto named = std::ranges::find(kNotFinite, value.get_ref<const std::string&>(), &NamedNumber::name);
  return named != kNotFinite.end() ? std::optional<DefaultsObject>(named->value) : std::nullopt;
}

std::optional<DefaultsObject> decodedInteger(const json::Value& value) {
  constexpr auto largest = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
  if (!value.is_number_integer() || (value.is_number_unsigned() && value.get<std::uint64_t>() > largest)) {
    return std::nullopt;
  }
  return value.get<std::int64_t>();
}

struct Encode {
  json::Value operator()(bool value) const { return {{"bool", value}}; }
  json::Value operator()(std::int64_t value) const { return {{"integer", value}}; }
  json::Value operator()(double value) const { return {{"double", encodedNumber(value)}}; }
  json::Value operator()(const std::string& value) const { return {{"string", value}}; }
  json::Value operator()(const Bytes& value) const { return {{"data", base64(value)}}; }
};

}  // namespace

json::Value encodedDefault(const DefaultsObject& object) {
  return std::visit(Encode{}, object);
}

std::optional<DefaultsObject> decodedDefault(const json::Value& entry) {
  if (!entry.is_object() || entry.size() != 1) {
    return std::nullopt;
  }
  const std::string& type = entry.begin().key();
  const json::Value& value = entry.begin().value();
  if (type == "integer") {
    return decodedInteger(value);
  }
  if (type == "double") {
    return decodedNumber(value);
  }
  if (type == "bool" && value.is_boolean()) {
    return value.get<bool>();
  }
  if (type == "string" && value.is_string()) {
    return value.get<std::string>();
  }
  if (type == "data" && value.is_string()) {
    const auto bytes = bytesOfBase64(value.get_ref<const std::string&>());
    return bytes ? std::optional<DefaultsObject>(*bytes) : std::nullopt;
  }
  return std::nullopt;
}

}  // namespace quenlio
