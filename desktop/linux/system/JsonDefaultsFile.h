// One settings file on the disk, NAME.json, shared with other processes of this user. Owned by one store; its thread.
//
// A change is written whole under another name and renamed into place, so that a reader, and the next run after a kill,
// finds the old file or the new one and never a half. It is not forced onto the disk each time: a slider writes many
// times a second on the main thread, and a power cut costs the newest changes at worst.
//
// Changes are made under a lock (flock on NAME.lock) on what the file holds at that moment, so that two processes do
// not lose each other's keys. Readers need no lock. Where another process keeps the lock, a change waits for it a fifth
// of a second at most; once that was in vain, changes fail at once for some seconds.
#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "core/base/FileURL.h"
#include "core/base/Json.h"

#include "desktop/linux/system/RegularFile.h"
#include "desktop/linux/system/UniqueFd.h"

namespace quenlio {

class JsonDefaultsFile {
 public:
  JsonDefaultsFile(FileURL folder, std::string_view name);

  // An object of what the file holds now. It is read again only when it has changed; the cost is one look at its
  // attributes. A file that is no JSON object counts as empty and is put aside as NAME.json.damaged, or
  // NAME.json.damaged-2 and so on.
  [[nodiscard]] const json::Value& entries();

  // Edits the entries and writes them, with the folder if need be. An edit that changes nothing touches no file. False
  // when it could not be written: then the file is as it was, or with what another process has written.
  [[nodiscard]] bool update(const std::function<void(json::Value&)>& edit);

 private:
  enum class Condition {
    absent,
    good,
    damaged,     // and still in its place
    unreadable,  // there, but not to be read now: never to be replaced
  };

  void refresh();
  void refreshAndPutDamagedAside();
  void read();
  bool putAside();
  [[nodiscard]] UniqueFd locked();
  bool replace(const json::Value& entries);

  FileURL folder_;
  FileURL file_;
  FileURL lock_;
  json::Value entries_ = json::Value::object();
  Condition condition_ = Condition::absent;
  // The file that was read last. It stays open so that its inode number cannot be given to a newer file.
  UniqueFd held_;
  std::optional<FileStamp> stamp_;
  std::chrono::steady_clock::time_point nextWait_{};  // for the lock; not before this
};

}  // namespace quenlio
