#include "desktop/linux/system/KeyFile.h"

#include "core/base/Text.h"

namespace quenlio {
namespace {

std::string_view withoutBlanks(std::string_view text) {
  constexpr std::string_view blanks = " \t\r";
  const std::size_t first = text.find_first_not_of(blanks);
  return first == std::string_view::npos ? std::string_view{}
                                         : text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::string_view takeLine(std::string_view& text) {
  const std::size_t end = std::min(text.find('\n'), text.size());
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return withoutBlanks(line);
}

char meantBy(char escaped) {
  switch (escaped) {
    case 's':
      return ' ';
    case 'n':
      return '\n';
    case 't':
      return '\t';
    case 'r':
      return '\r';
    default:
      return escaped;
  }
}

}  // namespace

KeyFileGroup keyFileGroup(std::string_view text, std::string_view group) {
  KeyFileGroup keys;
  bool isInside = false;
  while (!text.empty()) {
    const std::string_view line = takeLine(text);
    if (line.starts_with('[')) {
      isInside = line.size() == group.size() + 2 && line.substr(1, group.size()) == group && line.ends_with(']');
      continue;
    }
    const std::size_t equals = line.find('=');
    if (isInside && equals != std::string_view::npos && !line.starts_with('#')) {
      keys.insert_or_assign(std::string(withoutBlanks(line.substr(0, equals))),
                            std::string(withoutBlanks(line.substr(equals + 1))));
    }
  }
  return keys;
}

std::string unescaped(std::string_view value) {
  std::string result;
  for (std::size_t i = 0; i < value.size(); ++i) {
    const bool isEscape = value[i] == '\\' && i + 1 < value.size();
    result += isEscape ? meantBy(value[++i]) : value[i];
  }
  return result;
}

std::vector<std::string> listOf(std::string_view value) {
  std::vector<std::string> parts;
  std::size_t begin = 0;
  for (std::size_t i = 0; i <= value.size(); ++i) {
    if (i < value.size() && value[i] == '\\') {
      ++i;
    } else if (i == value.size() || value[i] == ';') {
      if (std::string part = unescaped(value.substr(begin, i - begin)); !part.empty()) {
        parts.push_back(std::move(part));
      }
      begin = i + 1;
    }
  }
  return parts;
}

std::vector<std::string> splitAt(char divider, std::string_view text) {
  std::vector<std::string> parts;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(divider), text.size());
    if (end > 0) {
      parts.emplace_back(text.substr(0, end));
    }
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return parts;
}

}  // namespace quenlio
