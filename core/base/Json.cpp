#include "core/base/Json.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>

#include "core/base/Text.h"

namespace quenlio::json {
namespace {

// The library refuses bytes that are not UTF-8, so before it sees a text each such byte b is dressed as the
// private-use character U+10FF00 + b, and undressed afterwards. Real characters of that block are dressed byte by byte
// too, which makes the way back unambiguous.

constexpr std::string_view kDressPrefix = "\xF4\x8F";

std::string dressed(unsigned char byte) {
  // U+10FF00 + b is F4 8F (BC + b / 64) (80 + b % 64).
  return {'\xF4', '\x8F', static_cast<char>(0xBC + (byte >> 6)), static_cast<char>(0x80 + (byte & 0x3F))};
}

bool isContinuation(std::string_view text, std::size_t at, unsigned low = 0x80, unsigned high = 0xBF) {
  if (at >= text.size()) {
    return false;
  }
  const auto byte = static_cast<unsigned char>(text[at]);
  return byte >= low && byte <= high;
}

bool isDressed(std::string_view text, std::size_t at) {
  return text.substr(at, 2) == kDressPrefix && isContinuation(text, at + 2, 0xBC, 0xBF) && isContinuation(text, at + 3);
}

// The same characters may come escaped, as the pair \uDBFF\uDF00 and the 255 after it: gives the byte that U+10FF00 + b
// would undress to.
std::optional<unsigned char> escapedDress(std::string_view text, std::size_t at) {
  constexpr std::string_view prefix = R"(\udbff\udf)";
  const std::string_view digits = text.substr(at).substr(0, prefix.size() + 2);
  unsigned byte = 0;
  const bool fits = digits.size() == prefix.size() + 2 && lowercased(digits.substr(0, prefix.size())) == prefix &&
                    std::from_chars(digits.data() + prefix.size(), digits.data() + digits.size(), byte, 16).ptr ==
                        digits.data() + digits.size();
  return fits ? std::optional(static_cast<unsigned char>(byte)) : std::nullopt;
}

std::string dress(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    if (text[at] == '\\') {
      if (const auto byte = escapedDress(text, at)) {
        for (const char part : dressed(*byte)) {
          out += dressed(static_cast<unsigned char>(part));
        }
        at += 12;
        continue;
      }
      // With the character after it, which is no beginning of an escape then.
      const std::size_t length = text.substr(at, 2) == R"(\\)" ? 2 : 1;
      out += text.substr(at, length);
      at += length;
      continue;
    }
    const std::size_t length = isDressed(text, at) ? 0 : utf8SequenceLength(text, at);
    if (length == 0) {
      out += dressed(static_cast<unsigned char>(text[at]));
    } else {
      out += text.substr(at, length);
    }
    at += std::max<std::size_t>(length, 1);
  }
  return out;
}

std::string undress(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    if (isDressed(text, at)) {
      const auto high = static_cast<unsigned char>(text[at + 2]) - 0xBC;
      const auto low = static_cast<unsigned char>(text[at + 3]) - 0x80;
      out += static_cast<char>(high << 6 | low);
      at += 4;
    } else {
      out += text[at];
      ++at;
    }
  }
  return out;
}

Value undressed(Value value) {
  if (value.is_string()) {
    return undress(value.get_ref<const std::string&>());
  }
  if (value.is_array()) {
    for (auto& element : value) {
      element = undressed(std::move(element));
    }
    return value;
  }
  if (value.is_object()) {
    Value object = Value::object();
    for (auto& [key, element] : value.items()) {
      object[undress(key)] = undressed(std::move(element));
    }
    return object;
  }
  return value;
}

class Writer {
 public:
  explicit Writer(Style style) : pretty_(style == Style::pretty) {}

  std::string take() && { return std::move(out_); }

  void value(const Value& value) {
    switch (value.type()) {
      case Value::value_t::object:
        return object(value);
      case Value::value_t::array:
        return array(value);
      case Value::value_t::string:
        return string(value.get_ref<const std::string&>());
      case Value::value_t::number_float:
        return number(value.get<double>());
      case Value::value_t::null:
      case Value::value_t::boolean:
      case Value::value_t::number_integer:
      case Value::value_t::number_unsigned:
      case Value::value_t::binary:
      case Value::value_t::discarded:
        out_ += value.dump();
    }
  }

 private:
  void object(const Value& object) {
    sequence('{', object.size(), '}', [&, it = object.begin()]() mutable {
      string(it.key());
      out_ += pretty_ ? " : " : ":";
      value(it.value());
      ++it;
    });
  }

  void array(const Value& array) {
    sequence('[', array.size(), ']', [&, it = array.begin()]() mutable { value(*it++); });
  }

  template <class WriteNext>
  void sequence(char open, std::size_t count, char close, WriteNext writeNext) {
    out_ += open;
    ++level_;
    for (std::size_t i = 0; i < count; ++i) {
      out_ += i == 0 ? "" : ",";
      newLine();
      writeNext();
    }
    --level_;
    if (count > 0) {
      newLine();
    }
    out_ += close;
  }

  void newLine() {
    if (pretty_) {
      out_ += '\n';
      out_.append(2 * level_, ' ');
    }
  }

  void string(std::string_view text) {
    out_ += '"';
    for (const char c : text) {
      switch (c) {
        case '"':
          out_ += "\\\"";
          break;
        case '\\':
          out_ += "\\\\";
          break;
        case '/':
          out_ += "\\/";
          break;
        case '\b':
          out_ += "\\b";
          break;
        case '\f':
          out_ += "\\f";
          break;
        case '\n':
          out_ += "\\n";
          break;
        case '\r':
          out_ += "\\r";
          break;
        case '\t':
          out_ += "\\t";
          break;
        default:
          character(c);
      }
    }
    out_ += '"';
  }

  void character(char c) {
    if (static_cast<unsigned char>(c) >= 0x20) {
      out_ += c;
      return;
    }
    std::array<char, 8> escape{};
    std::snprintf(escape.data(), escape.size(), "\\u%04x", static_cast<unsigned>(c));
    out_ += escape.data();
  }

  // The shortest text that reads back as the same number; 880.0 is 880. JSON has no infinities: they become null.
  void number(double value) {
    if (!std::isfinite(value)) {
      out_ += "null";
      return;
    }
    std::array<char, 32> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value).ptr;
    out_.append(text.data(), end);
  }

  bool pretty_;
  std::size_t level_ = 0;
  std::string out_;
};

// The library's parser is recursive where values are destroyed, and a hostile text nests at will.
bool nestsTooDeeply(std::string_view text) {
  constexpr int limit = 128;
  int depth = 0;
  bool inString = false;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const char c = text[at];
    if (inString) {
      at += c == '\\' ? 1 : 0;
      inString = c != '"';
    } else if (c == '"') {
      inString = true;
    } else if (c == '{' || c == '[') {
      if (++depth > limit) {
        return true;
      }
    } else if (c == '}' || c == ']') {
      --depth;
    }
  }
  return false;
}

}  // namespace

std::string write(const Value& value, Style style) {
  Writer writer(style);
  writer.value(value);
  return std::move(writer).take();
}

std::optional<Value> read(std::string_view text) {
  if (nestsTooDeeply(text)) {
    return std::nullopt;
  }
  Value value = Value::parse(dress(text), nullptr, /*allow_exceptions=*/false);
  if (value.is_discarded()) {
    return std::nullopt;
  }
  return undressed(std::move(value));
}

}  // namespace quenlio::json
