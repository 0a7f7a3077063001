// The store of the user's settings: objects of five types under string keys. Main thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace quenlio {

using Bytes = std::vector<std::byte>;

// The types stay apart: an integer 1 is neither true nor 1.0.
using DefaultsObject = std::variant<bool, std::int64_t, double, std::string, Bytes>;

class UserDefaults {
 public:
  virtual ~UserDefaults() = default;

  [[nodiscard]] virtual std::optional<DefaultsObject> objectForKey(std::string_view key) const = 0;
  virtual void setObject(std::string_view key, DefaultsObject object) = 0;
  // A key that is not there is no error.
  virtual void removeObjectForKey(std::string_view key) = 0;
  [[nodiscard]] virtual std::map<std::string, DefaultsObject> dictionaryRepresentation() const = 0;

  // The object if it is of this type.
  template <class T>
  [[nodiscard]] std::optional<T> object(std::string_view key) const {
    const auto found = objectForKey(key);
    const T* typed = found ? std::get_if<T>(&*found) : nullptr;
    return typed != nullptr ? std::optional<T>(*typed) : std::nullopt;
  }

  // False when missing or no boolean.
  [[nodiscard]] bool boolForKey(std::string_view key) const { return object<bool>(key).value_or(false); }
};

// Where the stores come from.
class UserDefaultsSuites {
 public:
  virtual ~UserDefaultsSuites() = default;
  // The program's own store. It lives as long as this object.
  [[nodiscard]] virtual UserDefaults& standardUserDefaults() = 0;
  // A store by name; the same one for the same name. Nothing when the platform refuses the name.
  [[nodiscard]] virtual UserDefaults* initWithSuiteName(std::string_view name) = 0;
};

}  // namespace quenlio
