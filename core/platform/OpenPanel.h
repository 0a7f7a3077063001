// The desktop's dialog for choosing a file or a folder. Main thread; modal.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/base/FileURL.h"

namespace quenlio {

enum class ContentType { png, jpeg, heic, tiff, pdf };

struct OpenPanelRequest {
  std::string title = {};
  std::string message = {};
  std::string prompt = {};  // the text of the confirming button
  bool canChooseFiles = false;
  bool canChooseDirectories = false;
  bool allowsMultipleSelection = false;
  bool canCreateDirectories = false;
  std::vector<ContentType> allowedContentTypes = {};  // empty: all
  std::optional<FileURL> directoryURL = {};
};

class OpenPanel {
 public:
  virtual ~OpenPanel() = default;
  // Nothing on any answer but a confirmation.
  [[nodiscard]] virtual std::optional<FileURL> runModal(const OpenPanelRequest& request) = 0;
};

}  // namespace quenlio
