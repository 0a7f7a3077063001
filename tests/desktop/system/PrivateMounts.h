// A child process with file systems of its own and the rights of an ordinary user: what is mounted in it is seen by
// nobody else and gone with it, and modes of files hold for it, also when the tests run as root.
#pragma once

#include <cstdio>
#include <fcntl.h>
#include <functional>
#include <grp.h>
#include <gtest/gtest.h>
#include <linux/capability.h>
#include <sched.h>
#include <string>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/desktop/system/TemporaryFolder.h"

namespace quenlio {

// Who the ordinary user is.
inline uid_t ordinaryUser() {
  constexpr uid_t nobody = 65534;
  return ::geteuid() == 0 ? nobody : ::geteuid();
}

inline void giveToOrdinaryUser(const FileURL& url) {
  check(::lchown(url.path().c_str(), ordinaryUser(), static_cast<gid_t>(-1)) == 0, url.path());
}

// An empty folder of the ordinary user's.
inline FileURL makeOrdinaryFolder(const FileURL& url, mode_t mode = 0755) {
  check(::mkdir(url.path().c_str(), 0755) == 0, url.path());
  check(::chmod(url.path().c_str(), mode) == 0, url.path());
  giveToOrdinaryUser(url);
  return url;
}

// A file system in memory, its top a folder of the ordinary user's. For the preparation only.
inline void mountMemory(const FileURL& url, const std::string& options = "size=64m") {
  check(::mkdir(url.path().c_str(), 0755) == 0 || errno == EEXIST, url.path());
  check(::mount("tmpfs", url.path().c_str(), "tmpfs", 0, (options + ",mode=0755").c_str()) == 0, url.path());
  giveToOrdinaryUser(url);
}

// The folder once more, at another place: one device, two mounts. For the preparation only.
inline void mountAgain(const FileURL& folder, const FileURL& url) {
  check(::mkdir(url.path().c_str(), 0755) == 0, url.path());
  check(::mount(folder.path().c_str(), url.path().c_str(), nullptr, MS_BIND, nullptr) == 0, url.path());
}

inline void makeReadOnly(const FileURL& mounted) {
  check(::mount(nullptr, mounted.path().c_str(), nullptr, MS_REMOUNT | MS_BIND | MS_RDONLY, nullptr) == 0,
        mounted.path());
}

namespace privatemounts {

inline void writeOnce(const char* path, const std::string& text) {
  const UniqueFd fd(::open(path, O_WRONLY | O_CLOEXEC));
  check(fd && ::write(fd.get(), text.data(), text.size()) == static_cast<ssize_t>(text.size()), path);
}

inline void enter() {
  const uid_t user = ::geteuid();
  const gid_t group = ::getegid();
  check(::unshare(user == 0 ? CLONE_NEWNS : CLONE_NEWNS | CLONE_NEWUSER) == 0, "unshare");
  if (user != 0) {
    writeOnce("/proc/self/setgroups", "deny");
    writeOnce("/proc/self/uid_map", std::to_string(user) + " " + std::to_string(user) + " 1");
    writeOnce("/proc/self/gid_map", std::to_string(group) + " " + std::to_string(group) + " 1");
  }
  check(::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0, "mounts of our own");
}

inline void becomeOrdinary() {
  if (::geteuid() == 0) {
    const uid_t user = ordinaryUser();
    check(::setgroups(0, nullptr) == 0 && ::setresgid(user, user, user) == 0 && ::setresuid(user, user, user) == 0,
          "an ordinary user's rights");
    return;
  }
  __user_cap_header_struct header{.version = _LINUX_CAPABILITY_VERSION_3, .pid = 0};
  __user_cap_data_struct none[2]{};
  check(::syscall(SYS_capset, &header, none) == 0, "no more rights than before");
}

}  // namespace privatemounts

// What fails in the child fails the test. The folders that the body works in must be open to all.
inline void withPrivateMounts(const std::function<void()>& prepare, const std::function<void()>& body) {
  std::fflush(nullptr);
  const pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    try {
      privatemounts::enter();
      prepare();
      privatemounts::becomeOrdinary();
      body();
    } catch (const std::exception& problem) {
      ADD_FAILURE() << problem.what();
    }
    std::fflush(nullptr);
    ::_exit(testing::Test::HasFailure() ? 1 : 0);
  }
  int status = -1;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "the failures are told above";
}

}  // namespace quenlio
