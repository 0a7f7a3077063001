// Defaults, preferences and bookmarks in memory.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>

#include "core/platform/Bookmarks.h"
#include "core/platform/Preferences.h"
#include "core/platform/UserDefaults.h"

#include "tests/fakes/CallLog.h"

namespace quenlio {

class FakeUserDefaults final : public UserDefaults {
 public:
  [[nodiscard]] std::optional<DefaultsObject> objectForKey(std::string_view key) const override {
    const auto found = objects_.find(std::string(key));
    return found != objects_.end() ? std::optional(found->second) : std::nullopt;
  }
  void setObject(std::string_view key, DefaultsObject object) override {
    writes_.add(std::string(key));
    objects_[std::string(key)] = std::move(object);
  }
  void removeObjectForKey(std::string_view key) override {
    writes_.add("remove " + std::string(key));
    objects_.erase(std::string(key));
  }
  [[nodiscard]] std::map<std::string, DefaultsObject> dictionaryRepresentation() const override { return objects_; }

  // The keys written, in order; "remove KEY" for a removal.
  [[nodiscard]] CallLog& writes() { return writes_; }

 private:
  std::map<std::string, DefaultsObject> objects_;
  CallLog writes_;
};

class FakeUserDefaultsSuites final : public UserDefaultsSuites {
 public:
  [[nodiscard]] FakeUserDefaults& standardUserDefaults() override { return standard_; }
  [[nodiscard]] FakeUserDefaults* initWithSuiteName(std::string_view name) override {
    if (refused.contains(std::string(name))) {
      return nullptr;
    }
    auto& suite = suites_[std::string(name)];
    if (!suite) {
      suite = std::make_unique<FakeUserDefaults>();
    }
    return suite.get();
  }

  std::set<std::string> refused;

 private:
  FakeUserDefaults standard_;
  std::map<std::string, std::unique_ptr<FakeUserDefaults>> suites_;
};

class FakePreferences final : public Preferences {
 public:
  [[nodiscard]] std::optional<PreferenceValue> CFPreferencesCopyAppValue(std::string_view key,
                                                                         std::string_view domain) override {
    const auto found = values.find(std::string(domain) + " " + std::string(key));
    return found != values.end() ? std::optional(found->second) : std::nullopt;
  }
  void setLocation(PreferenceValue value) {
    values[std::string(kScreenCaptureDomain) + " location"] = std::move(value);
  }

  std::map<std::string, PreferenceValue> values;  // under "DOMAIN KEY"
};

// A bookmark's bytes are its path.
class FakeBookmarks final : public Bookmarks {
 public:
  [[nodiscard]] static Bytes bytesFor(std::string_view path) {
    Bytes bytes;
    for (const char c : path) {
      bytes.push_back(static_cast<std::byte>(c));
    }
    return bytes;
  }

  [[nodiscard]] PlatformResult<Bytes> bookmarkDataWithSecurityScope(const FileURL& url) override {
    if (makingFails) {
      return PlatformError{"no bookmark for this folder"};
    }
    return bytesFor(url.path());
  }
  [[nodiscard]] PlatformResult<ResolvedBookmark> resolveBookmarkData(const Bytes& data) override {
    std::string path;
    for (const std::byte byte : data) {
      path += static_cast<char>(byte);
    }
    if (!path.starts_with('/')) {
      return PlatformError{"damaged bookmark"};
    }
    return ResolvedBookmark{FileURL(path), stale.contains(path)};
  }
  bool startAccessingSecurityScopedResource(const FileURL& url) override {
    ++accesses[url.path()];
    return true;
  }

  bool makingFails = false;
  std::set<std::string> stale;
  std::map<std::string, int> accesses;
};

}  // namespace quenlio
