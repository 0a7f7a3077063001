// Looks for a newer version of the program. Main thread. Made by the composition root on first use.
#pragma once

namespace quenlio {

class UpdaterController {
 public:
  virtual ~UpdaterController() = default;
  // At the user's request: shows its own dialogs.
  virtual void checkForUpdates() = 0;
};

// The updater until there is a feed to ask: it does nothing.
class NoUpdater final : public UpdaterController {
 public:
  void checkForUpdates() override {}
};

}  // namespace quenlio
