#include "desktop/linux/system/XdgTrash.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <fcntl.h>
#include <functional>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include "desktop/linux/system/FileTransfer.h"
#include "desktop/linux/system/TrashFolders.h"
#include "desktop/linux/system/TrashInfo.h"

namespace quenlio {
namespace {

// Beyond the numbered names follow random ones, of which the first is free.
constexpr int kAttempts = 30;

struct Item {
  FileURL url;     // absolute
  FileURL folder;  // the one that it lies in, without links
  std::string name;
  struct stat status {};
};

// Gives the file a place under that name. EEXIST asks for another name.
using Move = std::function<int(const FilePlace& to)>;

// What can be told before anything is touched.
int look(const FileURL& url, Item& item) {
  item.name = url.lastPathComponent();
  const FileURL parent = url.parent();
  if (item.name.empty() || item.name == "/" || item.name == "." || item.name == "..") {
    return EINVAL;
  }
  if (::lstat(url.path().c_str(), &item.status) != 0) {
    return errno;
  }
  const std::unique_ptr<char, decltype(&std::free)> real(::realpath(parent.path().c_str(), nullptr), &std::free);
  if (real == nullptr || ::faccessat(AT_FDCWD, real.get(), W_OK | X_OK, AT_EACCESS) != 0) {
    return errno;
  }
  item.folder = FileURL(real.get());
  item.url = url.path().starts_with('/') ? url : item.folder.appending(item.name);
  return trashInfoOf(item.url) || trashInfoOf(item.folder.appending(item.name)) ? EEXIST : 0;
}

std::size_t longestName(const TrashFolder& trash) {
  const long longest = ::fpathconf(trash.info.get(), _PC_NAME_MAX);
  const std::size_t limit = longest > 0 ? std::min(static_cast<std::size_t>(longest), std::size_t{NAME_MAX}) : NAME_MAX;
  return limit - kTrashInfoExtension.size();
}

// The note is what takes the name: of two programs that want it, one gets it.
int writeInfo(const FilePlace& place, const std::string& text) {
  const UniqueFd fd(::openat(place.folder, place.name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                             S_IRUSR | S_IWUSR));
  if (!fd) {
    return errno;
  }
  const int error = writeAll(fd.get(), text);
  if (error != 0) {
    (void)::unlinkat(place.folder, place.name.c_str(), 0);
  }
  return error;
}

// `path` is where the note says that the file was.
int put(const TrashFolder& trash, const Item& item, std::string_view path, Date now, const Move& move, FileURL& place) {
  const std::string text = trashInfoText(path, now);
  const std::size_t longest = longestName(trash);
  int error = EEXIST;
  for (int attempt = 1; error == EEXIST && attempt <= kAttempts; ++attempt) {
    const std::string name = nameInTrash(item.name, attempt, longest);
    const FilePlace info(trash.info.get(), name + std::string(kTrashInfoExtension));
    error = writeInfo(info, text);
    if (error != 0) {
      continue;
    }
    error = move({trash.files.get(), name});
    if (error != 0) {
      (void)::unlinkat(info.folder, info.name.c_str(), 0);
    }
    place = trash.url.appending("files").appending(name);
  }
  return error;
}

Move byRename(const Item& item) {
  return [path = item.url.path()](const FilePlace& to) { return renameWithoutReplacing(path, to); };
}

int toHome(const Item& item, const TrashContext& context, FileURL& place) {
  TrashFolder trash;
  const int error = openHomeTrash(context.homeTrash, trash);
  return error != 0 ? error : put(trash, item, item.url.path(), context.now, byRename(item), place);
}

// EXDEV too when the file system can have no trash.
int toMount(const Item& item, const TrashContext& context, FileURL& place) {
  const FileURL top = mountPointOf(item.folder);
  TrashFolder trash;
  if (openMountTrash(top, trash) != 0) {
    return EXDEV;
  }
  // Noted as seen from its top, since it may be mounted elsewhere another time.
  const std::string path = item.folder.appending(item.name).path();
  const std::string_view fromTop = std::string_view(path).substr(top.path().size() == 1 ? 1 : top.path().size() + 1);
  return put(trash, item, fromTop, context.now, byRename(item), place);
}

int toHomeByCopy(const Item& item, const TrashContext& context, FileURL& place) {
  if (!S_ISREG(item.status.st_mode)) {
    return EXDEV;
  }
  if (item.status.st_size > kLargestTrashCopy) {
    return EFBIG;
  }
  TrashFolder trash;
  if (const int error = openHomeTrash(context.homeTrash, trash); error != 0) {
    return error;
  }
  // Beside files/, where no other program takes it for something in the trash.
  FileCopy copy(context.own);
  if (const int error = copy.make(item.url, context.homeTrash, Durability::onDisk); error != 0) {
    return error;
  }
  return put(
      trash, item, item.url.path(), context.now, [&copy](const FilePlace& to) { return copy.takeOver(to); }, place);
}

}  // namespace

int moveToTrash(const FileURL& url, const TrashContext& context, FileURL& place) {
  Item item;
  if (const int error = look(url, item); error != 0) {
    return error;
  }
  int error = EXDEV;
  if (areOnOneDevice(item.folder, context.homeTrash)) {
    error = toHome(item, context, place);
  }
  if (error == EXDEV) {
    error = toMount(item, context, place);
  }
  return error == EXDEV ? toHomeByCopy(item, context, place) : error;
}

void forgetInTrash(const FileURL& formerPlace) {
  const auto info = trashInfoOf(formerPlace);
  struct stat status {};
  if (info && ::lstat(info->path().c_str(), &status) == 0 && S_ISREG(status.st_mode)) {
    (void)::unlink(info->path().c_str());
  }
}

}  // namespace quenlio
