// The user's settings in files: one a suite, NAME.json in one folder. Main thread.
//
// What another process writes is seen at the next look. Where nothing can be written, values live on in memory for this
// run and are written with the next change that succeeds, or at the end.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "core/base/FileURL.h"
#include "core/platform/FileManager.h"
#include "core/platform/ProcessInfo.h"
#include "core/platform/UserDefaults.h"

#include "desktop/linux/system/JsonDefaultsFile.h"

namespace quenlio {

class JsonUserDefaults final : public UserDefaults {
 public:
  JsonUserDefaults(FileURL folder, std::string_view name) : file_(std::move(folder), name) {}
  JsonUserDefaults(const JsonUserDefaults&) = delete;
  JsonUserDefaults& operator=(const JsonUserDefaults&) = delete;
  ~JsonUserDefaults() override;

  // An entry of the file with an unknown type or form is not told, and stays in the file.
  [[nodiscard]] std::optional<DefaultsObject> objectForKey(std::string_view key) const override;
  // Written at once. A change that changes nothing touches no file.
  void setObject(std::string_view key, DefaultsObject object) override;
  void removeObjectForKey(std::string_view key) override;
  [[nodiscard]] std::map<std::string, DefaultsObject> dictionaryRepresentation() const override;

 private:
  void change(std::string_view key, std::optional<json::Value> entry);
  void writeChanges();

  mutable JsonDefaultsFile file_;  // a look may find that the file has changed
  // What could not be written: an entry, or nothing for a key to be removed.
  std::map<std::string, std::optional<json::Value>, std::less<>> unwritten_;
};

class JsonUserDefaultsSuites final : public UserDefaultsSuites {
 public:
  // The folder need not exist: the first change makes it. The program's own store has a name like any other suite, and
  // asking for that name gives the same store.
  JsonUserDefaultsSuites(FileURL folder, std::string_view standardName);

  [[nodiscard]] UserDefaults& standardUserDefaults() override { return *standard_; }
  // Refused: names that are no file name ("", ".", "..", with a slash or a zero byte) or too long for one.
  [[nodiscard]] UserDefaults* initWithSuiteName(std::string_view name) override;

 private:
  FileURL folder_;
  std::map<std::string, std::unique_ptr<JsonUserDefaults>, std::less<>> suites_;
  UserDefaults* standard_;
};

inline constexpr std::string_view kStandardSuiteName = "com.quenlio.app";

// Where this program's settings are: quenlio among the user's settings.
[[nodiscard]] FileURL userDefaultsFolder(const ProcessInfo& process, const StandardDirectories& directories);

}  // namespace quenlio
