#include "core/base/FileURL.h"

#include <vector>

namespace quenlio {
namespace {

// Where the extension's dot stands in a file name, or npos.
std::size_t extensionDot(std::string_view name) {
  const std::size_t dot = name.rfind('.');
  const bool hidden = dot == 0;
  const bool empty = dot + 1 == name.size();
  return dot == std::string_view::npos || hidden || empty ? std::string_view::npos : dot;
}

}  // namespace

FileURL::FileURL(std::string path) : path_(std::move(path)) {
  while (path_.size() > 1 && path_.ends_with('/')) {
    path_.pop_back();
  }
}

FileURL FileURL::standardized() const {
  const bool absolute = path_.starts_with('/');
  std::vector<std::string_view> kept;
  std::string_view rest = path_;
  while (!rest.empty()) {
    const std::size_t slash = rest.find('/');
    const std::string_view component = rest.substr(0, slash);
    rest = slash == std::string_view::npos ? std::string_view{} : rest.substr(slash + 1);
    if (component.empty() || component == ".") {
      continue;
    }
    if (component == ".." && !kept.empty() && kept.back() != "..") {
      kept.pop_back();
    } else if (component != ".." || !absolute) {
      kept.push_back(component);
    }
  }
  std::string path = absolute ? "/" : "";
  for (std::size_t i = 0; i < kept.size(); ++i) {
    path += i == 0 ? "" : "/";
    path += kept[i];
  }
  return FileURL(std::move(path));
}

FileURL FileURL::appending(std::string_view component) const {
  std::string path = path_;
  if (!path.empty() && !path.ends_with('/')) {
    path += '/';
  }
  return FileURL(path.append(component));
}

FileURL FileURL::parent() const {
  const std::size_t slash = path_.rfind('/');
  if (slash == std::string::npos) {
    return FileURL(".");
  }
  return FileURL(path_.substr(0, slash == 0 ? 1 : slash));
}

std::string FileURL::lastPathComponent() const {
  const std::size_t slash = path_.rfind('/');
  return slash == std::string::npos || path_.size() == 1 ? path_ : path_.substr(slash + 1);
}

std::string FileURL::pathExtension() const {
  return std::string(extensionOf(lastPathComponent()));
}

std::string FileURL::stem() const {
  const std::string name = lastPathComponent();
  return name.substr(0, extensionDot(name));
}

std::string_view extensionOf(std::string_view fileName) {
  const std::size_t dot = extensionDot(fileName);
  return dot == std::string_view::npos ? std::string_view{} : fileName.substr(dot + 1);
}

}  // namespace quenlio
