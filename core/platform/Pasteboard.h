// The clipboard, and the pictures that are put on it. Main thread.
#pragma once

#include <vector>

#include "core/base/FileURL.h"
#include "core/platform/Image.h"

namespace quenlio {

// What one write puts on the clipboard; a program that pastes takes the one it can use.
struct PasteboardObjects {
  ImageRef image = {};  // offered first; none for the files alone
  std::vector<FileURL> fileURLs = {};
};

class Pasteboard {
 public:
  virtual ~Pasteboard() = default;
  virtual void clearContents() = 0;
  virtual void writeObjects(const PasteboardObjects& objects) = 0;
};

// NSImage of a file.
class Images {
 public:
  virtual ~Images() = default;
  // Nothing when the file cannot be read as a picture. The picture holds what the file holds now, whatever becomes of
  // the file. Takes as long as reading the file does: pixels are decoded when somebody asks for them.
  [[nodiscard]] virtual ImageRef imageWithContentsOfFile(const FileURL& url) const = 0;
};

}  // namespace quenlio
