#include "tests/fakes/FakeFileSystem.h"

#include <algorithm>
#include <vector>

namespace quenlio {
namespace {

constexpr std::size_t kNameLimit = 255;  // bytes

bool isBelow(const std::string& path, const std::string& folder) {
  return folder == "/" || path == folder || path.starts_with(folder + "/");
}

PlatformError error(std::string reason) {
  return {std::move(reason)};
}

}  // namespace

const FakeFileSystem::Node* FakeFileSystem::find(const FileURL& url) const {
  const Node* node = findItself(url);
  return node != nullptr && !node->isDanglingLink ? node : nullptr;
}

const FakeFileSystem::Node* FakeFileSystem::findItself(const FileURL& url) const {
  const auto found = nodes_.find(url.standardized().path());
  return found != nodes_.end() ? &found->second : nullptr;
}

bool FakeFileSystem::isWritable(const FileURL& url) const {
  return std::ranges::none_of(readOnly_, [&](const std::string& folder) { return isBelow(url.path(), folder); });
}

void FakeFileSystem::insert(const std::string& path, Node node) {
  const FileURL parent = FileURL(path).parent();
  if (parent.path() != path && find(parent) == nullptr) {
    insert(parent.path(), {.isFolder = true, .content = {}, .created = clock_.now()});
  }
  node.order = ++lastOrder_;
  if (node.number == 0) {
    node.number = node.order;
  }
  nodes_[path] = std::move(node);
}

void FakeFileSystem::write(const std::string& path, std::string content) {
  const auto found = nodes_.find(path);
  if (found != nodes_.end()) {
    found->second.content = std::move(content);
  } else {
    insert(path, {.isFolder = false, .content = std::move(content), .created = clock_.now()});
  }
}

void FakeFileSystem::makeFolder(const std::string& path) {
  if (nodes_.find(path) == nodes_.end()) {
    insert(path, {.isFolder = true, .content = {}, .created = clock_.now()});
  }
}

void FakeFileSystem::makeDanglingLink(const std::string& path) {
  Node link;
  link.isDanglingLink = true;
  insert(path, std::move(link));
}

void FakeFileSystem::remove(const std::string& path) {
  std::erase_if(nodes_, [&](const auto& node) { return isBelow(node.first, path); });
}

std::optional<std::string> FakeFileSystem::content(const std::string& path) const {
  const Node* node = find(FileURL(path));
  return node != nullptr && !node->isFolder ? std::optional(node->content) : std::nullopt;
}

bool FakeFileSystem::fileExistsAtPath(const FileURL& url) const {
  return find(url) != nullptr;
}

std::optional<FileIdentity> FakeFileSystem::identityOfItemAtPath(const FileURL& url) const {
  const Node* node = findItself(url);
  return node != nullptr ? std::optional(FileIdentity{.number = node->number}) : std::nullopt;
}

bool FakeFileSystem::isDirectory(const FileURL& url) const {
  const Node* node = find(url);
  return node != nullptr && node->isFolder;
}

bool FakeFileSystem::isReadableFileAtPath(const FileURL& url) const {
  const Node* node = find(url);
  return node != nullptr && !node->isUnreadable;
}

PlatformResult<FileAttributes> FakeFileSystem::attributesOfItemAtPath(const FileURL& url) const {
  const Node* node = find(url);
  if (node == nullptr || node->isUnreadable) {
    return error("no such file");
  }
  FileAttributes attributes{node->created, static_cast<std::int64_t>(node->content.size())};
  if (node->isSizeUnreadable) {
    attributes.size.reset();
  }
  return attributes;
}

PlatformResult<std::vector<DirectoryEntry>> FakeFileSystem::contentsOfDirectoryAtURL(const FileURL& url,
                                                                                     HiddenFiles hidden) const {
  if (duringListing) {
    duringListing(url, hidden);
  }
  if (!canListDirectoryAtURL(url)) {
    return error("the folder cannot be listed");
  }
  std::vector<std::pair<std::uint64_t, DirectoryEntry>> found;
  for (const auto& [path, node] : nodes_) {
    const FileURL child(path);
    if (path == "/" || child.parent() != url.standardized() ||
        (hidden == HiddenFiles::skip && child.lastPathComponent().starts_with('.'))) {
      continue;
    }
    DirectoryEntry entry{url.appending(child.lastPathComponent()), std::nullopt, std::nullopt};
    if (!node.isUnfinished) {
      entry.isRegularFile = !node.isFolder;
      entry.creationDate = node.created;
    }
    found.emplace_back(node.order, std::move(entry));
  }
  std::ranges::sort(found, {}, [](const auto& entry) { return entry.first; });
  std::vector<DirectoryEntry> entries;
  for (auto& [order, entry] : found) {
    entries.push_back(std::move(entry));
  }
  return entries;
}

bool FakeFileSystem::canListDirectoryAtURL(const FileURL& url) const {
  const Node* folder = find(url);
  return folder != nullptr && folder->isFolder && !folder->isUnreadable && !folder->isUnlistable;
}

bool FakeFileSystem::enumerateAtURL(const FileURL& url,
                                    const std::function<void(const FileURL&, bool isDirectory)>& visit) const {
  const Node* root = find(url);
  if (root == nullptr || !root->isFolder || root->isUnreadable) {
    return false;
  }
  const auto snapshot = nodes_;  // the visitor may make files
  for (const auto& [path, node] : snapshot) {
    if (path != url.path() && isBelow(path, url.path())) {
      visit(FileURL(path), node.isFolder);
    }
  }
  return true;
}

PlatformResult<Done> FakeFileSystem::createDirectoryAtURL(const FileURL& url) {
  log_.add("createDirectory " + url.path());
  if (const Node* existing = find(url)) {
    return existing->isFolder ? PlatformResult<Done>(Done{}) : error("a file is in the way");
  }
  if (!isWritable(url)) {
    return error("read-only");
  }
  makeFolder(url.path());
  return Done{};
}

void FakeFileSystem::rename(const std::string& from, const std::string& to) {
  std::vector<std::pair<std::string, Node>> moved;
  for (const auto& [path, node] : nodes_) {
    if (isBelow(path, from)) {
      moved.emplace_back(to + path.substr(from.size()), node);
    }
  }
  remove(from);
  for (auto& [path, node] : moved) {
    insert(path, std::move(node));
  }
}

PlatformResult<Done> FakeFileSystem::moveItemAtURL(const FileURL& from, const FileURL& to) {
  log_.add("moveItem " + from.path() + " " + to.path());
  if (duringMove) {
    duringMove(from, to);
  }
  if (findItself(from) == nullptr || !isDirectory(to.parent())) {
    return error("no such file");
  }
  if (to.lastPathComponent().size() > kNameLimit) {
    return error("the name is too long");
  }
  if (findItself(to) != nullptr) {
    return error("a file is in the way");
  }
  if (!isWritable(from) || !isWritable(to)) {
    return error("read-only");
  }
  rename(from.path(), to.path());
  return Done{};
}

PlatformResult<Done> FakeFileSystem::copyItemAtURL(const FileURL& from, const FileURL& to) {
  log_.add("copyItem " + from.path() + " " + to.path());
  const Node* source = find(from);
  if (source == nullptr || source->isFolder || source->isUnreadable) {
    return error("the file cannot be read");
  }
  if (findItself(to) != nullptr) {
    return error("a file is in the way");
  }
  if (!isWritable(to)) {
    return error("read-only");
  }
  insert(to.path(), {.isFolder = false, .content = source->content, .created = clock_.now()});
  return Done{};
}

PlatformResult<Done> FakeFileSystem::removeItemAtURL(const FileURL& url) {
  log_.add("removeItem " + url.path());
  if (findItself(url) == nullptr) {
    return error("no such file");
  }
  if (!isWritable(url)) {
    return error("read-only");
  }
  remove(url.path());
  return Done{};
}

PlatformResult<std::optional<FileURL>> FakeFileSystem::trashItemAtURL(const FileURL& url) {
  log_.add("trashItem " + url.path());
  if (findItself(url) == nullptr) {
    return error("no such file");
  }
  if (!isWritable(url)) {
    return error("read-only");
  }
  FileURL place = FileURL(kTrash).appending(url.lastPathComponent());
  for (int number = 2; findItself(place) != nullptr; ++number) {
    place = FileURL(kTrash).appending(std::to_string(number) + "." + url.lastPathComponent());
  }
  makeFolder(kTrash);
  rename(url.path(), place.path());
  return trashTellsPlaces ? std::optional(place) : std::nullopt;
}

PlatformResult<std::string> FakeFileSystem::read(const FileURL& url) const {
  ++readCount_;
  const Node* node = find(url);
  if (node == nullptr || node->isFolder || node->isUnreadable) {
    return error("the file cannot be read");
  }
  return node->content;
}

PlatformResult<Done> FakeFileSystem::writeAtomically(const FileURL& url, std::string_view data) {
  log_.add("writeAtomically " + url.path());
  if (!isWritable(url) || !isDirectory(url.parent()) || isDirectory(url)) {
    return error("the file cannot be written");
  }
  write(url.path(), std::string(data));
  if (afterWriting) {
    afterWriting(url, data);
  }
  return Done{};
}

PlatformResult<Done> FakeFileSystem::append(const FileURL& url, std::string_view data) {
  if (!isWritable(url) || !isDirectory(url.parent()) || isDirectory(url)) {
    return error("the file cannot be written");
  }
  write(url.path(), content(url.path()).value_or("").append(data));
  if (afterWriting) {
    afterWriting(url, data);
  }
  return Done{};
}

}  // namespace quenlio
