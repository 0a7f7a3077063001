// A user with a home, and a place for a disk to be mounted on. The tests use both with an ordinary user's rights, on
// file systems of their own.
#pragma once

#include <string>

#include "tests/desktop/system/AttributeFolder.h"
#include "tests/desktop/system/PrivateMounts.h"
#include "tests/desktop/system/TrashTest.h"

namespace quenlio {

class MountTrashTest : public testing::Test {
 protected:
  MountTrashTest() {
    check(::chmod(folder.url().path().c_str(), 0755) == 0, folder.url().path());
    makeOrdinaryFolder(folder / "home");
  }

  // Folders that were locked for a test are opened again, or they could not be removed.
  ~MountTrashTest() override {
    std::error_code ignored;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.url().path(), ignored)) {
      if (entry.is_directory() && !entry.is_symlink()) {
        (void)::chmod(entry.path().c_str(), 0755);
      }
    }
  }

  // At home, and nothing mounted.
  void atHome(const std::function<void(TrashUser&)>& body) {
    withPrivateMounts([] {}, [&] { asUser(body); });
  }
  // With an empty file system of the user's at `disk`.
  void withDisk(const std::function<void(TrashUser&)>& body) {
    withPrivateMounts([&] { mountMemory(disk); }, [&] { asUser(body); });
  }
  void asUser(const std::function<void(TrashUser&)>& body) {
    TrashUser user(home);
    body(user);
  }

  AttributeFolder folder;
  FileURL home = folder / "home";
  FileURL disk = folder / "disk";
  std::string userId = std::to_string(ordinaryUser());
};

}  // namespace quenlio
