#include "core/diagnostics/QuenlioReleaseTestState.h"

#include "core/base/Json.h"

namespace quenlio {
namespace {

// The fields of a state under their keys, told once for writing and for reading.
template <class State, class Visitor>
void visitFields(State& state, Visitor&& visit) {
  visit("runID", state.runID);
  visit("appVersion", state.appVersion);
  visit("launchedAt", state.launchedAt);
  visit("lastUpdatedAt", state.lastUpdatedAt);
  visit("onboardingVisible", state.onboardingVisible);
  visit("onboardingState", state.onboardingState);
  visit("onboardingCurrentStep", state.onboardingCurrentStep);
  visit("installPromptVisible", state.installPromptVisible);
  visit("firstRunRecoveryApplied", state.firstRunRecoveryApplied);
  visit("firstRunRecoveryForcedPending", state.firstRunRecoveryForcedPending);
  visit("firstRunRecoveryAction", state.firstRunRecoveryAction);
  visit("onboardingScreenshotRecoveryResult", state.onboardingScreenshotRecoveryResult);
  visit("screenshotCount", state.screenshotCount);
  visit("latestScreenshotPath", state.latestScreenshotPath);
  visit("selectedScreenshotPath", state.selectedScreenshotPath);
  visit("floatingThumbnailDisabledRequested", state.floatingThumbnailDisabledRequested);
  visit("statusItemVisible", state.statusItemVisible);
  visit("lastInteractiveScreenshotTrigger", state.lastInteractiveScreenshotTrigger);
  visit("permissionState", state.permissionState);
}

class FieldWriter {
 public:
  explicit FieldWriter(json::Value& object) : object_(object) {}

  template <class T>
  void operator()(const char* key, const T& value) {
    object_[key] = value;
  }
  template <class T>
  void operator()(const char* key, const std::optional<T>& value) {
    if (value) {
      (*this)(key, *value);
    }
  }
  void operator()(const char* key, Date date) { object_[key] = iso8601(date); }
  void operator()(const char* key, const QuenlioReleaseTestPermissionSnapshot& snapshot) {
    object_[key] = {{"screenRecordingGranted", snapshot.screenRecordingGranted},
                    {"desktopFolderReadable", snapshot.desktopFolderReadable}};
  }

 private:
  json::Value& object_;
};

class FieldReader {
 public:
  explicit FieldReader(const json::Value& object) : object_(object) {}

  [[nodiscard]] bool ok() const { return ok_; }

  template <class T>
  void operator()(const char* key, std::optional<T>& field) {
    const auto found = object_.find(key);
    if (found != object_.end() && !found->is_null()) {
      (*this)(key, field.emplace());
    }
  }
  void operator()(const char* key, std::string& field) {
    if (const auto* value = require(key, &json::Value::is_string)) {
      field = value->get<std::string>();
    }
  }
  void operator()(const char* key, bool& field) {
    if (const auto* value = require(key, &json::Value::is_boolean)) {
      field = value->get<bool>();
    }
  }
  void operator()(const char* key, std::int64_t& field) {
    if (const auto* value = require(key, &json::Value::is_number_integer)) {
      field = value->get<std::int64_t>();
    }
  }
  void operator()(const char* key, Date& field) {
    const auto* value = require(key, &json::Value::is_string);
    const auto date = value != nullptr ? dateFromISO8601(value->get_ref<const std::string&>()) : std::nullopt;
    ok_ = ok_ && date.has_value();
    field = date.value_or(Date{});
  }
  void operator()(const char* key, QuenlioReleaseTestPermissionSnapshot& field) {
    if (const auto* value = require(key, &json::Value::is_object)) {
      FieldReader nested(*value);
      nested("screenRecordingGranted", field.screenRecordingGranted);
      nested("desktopFolderReadable", field.desktopFolderReadable);
      ok_ = ok_ && nested.ok();
    }
  }

 private:
  const json::Value* require(const char* key, bool (json::Value::*isOfType)() const noexcept) {
    const auto found = object_.find(key);
    if (found == object_.end() || !((*found).*isOfType)()) {
      ok_ = false;
      return nullptr;
    }
    return &*found;
  }

  const json::Value& object_;
  bool ok_ = true;
};

}  // namespace

std::string encode(const QuenlioReleaseTestState& state) {
  json::Value object = json::Value::object();
  visitFields(state, FieldWriter(object));
  return json::write(object, json::Style::pretty);
}

std::string encode(const QuenlioReleaseTestEvent& event) {
  json::Value object = json::Value::object();
  FieldWriter write(object);
  write("timestamp", event.timestamp);
  write("name", event.name);
  object["metadata"] = json::Value::object();
  for (const auto& [key, value] : event.metadata) {
    object["metadata"][key] = value;
  }
  return json::write(object, json::Style::pretty);
}

std::optional<QuenlioReleaseTestState> decodeState(std::string_view text) {
  const auto object = json::read(text);
  if (!object || !object->is_object()) {
    return std::nullopt;
  }
  QuenlioReleaseTestState state;
  FieldReader reader(*object);
  visitFields(state, reader);
  return reader.ok() ? std::optional(state) : std::nullopt;
}

}  // namespace quenlio
