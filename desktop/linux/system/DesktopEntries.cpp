#include "desktop/linux/system/DesktopEntries.h"

#include <algorithm>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "core/base/Text.h"

#include "desktop/linux/system/KeyFile.h"
#include "desktop/linux/system/LinuxFileContents.h"
#include "desktop/linux/system/LinuxStandardDirectories.h"
#include "desktop/linux/system/PictureKind.h"
#include "desktop/linux/system/RegularFile.h"

namespace quenlio {
namespace {

std::string textOf(const FileURL& file) {
  const auto text = LinuxFileContents().read(file);
  return text.ok() ? text.value() : std::string{};
}

bool isProgram(const FileURL& file) {
  struct stat status {};
  return ::stat(file.path().c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
         ::access(file.path().c_str(), X_OK) == 0;
}

// The absolute paths of a variable like PATH; the fallback when it names none.
std::vector<FileURL> foldersOf(const ProcessInfo& process, std::string_view variable, std::string_view fallback) {
  std::vector<FileURL> folders;
  const std::string value = process.environment(variable).value_or("");
  for (const std::string& path : splitAt(':', value.empty() ? fallback : std::string_view(value))) {
    if (path.starts_with('/')) {
      folders.emplace_back(path);
    }
  }
  return folders;
}

// An entry's file in a folder: a dash of its id may stand for a step into a folder.
std::optional<FileURL> findEntry(const FileURL& folder, const std::string& id) {
  struct stat status {};
  const FileURL plain = folder.appending(id);
  if (::stat(plain.path().c_str(), &status) == 0) {
    return plain;
  }
  for (std::size_t dash = id.find('-'); dash != std::string::npos; dash = id.find('-', dash + 1)) {
    const FileURL deeper = folder.appending(id.substr(0, dash));
    if (dash > 0 && ::stat(deeper.path().c_str(), &status) == 0 && S_ISDIR(status.st_mode)) {
      if (auto found = findEntry(deeper, id.substr(dash + 1))) {
        return found;
      }
    }
  }
  return std::nullopt;
}

FileType typeOf(PictureKind kind) {
  switch (kind) {
    case PictureKind::png:
      return {"image/png", "image/x-png"};
    case PictureKind::jpeg:
      return {"image/jpeg", "image/jpg", "image/pjpeg"};
    case PictureKind::heic:
      return {"image/heic", "image/heif"};
    case PictureKind::tiff:
      return {"image/tiff"};
    case PictureKind::pdf:
      return {"application/pdf", "application/x-pdf"};
  }
  return {};
}

std::optional<PictureKind> kindByName(const FileURL& url) {
  const std::string extension = lowercased(url.pathExtension());
  if (extension == "png") {
    return PictureKind::png;
  }
  if (extension == "jpg" || extension == "jpeg") {
    return PictureKind::jpeg;
  }
  if (extension == "heic" || extension == "heif") {
    return PictureKind::heic;
  }
  if (extension == "tif" || extension == "tiff") {
    return PictureKind::tiff;
  }
  return extension == "pdf" ? std::optional(PictureKind::pdf) : std::nullopt;
}

std::optional<PictureKind> kindByContents(const FileURL& url) {
  const UniqueFd fd = openRegularFile(AT_FDCWD, url.path().c_str());
  std::string head(kPictureHead, '\0');
  const ssize_t got = fd ? ::read(fd.get(), head.data(), head.size()) : -1;
  return got > 0 ? pictureKind(std::string_view(head).substr(0, static_cast<std::size_t>(got))) : std::nullopt;
}

}  // namespace

// Gathers what the lists say of one type, from the user's own list down to the system's last one.
class DesktopEntries::Choices {
 public:
  explicit Choices(const FileType& type) : type_(type) {}

  void addDefaults(std::string_view list) { append(list, "Default Applications", defaults_, true); }
  void addList(std::string_view list) {
    append(list, "Added Associations", others_, true);
    for (const std::string& name : type_) {
      for (const std::string& id : idsOf(list, "Removed Associations", name)) {
        removed_.push_back(id);
      }
    }
  }
  void addCache(std::string_view cache) { append(cache, "MIME Cache", others_, false); }

  [[nodiscard]] std::vector<Choice> take() {
    for (const Choice& choice : others_) {
      addOnce(defaults_, choice);
    }
    return std::move(defaults_);
  }

 private:
  static std::vector<std::string> idsOf(std::string_view text, std::string_view group, const std::string& type) {
    const KeyFileGroup keys = keyFileGroup(text, group);
    const auto found = keys.find(type);
    return found != keys.end() ? listOf(found->second) : std::vector<std::string>{};
  }
  static void addOnce(std::vector<Choice>& choices, const Choice& choice) {
    if (std::ranges::find(choices, choice.id, &Choice::id) == choices.end()) {
      choices.push_back(choice);
    }
  }
  void append(std::string_view text, std::string_view group, std::vector<Choice>& choices, bool isSet) const {
    for (const std::string& name : type_) {
      for (const std::string& id : idsOf(text, group, name)) {
        // What a list nearer to the user has taken away stays away, but a default that is set is one.
        const bool isRemoved = &choices == &others_ && std::ranges::find(removed_, id) != removed_.end();
        if (!isRemoved) {
          addOnce(choices, {id, isSet});
        }
      }
    }
  }

