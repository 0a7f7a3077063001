#include "desktop/linux/system/JsonUserDefaults.h"

#include <cassert>

#include "desktop/linux/system/JsonDefaultsCoding.h"
#include "desktop/linux/system/LinuxStandardDirectories.h"

namespace quenlio {
namespace {

bool isFileName(std::string_view name) {
  constexpr std::size_t longest = 200;  // leaves room for what is added to it
  return !name.empty() && name != "." && name != ".." && name.size() <= longest &&
         name.find_first_of(std::string_view("/\0", 2)) == std::string_view::npos;
}

}  // namespace

JsonUserDefaults::~JsonUserDefaults() {
  if (!unwritten_.empty()) {
    writeChanges();
  }
}

std::optional<DefaultsObject> JsonUserDefaults::objectForKey(std::string_view key) const {
  if (const auto waiting = unwritten_.find(key); waiting != unwritten_.end()) {
    return waiting->second ? decodedDefault(*waiting->second) : std::nullopt;
  }
  const json::Value& entries = file_.entries();
  const auto entry = entries.find(key);
  return entry != entries.end() ? decodedDefault(*entry) : std::nullopt;
}

void JsonUserDefaults::setObject(std::string_view key, DefaultsObject object) {
  change(key, encodedDefault(object));
}

void JsonUserDefaults::removeObjectForKey(std::string_view key) {
  change(key, std::nullopt);
}

std::map<std::string, DefaultsObject> JsonUserDefaults::dictionaryRepresentation() const {
  std::map<std::string, DefaultsObject> objects;
  for (const auto& [key, entry] : file_.entries().items()) {
    if (const auto object = decodedDefault(entry)) {
      objects[key] = *object;
    }
  }
  for (const auto& [key, entry] : unwritten_) {
    objects.erase(key);
    if (const auto object = entry ? decodedDefault(*entry) : std::nullopt) {
      objects[key] = *object;
    }
  }
  return objects;
}

void JsonUserDefaults::change(std::string_view key, std::optional<json::Value> entry) {
  unwritten_[std::string(key)] = std::move(entry);
  writeChanges();
}

void JsonUserDefaults::writeChanges() {
  const bool isWritten = file_.update([this](json::Value& entries) {
    for (const auto& [changedKey, changed] : unwritten_) {
      if (changed) {
        entries[changedKey] = *changed;
      } else {
        entries.erase(changedKey);
      }
    }
  });
  if (isWritten) {
    unwritten_.clear();
  }
}

JsonUserDefaultsSuites::JsonUserDefaultsSuites(FileURL folder, std::string_view standardName)
    : folder_(std::move(folder)), standard_(initWithSuiteName(standardName)) {
  assert(standard_ != nullptr);
}

UserDefaults* JsonUserDefaultsSuites::initWithSuiteName(std::string_view name) {
  if (!isFileName(name)) {
    return nullptr;
  }
  auto& suite = suites_[std::string(name)];
  if (suite == nullptr) {
    suite = std::make_unique<JsonUserDefaults>(folder_, name);
  }
  return suite.get();
}

FileURL userDefaultsFolder(const ProcessInfo& process, const StandardDirectories& directories) {
  return settingsDirectory(process, directories.homeDirectory()).appending("quenlio");
}

}  // namespace quenlio
