#include <cstdlib>
#include <ctime>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>
#include <set>

#include "desktop/linux/system/TrashInfo.h"

namespace quenlio {
namespace {

constexpr std::size_t kLongest = 245;

// A time zone for as long as a test needs it.
class TimeZone {
 public:
  explicit TimeZone(const char* zone) {
    if (const char* value = std::getenv("TZ")) {
      before_ = value;
    }
    ::setenv("TZ", zone, 1);
  }
  TimeZone(const TimeZone&) = delete;
  TimeZone& operator=(const TimeZone&) = delete;
  ~TimeZone() {
    if (before_) {
      ::setenv("TZ", before_->c_str(), 1);
    } else {
      ::unsetenv("TZ");
    }
    ::tzset();
  }

 private:
  std::optional<std::string> before_;
};

std::string noteOf(std::string_view path) {
  const TimeZone utc("UTC0");
  return trashInfoText(path, *dateFromISO8601("2026-11-15T21:04:33Z"));
}

TEST(TrashInfo, theNoteTellsThePlaceAndTheMomentInLocalTime) {
  EXPECT_EQ(noteOf("/home/user/a.png"), "[Trash Info]\nPath=/home/user/a.png\nDeletionDate=2026-11-15T21:04:33\n");
  const TimeZone behind("XXX5:30");
  const Date moment = *dateFromISO8601("2026-01-01T03:00:00Z") + std::chrono::milliseconds(999);
  EXPECT_TRUE(trashInfoText("/a", moment).ends_with("DeletionDate=2025-12-31T21:30:00\n"));
}

TEST(TrashInfo, everyByteOutsideOfPlainTextIsEscaped) {
  EXPECT_NE(noteOf("/a b/100%/\n[x]=\xFF\xC3\xA4.png").find("Path=/a%20b/100%25/%0A%5Bx%5D%3D%FF%C3%A4.png\n"),
            std::string::npos);
}

RC_GTEST_PROP(TrashInfo, anyPathIsOneLineAndReadsBackByteForByte, (const std::string& path)) {
  const std::string note = noteOf(path);
  const std::size_t begin = note.find("Path=") + 5;
  const std::string line = note.substr(begin, note.find('\n', begin) - begin);
  RC_ASSERT(note.substr(begin + line.size()) == "\nDeletionDate=2026-11-15T21:04:33\n");
  std::string read;
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (line[i] == '%') {
      read += static_cast<char>(std::stoi(line.substr(i + 1, 2), nullptr, 16));
      i += 2;
    } else {
      RC_ASSERT(line[i] > ' ' && line[i] <= '~');
      read += line[i];
    }
  }
  RC_ASSERT(read == path);
}

TEST(NameInTrash, isTheFilesOwnAtFirstAndThenNumbered) {
  EXPECT_EQ(nameInTrash("a.png", 1, kLongest), "a.png");
  EXPECT_EQ(nameInTrash("a.png", 2, kLongest), "a.2.png");
  EXPECT_EQ(nameInTrash("a.tar.gz", 3, kLongest), "a.tar.3.gz");
  EXPECT_EQ(nameInTrash("a", 2, kLongest), "a.2");
  EXPECT_EQ(nameInTrash(".hidden", 2, kLongest), ".hidden.2");
  EXPECT_EQ(nameInTrash("new\nline \xFF.png", 2, kLongest), "new\nline \xFF.2.png");
}

TEST(NameInTrash, laterOnesAreRandom) {
  std::set<std::string> names;
  for (int i = 0; i < 100; ++i) {
    const std::string name = nameInTrash("a.png", 30, kLongest);
    EXPECT_TRUE(name.starts_with("a.") && name.ends_with(".png"));
    names.insert(name);
  }
  EXPECT_EQ(names.size(), 100U);
}

TEST(NameInTrash, aLongOneIsCutAndKeepsItsExtension) {
  EXPECT_EQ(nameInTrash(std::string(251, 'x') + ".png", 1, kLongest), std::string(241, 'x') + ".png");
  EXPECT_EQ(nameInTrash(std::string(251, 'x') + ".png", 2, kLongest), std::string(239, 'x') + ".2.png");
  EXPECT_EQ(nameInTrash(std::string(255, 'x'), 1, kLongest), std::string(245, 'x'));
  EXPECT_EQ(nameInTrash("a." + std::string(253, 'x'), 2, kLongest), "a." + std::string(241, 'x') + ".2");
}

TEST(NameInTrash, noCharacterIsCutInTwo) {
  std::string umlauts;
  for (int i = 0; i < 125; ++i) {
    umlauts += "\xC3\xA4";
  }
  EXPECT_EQ(nameInTrash(umlauts + ".png", 1, kLongest), umlauts.substr(0, 240) + ".png");
  EXPECT_EQ(nameInTrash("x" + umlauts + ".png", 1, kLongest), "x" + umlauts.substr(0, 240) + ".png");
  // What is no text at all is cut anywhere.
  EXPECT_EQ(nameInTrash(std::string(255, '\xA4'), 1, kLongest), std::string(245, '\xA4'));
}

RC_GTEST_PROP(NameInTrash, isNeverLongerThanTheFolderTakesNorEmpty, ()) {
  const auto name = *rc::gen::nonEmpty(rc::gen::container<std::string>(rc::gen::nonZero<char>()));
  const int attempt = *rc::gen::inRange(1, 31);
  const std::size_t longest = *rc::gen::inRange<std::size_t>(100, 246);
  std::string repeated;
  while (repeated.size() + name.size() <= 255) {
    repeated += name;
  }
  const std::string given = repeated.empty() ? name.substr(0, 255) : repeated;
  const std::string inTrash = nameInTrash(given, attempt, longest);
  RC_ASSERT(!inTrash.empty());
  RC_ASSERT(inTrash.size() <= longest);
  RC_ASSERT(attempt > 1 || given.size() > longest || inTrash == given);
}

TEST(TrashInfo, belongsToWhatLiesDirectlyInATrash) {
  const std::string user = std::to_string(::geteuid());
  EXPECT_EQ(trashInfoOf(FileURL("/home/user/.local/share/Trash/files/a.png")),
            FileURL("/home/user/.local/share/Trash/info/a.png.trashinfo"));
  EXPECT_EQ(trashInfoOf(FileURL("/media/x/.Trash-" + user + "/files/a")),
            FileURL("/media/x/.Trash-" + user + "/info/a.trashinfo"));
  EXPECT_EQ(trashInfoOf(FileURL("/media/x/.Trash/" + user + "/files/a")),
            FileURL("/media/x/.Trash/" + user + "/info/a.trashinfo"));
}

TEST(TrashInfo, thereIsNoneForFilesElsewhere) {
  for (const std::string place :
       {"/home/user/a.png", "/home/user/files/a.png", "/t/Trash/a.png", "/t/Trash/info/a.png", "/t/Trash/files/b/a.png",
        "/t/Trashes/files/a.png", "/t/.Trash/files/a.png", "/t/.Trash-4711999/files/a.png", "a.png", "/"}) {
    EXPECT_EQ(trashInfoOf(FileURL(place)), std::nullopt) << place;
  }
}

}  // namespace
}  // namespace quenlio
