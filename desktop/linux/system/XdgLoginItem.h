// Starting with the desktop, by an entry in the user's autostart folder. Main thread.
#pragma once

#include "core/platform/FileManager.h"
#include "core/platform/LoginItem.h"
#include "core/platform/ProcessInfo.h"

namespace quenlio {

class XdgLoginItem final : public LoginItem {
 public:
  // All outlive this object.
  struct Dependencies {
    FileManager& files;
    FileContents& contents;
    const ProcessInfo& process;
    const StandardDirectories& directories;
  };
  // The program is what the entry starts.
  XdgLoginItem(const Dependencies& dependencies, FileURL program)
      : dependencies_(dependencies), program_(std::move(program)) {}

  // By the entry alone: one that the user has switched off in the desktop's own settings requires approval.
  [[nodiscard]] LoginItemStatus status() const override;
  PlatformResult<Done> registerItem() override;
  // An entry that is not there is no error.
  PlatformResult<Done> unregisterItem() override;

 private:
  [[nodiscard]] FileURL entry() const;

  Dependencies dependencies_;
  FileURL program_;
};

// A path as the first word of an entry's Exec line: in quotes, with all that has a meaning there escaped.
[[nodiscard]] std::string quotedForExec(const std::string& path);

}  // namespace quenlio