  const FileType& type_;
  std::vector<Choice> defaults_;
  std::vector<Choice> others_;
  std::vector<std::string> removed_;
};

DesktopEntries::Surroundings DesktopEntries::surroundings(const ProcessInfo& process,
                                                          const StandardDirectories& directories) {
  Surroundings result;
  result.settings = {settingsDirectory(process, directories.homeDirectory())};
  for (FileURL& folder : foldersOf(process, "XDG_CONFIG_DIRS", "/etc/xdg")) {
    result.settings.push_back(std::move(folder));
  }
  if (auto data = directories.applicationSupportDirectory()) {
    result.data.push_back(std::move(*data));
  }
  for (FileURL& folder : foldersOf(process, "XDG_DATA_DIRS", "/usr/local/share:/usr/share")) {
    result.data.push_back(std::move(folder));
  }
  result.programs = foldersOf(process, "PATH", "/usr/local/bin:/usr/bin:/bin");
  result.desktops = splitAt(':', process.environment("XDG_CURRENT_DESKTOP").value_or(""));
  for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    if (result.locale.empty()) {
      result.locale = process.environment(variable).value_or("");
    }
  }
  return result;
}

std::vector<DesktopEntry> DesktopEntries::programsFor(const std::vector<FileType>& types) const {
  if (types.empty()) {
    return {};
  }
  std::vector<Choice> common = choicesFor(types.front());
  for (const FileType& type : types) {
    if (type != types.front()) {
      const std::vector<Choice> choices = choicesFor(type);
      std::erase_if(common, [&choices](const Choice& choice) {
        return std::ranges::find(choices, choice.id, &Choice::id) == choices.end();
      });
    }
  }
  std::vector<DesktopEntry> entries;
  for (const Choice& choice : common) {
    if (auto entry = entryOf(choice)) {
      entries.push_back(std::move(*entry));
    }
  }
  return entries;
}

std::vector<DesktopEntries::Choice> DesktopEntries::choicesFor(const FileType& type) const {
  Choices choices(type);
  const auto addFolder = [&](const FileURL& folder) {
    for (const std::string& desktop : surroundings_.desktops) {
      choices.addDefaults(textOf(folder.appending(lowercased(desktop) + "-mimeapps.list")));
    }
    const std::string list = textOf(folder.appending("mimeapps.list"));
    choices.addDefaults(list);
    choices.addList(list);
  };
  std::ranges::for_each(surroundings_.settings, addFolder);
  for (const FileURL& data : surroundings_.data) {
    const FileURL applications = data.appending("applications");
    addFolder(applications);
    choices.addCache(textOf(applications.appending("mimeinfo.cache")));
  }
  return choices.take();
}

std::optional<DesktopEntry> DesktopEntries::entryOf(const Choice& choice) const {
  auto entry = read(choice.id);
  if (!entry || entry->isHidden || entry->runsInTerminal || entry->name.empty() ||
      (entry->isLeftOutOfMenus && !choice.isSet) || !entry->isShownIn(surroundings_.desktops)) {
    return std::nullopt;
  }
  const auto words = commandWords(entry->exec);
  const bool isThere = words && !words->empty() && findProgram(words->front()) &&
                       (entry->tryExec.empty() || findProgram(entry->tryExec));
  return isThere ? entry : std::nullopt;
}

// The first folder that has it decides, also that it is hidden.
std::optional<DesktopEntry> DesktopEntries::read(const std::string& id) const {
  if (id.find('/') != std::string::npos) {
    return std::nullopt;
  }
  for (const FileURL& data : surroundings_.data) {
    if (const auto file = findEntry(data.appending("applications"), id)) {
      auto entry = parseDesktopEntry(textOf(*file), surroundings_.locale);
      if (entry) {
        entry->id = id;
        entry->file = *file;
      }
      return entry;
    }
  }
  return std::nullopt;
}

std::optional<FileURL> DesktopEntries::findProgram(const std::string& name) const {
  if (name.starts_with('/')) {
    return isProgram(FileURL(name)) ? std::optional(FileURL(name)) : std::nullopt;
  }
  if (name.empty() || name.find('/') != std::string::npos) {
    return std::nullopt;
  }
  for (const FileURL& folder : surroundings_.programs) {
    if (FileURL program = folder.appending(name); isProgram(program)) {
      return program;
    }
  }
  return std::nullopt;
}

FileType fileTypeOf(const FileURL& url) {
  auto kind = kindByContents(url);
  if (!kind) {
    kind = kindByName(url);
  }
  return kind ? typeOf(*kind) : FileType{"application/octet-stream"};
}

}  // namespace quenlio
