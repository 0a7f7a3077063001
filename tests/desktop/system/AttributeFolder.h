// A temporary folder on a file system that keeps extended attributes: not every folder for temporary files does.
#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <sys/xattr.h>

#include "tests/desktop/system/TemporaryFolder.h"

namespace quenlio {

class AttributeFolder {
 public:
  AttributeFolder() {
    for (const std::string& parent : {std::filesystem::temp_directory_path().string(), std::string("/var/tmp"),
                                      std::filesystem::current_path().string()}) {
      folder_ = std::make_unique<TemporaryFolder>(parent);
      if (::setxattr(folder_->url().path().c_str(), "user.quenlio.test", "1", 1, 0) == 0) {
        return;
      }
    }
    throw std::runtime_error("no folder here keeps extended attributes");
  }

  [[nodiscard]] const FileURL& url() const { return folder_->url(); }
  [[nodiscard]] FileURL operator/(std::string_view name) const { return folder_->url().appending(name); }

 private:
  std::unique_ptr<TemporaryFolder> folder_;
};

}  // namespace quenlio
