#include "desktop/linux/system/DesktopEntry.h"

#include <algorithm>
#include <utility>

#include "desktop/linux/system/FileURI.h"
#include "desktop/linux/system/KeyFile.h"

namespace quenlio {
namespace {

// The suffixes under which a text of this locale may stand, the most exact one first: "lang_COUNTRY@MODIFIER".
std::vector<std::string> localeSuffixes(std::string_view locale) {
  const std::size_t at = locale.find('@');
  const std::string modifier(at == std::string_view::npos ? std::string_view{} : locale.substr(at));
  const std::string withCountry(locale.substr(0, std::min(locale.find('.'), at)));
  const std::string language = withCountry.substr(0, withCountry.find('_'));
  if (language.empty() || language == "C" || language == "POSIX") {
    return {};
  }
  return {withCountry + modifier, withCountry, language + modifier, language};
}

std::string localized(const KeyFileGroup& keys, const std::string& key, std::string_view locale) {
  for (const std::string& suffix : localeSuffixes(locale)) {
    if (const auto found = keys.find(key + "[" + suffix + "]"); found != keys.end()) {
      return unescaped(found->second);
    }
  }
  const auto found = keys.find(key);
  return found != keys.end() ? unescaped(found->second) : std::string{};
}

std::optional<std::vector<std::string>> listIn(const KeyFileGroup& keys, std::string_view key) {
  const auto found = keys.find(key);
  return found != keys.end() ? std::optional(listOf(found->second)) : std::nullopt;
}

bool haveOneInCommon(const std::vector<std::string>& a, const std::vector<std::string>& b) {
  return std::ranges::any_of(a, [&b](const std::string& item) { return std::ranges::find(b, item) != b.end(); });
}

// Divides a command line. Within double quotes a backslash only escapes what a shell would read there.
class WordReader {
 public:
  [[nodiscard]] std::optional<Command> read(std::string_view line) {
    for (std::size_t i = 0; i < line.size(); ++i) {
      const char next = i + 1 < line.size() ? line[i + 1] : '\0';
      if (takesNext(line[i], next)) {
        add(next);
        ++i;
      } else {
        take(line[i]);
      }
    }
    endWord();
    return quote_ == '\0' ? std::optional(words_) : std::nullopt;
  }

 private:
  [[nodiscard]] bool takesNext(char byte, char next) const {
    constexpr std::string_view escapable = "\"`$\\";
    return byte == '\\' && next != '\0' && quote_ != '\'' &&
           (quote_ == '\0' || escapable.find(next) != std::string_view::npos);
  }
  void take(char byte) {
    if (quote_ != '\0' && byte == quote_) {
      quote_ = '\0';
    } else if (quote_ == '\0' && (byte == '"' || byte == '\'')) {
      quote_ = byte;
      isInWord_ = true;
    } else if (quote_ == '\0' && (byte == ' ' || byte == '\t' || byte == '\n')) {
      endWord();
    } else {
      add(byte);
    }
  }
  void add(char byte) {
    isInWord_ = true;
    word_ += byte;
  }
  void endWord() {
    if (std::exchange(isInWord_, false)) {
      words_.push_back(std::exchange(word_, {}));
    }
  }

  Command words_;
  std::string word_;
  bool isInWord_ = false;
  char quote_ = '\0';
};

// Whether a word holds one of these field codes.
bool holdsCode(const std::string& word, std::string_view codes) {
  for (std::size_t i = 0; i + 1 < word.size(); ++i) {
    if (word[i] == '%' && codes.find(word[++i]) != std::string_view::npos) {
      return true;
    }
  }
  return false;
}

// What a field code inside a word stands for; nothing for those that no longer mean anything.
std::string meaningOf(char code, const DesktopEntry& entry, const FileURL& file) {
  switch (code) {
    case '%':
      return "%";
    case 'f':
    case 'F':
      return file.path();
    case 'u':
    case 'U':
      return fileURI(file);
    case 'c':
      return entry.name;
    case 'k':
      return entry.file.path();
    default:
      return {};
  }
}

void addWord(Command& command, const std::string& word, const DesktopEntry& entry, const FileURL& file) {
  if (word == "%i") {
    if (!entry.icon.empty()) {
      command.insert(command.end(), {"--icon", entry.icon});
    }
    return;
  }
  std::string meant;
  for (std::size_t i = 0; i < word.size(); ++i) {
    if (word[i] == '%' && i + 1 < word.size()) {
      meant += meaningOf(word[++i], entry, file);
    } else {
      meant += word[i];
    }
  }
  // A code that stood alone and means nothing leaves no empty word.
  if (!meant.empty() || !word.starts_with('%')) {
    command.push_back(std::move(meant));
  }
}

Command commandFor(const Command& words, const DesktopEntry& entry, const std::vector<FileURL>& files) {
  Command command;
  for (const std::string& word : words) {
    if (word == "%F" || word == "%U") {
      std::ranges::transform(files, std::back_inserter(command),
                             [&word](const FileURL& file) { return word == "%F" ? file.path() : fileURI(file); });
    } else {
      addWord(command, word, entry, files.front());
    }
  }
  return command;
}

}  // namespace

bool DesktopEntry::isShownIn(const std::vector<std::string>& desktops) const {
  return (!onlyShowIn || haveOneInCommon(*onlyShowIn, desktops)) && !haveOneInCommon(notShowIn, desktops);
}

std::optional<DesktopEntry> parseDesktopEntry(std::string_view text, std::string_view locale) {
  const KeyFileGroup keys = keyFileGroup(text, "Desktop Entry");
  const auto value = [&keys](std::string_view key) {
    const auto found = keys.find(key);
    return found != keys.end() ? unescaped(found->second) : std::string{};
  };
  if (value("Type") != "Application") {
    return std::nullopt;
  }
  return DesktopEntry{.id = {},
                      .file = {},
                      .name = localized(keys, "Name", locale),
                      .icon = localized(keys, "Icon", locale),
                      .exec = value("Exec"),
                      .tryExec = value("TryExec"),
                      .workingDirectory = value("Path"),
                      .isHidden = value("Hidden") == "true",
                      .isLeftOutOfMenus = value("NoDisplay") == "true",
                      .runsInTerminal = value("Terminal") == "true",
                      .onlyShowIn = listIn(keys, "OnlyShowIn"),
                      .notShowIn = listIn(keys, "NotShowIn").value_or(std::vector<std::string>{})};
}

std::optional<Command> commandWords(std::string_view line) {
  return WordReader().read(line);
}

std::vector<Command> commandsToOpen(const DesktopEntry& entry, const std::vector<FileURL>& files) {
  auto words = commandWords(entry.exec);
  if (!words || words->empty() || files.empty()) {
    return {};
  }
  const auto hold = [&words](std::string_view codes) {
    return std::ranges::any_of(*words, [codes](const std::string& word) { return holdsCode(word, codes); });
  };
  if (!hold("fFuU")) {
    words->emplace_back("%f");
  }
  const bool takesAll = std::ranges::all_of(
      *words, [](const std::string& word) { return word == "%F" || word == "%U" || !holdsCode(word, "fFuU"); });
  if (takesAll) {
    return {commandFor(*words, entry, files)};
  }
  std::vector<Command> commands;
  for (const FileURL& file : files) {
    commands.push_back(commandFor(*words, entry, {file}));
  }
  return commands;
}

}  // namespace quenlio
