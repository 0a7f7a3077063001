// Asking the desktop's settings store through its own program.
#include <array>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>

#include "desktop/linux/system/ChildProcess.h"
#include "desktop/linux/system/GSettings.h"

#include "tests/desktop/system/TemporaryFolder.h"

namespace quenlio {
namespace {

namespace fs = std::filesystem;

TEST(GSettings, readsAPrintedString) {
  EXPECT_EQ(stringOfVariant("''\n"), "");
  EXPECT_EQ(stringOfVariant("'/a b'\n"), "/a b");
  EXPECT_EQ(stringOfVariant("\"it's\"\n"), "it's");
  EXPECT_EQ(stringOfVariant(R"('a\'b\\c\nd')"), "a'b\\c\nd");
  EXPECT_EQ(stringOfVariant(R"('\u00e9\u20ac\U0001f600')"), "é€😀");
  EXPECT_EQ(stringOfVariant(R"('\u12')"), "u12");
  EXPECT_EQ(stringOfVariant(R"('\')"), "\\");
  for (const char* other : {"", "\n", "true\n", "'", "'open", "@as []", "nothing"}) {
    EXPECT_EQ(stringOfVariant(other), std::nullopt) << other;
  }
}

// The desktop's real program, with a store of its own.
TEST(GSettings, asksTheRealProgram) {
  const TemporaryFolder folder;
  fs::create_directories((folder / "glib-2.0/settings").path());
  writeFile(folder / "glib-2.0/settings/keyfile",
            "[org/gnome/gnome-screenshot]\nauto-save-directory='file:///it\\'s'\n");
  ASSERT_EQ(::setenv("GSETTINGS_BACKEND", "keyfile", 1), 0);
  ASSERT_EQ(::setenv("XDG_CONFIG_HOME", folder.url().path().c_str(), 1), 0);
  const auto printed = gsettingsGet("org.gnome.gnome-screenshot", "auto-save-directory");
  ASSERT_TRUE(printed);
  EXPECT_EQ(stringOfVariant(*printed), "file:///it's");
  EXPECT_EQ(gsettingsGet("org.example.no-such-schema", "key"), std::nullopt);
}

TEST(ChildProcess, readsOutputAsItComes) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(15);
  auto child = ChildProcess::start({"printf", "abcdef"});
  ASSERT_TRUE(child);
  std::array<char, 2> head{};
  EXPECT_TRUE(child->read(head.data(), head.size(), deadline));
  EXPECT_EQ(std::string(head.data(), head.size()), "ab");
  EXPECT_EQ(child->readToEnd(100, deadline), "cdef");
}

TEST(ChildProcess, boundsOutputAndTime) {
  const auto now = std::chrono::steady_clock::now();
  EXPECT_FALSE(ChildProcess::start({"yes"})->readToEnd(10'000, now + std::chrono::seconds(15)));
  EXPECT_FALSE(ChildProcess::start({"sleep", "60"})->readToEnd(10, now + std::chrono::milliseconds(100)));
  EXPECT_LT(std::chrono::steady_clock::now() - now, std::chrono::seconds(14));
  EXPECT_FALSE(ChildProcess::start({"/no/such/program"}));
  EXPECT_FALSE(ChildProcess::start({}));
}

}  // namespace
}  // namespace quenlio
