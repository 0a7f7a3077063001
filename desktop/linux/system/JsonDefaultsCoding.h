// How one setting stands in a settings file, with its type: {"integer": 3}, {"double": 3}, {"bool": true},
// {"string": "…"} or {"data": "…"}, the bytes in base64. JSON alone has one kind of number and no bytes. Any thread.
#pragma once

#include <optional>

#include "core/base/Json.h"
#include "core/platform/UserDefaults.h"

namespace quenlio {

[[nodiscard]] json::Value encodedDefault(const DefaultsObject& object);

// Nothing for an entry of another form or an unknown type.
[[nodiscard]] std::optional<DefaultsObject> decodedDefault(const json::Value& entry);

}  // namespace quenlio
