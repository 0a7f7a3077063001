#include "core/diagnostics/QuenlioReleaseTestDiagnostics.h"

#include <utility>

#include "core/base/SharedBinding.h"
#include "core/platform/FileManager.h"

namespace quenlio {

QuenlioReleaseTestDiagnostics::QuenlioReleaseTestDiagnostics(QuenlioReleaseTestConfiguration configuration,
                                                             Scheduler& scheduler, const Clock& clock,
                                                             FileManager& files, FileContents& contents)
    : configuration_(std::move(configuration)),
      isEnabled_(configuration_.isEnabled && configuration_.diagnosticsDirectory.has_value()),
      clock_(clock),
      files_(files),
      contents_(contents),
      queue_(scheduler.makeSerialQueue("Quenlio.ReleaseTestDiagnostics", QualityOfService::unspecified)) {
  state_.runID = configuration_.runID;
  if (isEnabled_) {
    performOnQueue([this] {
      ensureDirectoryExists();
      persistState();
    });
  }
}

QuenlioReleaseTestDiagnostics& QuenlioReleaseTestDiagnostics::shared() {
  return SharedBinding<QuenlioReleaseTestDiagnostics>::shared();
}

void QuenlioReleaseTestDiagnostics::performOnQueue(const Task& work) {
  queue_->sync(work);
}

void QuenlioReleaseTestDiagnostics::update(const Mutation& mutate) {
  if (!isEnabled_) {
    return;
  }
  performOnQueue([&] {
    mutate(state_);
    state_.lastUpdatedAt = clock_.now();
    persistState();
  });
}

void QuenlioReleaseTestDiagnostics::persistState() {
  const auto file = configuration_.stateFileURL();
  if (!file) {
    return;
  }
  ensureDirectoryExists();
  if (!state_.launchedAt) {
    state_.launchedAt = clock_.now();
  }
  (void)contents_.writeAtomically(*file, encode(state_));
}

void QuenlioReleaseTestDiagnostics::record(std::string_view event, const EventMetadata& metadata) {
  const auto file = configuration_.eventsFileURL();
  if (!isEnabled_ || !file) {
    return;
  }
  performOnQueue([&] {
    ensureDirectoryExists();
    (void)contents_.append(*file, encode({clock_.now(), std::string(event), metadata}) + "\n");
  });
}

std::optional<QuenlioReleaseTestState> QuenlioReleaseTestDiagnostics::loadPersistedState() const {
  const auto file = configuration_.stateFileURL();
  if (!isEnabled_ || !file) {
    return std::nullopt;
  }
  const auto text = contents_.read(*file);
  return text.ok() ? decodeState(text.value()) : std::nullopt;
}

void QuenlioReleaseTestDiagnostics::ensureDirectoryExists() {
  if (configuration_.diagnosticsDirectory) {
    (void)files_.createDirectoryAtURL(*configuration_.diagnosticsDirectory);
  }
}

}  // namespace quenlio
