#include "desktop/linux/system/SettingsStoreAnswer.h"

#include <atomic>

namespace quenlio {

struct SettingsStoreAnswer::Asking {
  std::optional<std::string> printed;  // to be read once isDone
  std::atomic<bool> isDone = false;
};

std::optional<std::string> SettingsStoreAnswer::get(std::string_view schema, std::string_view key,
                                                    const std::optional<FileStamp>& state) {
  if (!isKnown_) {
    isKnown_ = true;
    state_ = state;
    printed_ = gsettings_(schema, key);
  }
  if (asking_ != nullptr && asking_->isDone) {
    printed_ = asking_->printed;
    asking_.reset();
  }
  if (asking_ == nullptr && state != state_) {
    auto asking = std::make_shared<Asking>();
    worker_->run([gsettings = gsettings_, schema = std::string(schema), key = std::string(key), asking] {
      asking->printed = gsettings(schema, key);
      asking->isDone = true;
    });
    state_ = state;
    asking_ = std::move(asking);
  }
  return printed_;
}

}  // namespace quenlio
