#include "desktop/linux/system/FinishedFile.h"

#include <algorithm>
#include <fcntl.h>

#include "desktop/linux/system/CompleteFormats.h"

namespace quenlio {
namespace {

// What its size and its times alone tell.
FinishedState stateByTimes(const struct stat& status, Date now) {
  FinishedState state;
  state.stamp = stampOf(status);
  if (status.st_size == 0) {
    return state;
  }
  const Seconds rest = untilSettled(state.stamp->modified, state.stamp->changed, now);
  if (rest <= Seconds::zero()) {
    state.completeness = Completeness::complete;
  } else {
    state.untilSettled = rest;
  }
  return state;
}

}  // namespace

Seconds untilSettled(Date modified, Date changed, Date now) {
  if (modified > now && changed > now) {
    return kSettlingTime;
  }
  const Date touched = modified > now ? changed : changed > now ? modified : std::max(modified, changed);
  return kSettlingTime - Seconds(now - touched);
}

FinishedState finishedState(int folder, const char* name, Date now) {
  struct stat status {};
  if (::fstatat(folder, name, &status, 0) != 0 || !S_ISREG(status.st_mode)) {
    return {};
  }
  FinishedState state = stateByTimes(status, now);
  if (state.isFinished()) {
    return state;  // without opening it: a folder may hold thousands of old captures
  }
  const UniqueFd fd = openRegularFile(folder, name);
  if (!fd) {
    return state;
  }
  // The state is read before the contents: what is written while they are being read leaves the stamp out of date, and
  // the change that caused it is looked at in its turn.
  if (::fstat(fd.get(), &status) != 0) {
    return {};
  }
  state = stateByTimes(status, now);
  FileSource source(fd.get(), status.st_size);
  if (isCompleteByFormat(source)) {
    state.completeness = Completeness::complete;
    state.untilSettled.reset();
  }
  return state;
}

FinishedState finishedState(const FileURL& url, Date now) {
  return finishedState(AT_FDCWD, url.path().c_str(), now);
}

}  // namespace quenlio
