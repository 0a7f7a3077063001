// A program's entry, and the commands that open files with it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "desktop/linux/system/DesktopEntry.h"
#include "desktop/linux/system/FileURI.h"
#include "desktop/linux/system/KeyFile.h"

namespace quenlio {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const FileURL kOne("/shots/one two.png");
const FileURL kTwo("/shots/ä\xff\n.png");

std::vector<Command> commands(const std::string& exec, const std::vector<FileURL>& files = {kOne, kTwo}) {
  DesktopEntry entry;
  entry.exec = exec;
  entry.name = "A Viewer";
  entry.icon = "viewer";
  entry.file = FileURL("/apps/viewer.desktop");
  return commandsToOpen(entry, files);
}

TEST(FileURI, keepsEveryByteOfAPath) {
  EXPECT_EQ(fileURI(kOne), "file:///shots/one%20two.png");
  EXPECT_EQ(fileURI(kTwo), "file:///shots/%C3%A4%FF%0A.png");
  EXPECT_EQ(fileURI(FileURL("/a%b#c?d&e+f~g")), "file:///a%25b%23c%3Fd%26e%2Bf~g");
  EXPECT_EQ(uriList({kOne, FileURL("/b")}), "file:///shots/one%20two.png\r\nfile:///b\r\n");
  EXPECT_EQ(pathLines({kOne, FileURL("/b")}), "/shots/one two.png\n/b");
}

TEST(KeyFile, readsTheKeysOfOneGroup) {
  const auto keys = keyFileGroup(
      "before=1\n[Other]\nName=no\n[Group]\n# Name=comment\n Name = a b \r\nEmpty=\nText\n"
      "Name[de]=x=y\n[Later]\nName=no",
      "Group");
  EXPECT_THAT(keys,
              ElementsAre(testing::Pair("Empty", ""), testing::Pair("Name", "a b"), testing::Pair("Name[de]", "x=y")));
}

TEST(KeyFile, undoesEscapesAndDividesLists) {
  EXPECT_EQ(unescaped("a\\sb\\\\n\\n\\t\\r\\;\\"), "a b\\n\n\t\r;\\");
  EXPECT_THAT(listOf("a;b\\;c;;d"), ElementsAre("a", "b;c", "d"));
  EXPECT_THAT(listOf(""), IsEmpty());
}

TEST(DesktopEntry, isReadInTheUsersLanguage) {
  const std::string text =
      "[Desktop Entry]\nType=Application\nName=Viewer\nName[de]=Betrachter\nName[de_AT]=Schauer\n"
      "Name[sr@latin]=Pregledac\nExec=viewer\\s%F\nIcon=eye\nTryExec=viewer\nPath=/tmp\n";
  const std::pair<const char*, const char*> names[] = {{"", "Viewer"},
                                                       {"C", "Viewer"},
                                                       {"en_US.UTF-8", "Viewer"},
                                                       {"de", "Betrachter"},
                                                       {"de_DE.UTF-8", "Betrachter"},
                                                       {"de_AT.UTF-8", "Schauer"},
                                                       {"sr_RS.UTF-8@latin", "Pregledac"},
                                                       {"sr_RS", "Viewer"}};
  for (const auto& [locale, name] : names) {
    const auto entry = parseDesktopEntry(text, locale);
    ASSERT_TRUE(entry) << locale;
    EXPECT_EQ(entry->name, name) << locale;
  }
  const auto entry = parseDesktopEntry(text, "C");
  EXPECT_EQ(entry->exec, "viewer %F");
  EXPECT_EQ(entry->icon, "eye");
  EXPECT_EQ(entry->tryExec, "viewer");
  EXPECT_EQ(entry->workingDirectory, "/tmp");
  EXPECT_FALSE(entry->isHidden || entry->isLeftOutOfMenus || entry->runsInTerminal);
}

TEST(DesktopEntry, isOnlyAProgramsEntry) {
  EXPECT_FALSE(parseDesktopEntry("", "C"));
  EXPECT_FALSE(parseDesktopEntry("[Desktop Entry]\nType=Link\nName=x\nURL=y\n", "C"));
  EXPECT_FALSE(parseDesktopEntry("[Desktop Action new]\nType=Application\nName=x\n", "C"));
}

TEST(DesktopEntry, belongsOnTheDesktopsThatItNames) {
  const auto isShown = [](const std::string& line, const std::vector<std::string>& desktops) {
    return parseDesktopEntry("[Desktop Entry]\nType=Application\n" + line, "C")->isShownIn(desktops);
  };
  EXPECT_TRUE(isShown("", {}));
  EXPECT_TRUE(isShown("OnlyShowIn=XFCE;MATE;\n", {"X", "MATE"}));
  EXPECT_FALSE(isShown("OnlyShowIn=XFCE;MATE;\n", {"KDE"}));
  EXPECT_FALSE(isShown("OnlyShowIn=XFCE;\n", {}));
  EXPECT_FALSE(isShown("NotShowIn=KDE;\n", {"KDE"}));
  EXPECT_TRUE(isShown("NotShowIn=KDE;\n", {"XFCE"}));
}

TEST(CommandWords, followQuotesAndEscapes) {
  EXPECT_THAT(*commandWords("viewer  --a=b\t%F "), ElementsAre("viewer", "--a=b", "%F"));
  EXPECT_THAT(*commandWords(R"("a b" "c\"d" "e\\f" "g\h" "")"), ElementsAre("a b", "c\"d", "e\\f", "g\\h", ""));
  EXPECT_THAT(*commandWords(R"(env A="x y" 'p $q' r\ s)"), ElementsAre("env", "A=x y", "p $q", "r s"));
  EXPECT_THAT(*commandWords("\"$HOME\" `ls` ; rm"), ElementsAre("$HOME", "`ls`", ";", "rm"));
  EXPECT_FALSE(commandWords("viewer \"open"));
}

