#include "core/diagnostics/QuenlioReleaseTestConfiguration.h"

#include "core/base/SharedBinding.h"
#include "core/base/Text.h"
#include "core/platform/FileManager.h"
#include "core/platform/ProcessInfo.h"
#include "core/platform/UserDefaults.h"

namespace quenlio {
namespace {

std::optional<std::string> text(const ProcessInfo& process, std::string_view name) {
  const auto value = process.environment(name);
  if (!value) {
    return std::nullopt;
  }
  const std::string_view kept = trimmed(*value);
  return kept.empty() ? std::nullopt : std::optional<std::string>(kept);
}

std::optional<FileURL> directory(const ProcessInfo& process, std::string_view name) {
  const auto path = text(process, name);
  return path ? std::optional(FileURL(*path)) : std::nullopt;
}

bool isTruthy(const ProcessInfo& process, std::string_view name) {
  const std::string lower = lowercased(process.environment(name).value_or(""));
  return lower == "1" || lower == "true" || lower == "yes" || lower == "on";
}

}  // namespace

QuenlioReleaseTestConfiguration QuenlioReleaseTestConfiguration::fromEnvironment(const ProcessInfo& process) {
  return {
      .isEnabled = isTruthy(process, "QUENLIO_INTERNAL_TESTING"),
      .runID = text(process, "QUENLIO_TEST_RUN_ID").value_or("local"),
      .defaultsSuiteName = text(process, "QUENLIO_TEST_DEFAULTS_SUITE"),
      .appSupportDirectory = directory(process, "QUENLIO_TEST_APP_SUPPORT_DIR"),
      .screenshotDirectory = directory(process, "QUENLIO_TEST_SCREENSHOT_DIR"),
      .keychainServiceName = text(process, "QUENLIO_TEST_KEYCHAIN_SERVICE"),
      .diagnosticsDirectory = directory(process, "QUENLIO_TEST_DIAGNOSTICS_DIR"),
      .enableInstallPrompt = isTruthy(process, "QUENLIO_TEST_ENABLE_INSTALL_PROMPT"),
  };
}

const QuenlioReleaseTestConfiguration& QuenlioReleaseTestConfiguration::current() {
  return SharedBinding<const QuenlioReleaseTestConfiguration>::shared();
}

UserDefaults* QuenlioReleaseTestConfiguration::userDefaults(UserDefaultsSuites& suites) const {
  return defaultsSuiteName ? suites.initWithSuiteName(*defaultsSuiteName) : nullptr;
}

std::optional<FileURL> QuenlioReleaseTestConfiguration::stateFileURL() const {
  return diagnosticsDirectory ? std::optional(diagnosticsDirectory->appending("state.json")) : std::nullopt;
}

std::optional<FileURL> QuenlioReleaseTestConfiguration::eventsFileURL() const {
  return diagnosticsDirectory ? std::optional(diagnosticsDirectory->appending("events.jsonl")) : std::nullopt;
}

std::optional<FileURL> QuenlioReleaseTestConfiguration::screenshotIngestRequestFileURL() const {
  return diagnosticsDirectory ? std::optional(diagnosticsDirectory->appending("ingest-screenshot-request.txt"))
                              : std::nullopt;
}

FileURL QuenlioReleaseTestConfiguration::editorInteractionLogFileURL(const StandardDirectories& directories) {
  return directories.homeDirectory().appending("Library/Logs/Quenlio/editor-interactions.log");
}

}  // namespace quenlio
