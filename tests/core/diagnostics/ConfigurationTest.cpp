// How a scripted run is set up from the environment.
#include <gtest/gtest.h>
#include <string>

#include "core/base/SharedBinding.h"
#include "core/diagnostics/QuenlioReleaseTestConfiguration.h"

#include "tests/fakes/FakeDesktop.h"
#include "tests/fakes/FakeSettingsStores.h"

namespace quenlio {
namespace {

class Configuration : public testing::Test {
 protected:
  [[nodiscard]] QuenlioReleaseTestConfiguration with(const std::string& name, const std::string& value) {
    process.variables[name] = value;
    return QuenlioReleaseTestConfiguration::fromEnvironment(process);
  }

  FakeProcessInfo process;
};

TEST_F(Configuration, anEmptyEnvironmentHasAllOfItOff) {
  const auto configuration = QuenlioReleaseTestConfiguration::fromEnvironment(process);
  EXPECT_FALSE(configuration.isEnabled);
  EXPECT_EQ(configuration.runID, "local");
  EXPECT_EQ(configuration.defaultsSuiteName, std::nullopt);
  EXPECT_EQ(configuration.appSupportDirectory, std::nullopt);
  EXPECT_EQ(configuration.screenshotDirectory, std::nullopt);
  EXPECT_EQ(configuration.keychainServiceName, std::nullopt);
  EXPECT_EQ(configuration.diagnosticsDirectory, std::nullopt);
  EXPECT_FALSE(configuration.enableInstallPrompt);
}

TEST_F(Configuration, eachVariableHasItsField) {
  process.variables = {
      {"QUENLIO_INTERNAL_TESTING", "1"},
      {"QUENLIO_TEST_RUN_ID", "run-7"},
      {"QUENLIO_TEST_DEFAULTS_SUITE", "com.quenlio.run"},
      {"QUENLIO_TEST_APP_SUPPORT_DIR", "/run/support"},
      {"QUENLIO_TEST_SCREENSHOT_DIR", "/run/shots"},
      {"QUENLIO_TEST_KEYCHAIN_SERVICE", "keys"},
      {"QUENLIO_TEST_DIAGNOSTICS_DIR", "/run/diagnostics"},
      {"QUENLIO_TEST_ENABLE_INSTALL_PROMPT", "yes"},
  };
  const auto configuration = QuenlioReleaseTestConfiguration::fromEnvironment(process);
  EXPECT_TRUE(configuration.isEnabled);
  EXPECT_EQ(configuration.runID, "run-7");
  EXPECT_EQ(configuration.defaultsSuiteName, "com.quenlio.run");
  EXPECT_EQ(configuration.appSupportDirectory, FileURL("/run/support"));
  EXPECT_EQ(configuration.screenshotDirectory, FileURL("/run/shots"));
  EXPECT_EQ(configuration.keychainServiceName, "keys");
  EXPECT_EQ(configuration.diagnosticsDirectory, FileURL("/run/diagnostics"));
  EXPECT_TRUE(configuration.enableInstallPrompt);
}

TEST_F(Configuration, fourWordsInAnyCaseSwitchItOn) {
  for (const char* word : {"1", "true", "yes", "on", "ON", "True", "YES", "oN"}) {
    EXPECT_TRUE(with("QUENLIO_INTERNAL_TESTING", word).isEnabled) << word;
    EXPECT_TRUE(with("QUENLIO_TEST_ENABLE_INSTALL_PROMPT", word).enableInstallPrompt) << word;
  }
}

TEST_F(Configuration, everyOtherWordLeavesItOff) {
  for (const char* word : {"2", "0", "", "  ", "false", "no", "off", "y", "t", "enabled", "11", "true1"}) {
    EXPECT_FALSE(with("QUENLIO_INTERNAL_TESTING", word).isEnabled) << word;
    EXPECT_FALSE(with("QUENLIO_TEST_ENABLE_INSTALL_PROMPT", word).enableInstallPrompt) << word;
  }
}

TEST_F(Configuration, textsAreTrimmedOfWhiteSpaceAndNewLines) {
  EXPECT_EQ(with("QUENLIO_TEST_RUN_ID", " \n a b \t\n").runID, "a b");
  EXPECT_EQ(with("QUENLIO_TEST_SCREENSHOT_DIR", " /run/my shots\n").screenshotDirectory, FileURL("/run/my shots"));
}

TEST_F(Configuration, blanksCountAsUnset) {
  EXPECT_EQ(with("QUENLIO_TEST_RUN_ID", " \n\t").runID, "local");
  EXPECT_EQ(with("QUENLIO_TEST_RUN_ID", "").runID, "local");
  EXPECT_EQ(with("QUENLIO_TEST_DEFAULTS_SUITE", "  ").defaultsSuiteName, std::nullopt);
  EXPECT_EQ(with("QUENLIO_TEST_APP_SUPPORT_DIR", "\n").appSupportDirectory, std::nullopt);
  EXPECT_EQ(with("QUENLIO_TEST_KEYCHAIN_SERVICE", "").keychainServiceName, std::nullopt);
}

TEST_F(Configuration, aFolderKeepsItsPathAsItStands) {
  EXPECT_EQ(with("QUENLIO_TEST_APP_SUPPORT_DIR", "../a/./b").appSupportDirectory->path(), "../a/./b");
  EXPECT_EQ(with("QUENLIO_TEST_APP_SUPPORT_DIR", "~/a").appSupportDirectory->path(), "~/a");
}

TEST_F(Configuration, theValuesAreReadIndependentlyOfTheMasterSwitch) {
  const auto configuration = with("QUENLIO_TEST_RUN_ID", "alone");
  EXPECT_FALSE(configuration.isEnabled);
  EXPECT_EQ(configuration.runID, "alone");
}

TEST_F(Configuration, namesTheFilesInTheDiagnosticsFolder) {
  const auto configuration = with("QUENLIO_TEST_DIAGNOSTICS_DIR", "/d/");
  EXPECT_EQ(configuration.stateFileURL(), FileURL("/d/state.json"));
  EXPECT_EQ(configuration.eventsFileURL(), FileURL("/d/events.jsonl"));
  EXPECT_EQ(configuration.screenshotIngestRequestFileURL(), FileURL("/d/ingest-screenshot-request.txt"));
}

TEST_F(Configuration, namesNoFilesWithoutADiagnosticsFolder) {
  const QuenlioReleaseTestConfiguration configuration;
  EXPECT_EQ(configuration.stateFileURL(), std::nullopt);
  EXPECT_EQ(configuration.eventsFileURL(), std::nullopt);
  EXPECT_EQ(configuration.screenshotIngestRequestFileURL(), std::nullopt);
}

TEST_F(Configuration, theEditorsLogLiesInTheHomeFolder) {
  const FakeDirectories directories;
  EXPECT_EQ(QuenlioReleaseTestConfiguration::editorInteractionLogFileURL(directories),
            FileURL("/home/user/Library/Logs/Quenlio/editor-interactions.log"));
}

TEST_F(Configuration, givesTheNamedStoreAndNothingWhenNoneIsNamed) {
  FakeUserDefaultsSuites suites;
  EXPECT_EQ(QuenlioReleaseTestConfiguration{}.userDefaults(suites), nullptr);
  const auto configuration = with("QUENLIO_TEST_DEFAULTS_SUITE", "suite");
  EXPECT_EQ(configuration.userDefaults(suites), suites.initWithSuiteName("suite"));
  EXPECT_NE(configuration.userDefaults(suites), nullptr);
}

TEST_F(Configuration, theCurrentOneIsTheBoundOne) {
  const QuenlioReleaseTestConfiguration configuration;
  const SharedBinding<const QuenlioReleaseTestConfiguration> binding(configuration);
  EXPECT_EQ(&QuenlioReleaseTestConfiguration::current(), &configuration);
}

}  // namespace
}  // namespace quenlio
