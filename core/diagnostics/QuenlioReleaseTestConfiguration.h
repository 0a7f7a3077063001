// How a scripted run is set up: read once from the environment. A normal user's run has all of it off.
#pragma once

#include <optional>
#include <string>

#include "core/base/FileURL.h"

namespace quenlio {

class ProcessInfo;
class StandardDirectories;
class UserDefaults;
class UserDefaultsSuites;

struct QuenlioReleaseTestConfiguration {
  bool isEnabled = false;                        // the master switch
  std::string runID = "local";                   // names the run
  std::optional<std::string> defaultsSuiteName;  // instead of the standard defaults
  std::optional<FileURL> appSupportDirectory;    // instead of the user's data folder
  std::optional<FileURL> screenshotDirectory;    // the folder to watch, and the source of seed screenshots
  std::optional<std::string> keychainServiceName;
  std::optional<FileURL> diagnosticsDirectory;
  bool enableInstallPrompt = false;

  // Texts and folders are trimmed, and an empty one counts as unset. A switch is on for "1", "true", "yes" and "on" in
  // any case. The values are independent of each other.
  [[nodiscard]] static QuenlioReleaseTestConfiguration fromEnvironment(const ProcessInfo& process);

  // The one of this process; the composition root binds it.
  [[nodiscard]] static const QuenlioReleaseTestConfiguration& current();

  // The run's own store, or nothing when no suite is named: the caller takes the standard one then.
  [[nodiscard]] UserDefaults* userDefaults(UserDefaultsSuites& suites) const;

  [[nodiscard]] std::optional<FileURL> stateFileURL() const;
  [[nodiscard]] std::optional<FileURL> eventsFileURL() const;
  [[nodiscard]] std::optional<FileURL> screenshotIngestRequestFileURL() const;
  // Where the editor logs its interactions, in any run.
  [[nodiscard]] static FileURL editorInteractionLogFileURL(const StandardDirectories& directories);
};

}  // namespace quenlio