TEST(CommandsToOpen, giveAllFilesToAProgramThatTakesThem) {
  EXPECT_THAT(commands("viewer --new %F"), ElementsAre(Command{"viewer", "--new", kOne.path(), kTwo.path()}));
  EXPECT_THAT(commands("viewer %U"),
              ElementsAre(Command{"viewer", "file:///shots/one%20two.png", "file:///shots/%C3%A4%FF%0A.png"}));
}

TEST(CommandsToOpen, startAProgramThatTakesOneFileForEach) {
  EXPECT_THAT(commands("viewer --open=%f"),
              ElementsAre(Command{"viewer", "--open=" + kOne.path()}, Command{"viewer", "--open=" + kTwo.path()}));
  EXPECT_THAT(commands("viewer %u"), ElementsAre(Command{"viewer", "file:///shots/one%20two.png"},
                                                 Command{"viewer", "file:///shots/%C3%A4%FF%0A.png"}));
}

TEST(CommandsToOpen, giveFilesAlsoToAProgramThatSaysNothingOfThem) {
  EXPECT_THAT(commands("viewer", {kOne}), ElementsAre(Command{"viewer", kOne.path()}));
}

TEST(CommandsToOpen, replaceTheOtherCodes) {
  EXPECT_THAT(
      commands("viewer %i %c %k 100%% %d%D%n%N%v%m %m %f", {kOne}),
      ElementsAre(Command{"viewer", "--icon", "viewer", "A Viewer", "/apps/viewer.desktop", "100%", kOne.path()}));
}

TEST(CommandsToOpen, areNoneForALineThatCannotBeRead) {
  EXPECT_THAT(commands("viewer \"%f"), IsEmpty());
  EXPECT_THAT(commands(""), IsEmpty());
  EXPECT_THAT(commands("viewer %f", {}), IsEmpty());
}

}  // namespace
}  // namespace quenlio
