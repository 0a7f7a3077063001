// The one rule of when a file is finished. The event stream and the listing of a folder both ask here, so that no part
// of the program ever sees a file while another program is still writing it.
//
// A file is finished when it is complete by its own format (told by its contents, whatever its name is), or when
// nothing has touched it for two seconds. An empty file is never finished: a writer may close it empty first and write
// it later. That a file was closed proves nothing.
//
// Any thread. Of a file that was touched within the two seconds a bounded number of bytes is read, at the head and the
// tail and where the format's own tables point; an older one is not even opened.
#pragma once

#include <optional>

#include "core/base/Date.h"
#include "core/base/FileURL.h"

#include "desktop/linux/system/RegularFile.h"

namespace quenlio {

enum class Completeness { complete, notYet };

struct FinishedState {
  Completeness completeness = Completeness::notYet;
  // For a file that is not finished: how long until it has been left alone for long enough, more than zero and at most
  // two seconds. Nothing when time alone will not finish it: it is empty, gone or no regular file.
  std::optional<Seconds> untilSettled;
  // The state of the file that was judged; nothing when there is no regular file.
  std::optional<FileStamp> stamp;

  [[nodiscard]] bool isFinished() const { return completeness == Completeness::complete; }
};

inline constexpr Seconds kSettlingTime{2.0};

// `now` is the moment on the clock that file times are taken from. Links are followed.
[[nodiscard]] FinishedState finishedState(const FileURL& url, Date now);

// The same for a name in an open folder.
[[nodiscard]] FinishedState finishedState(int folder, const char* name, Date now);

// How long until the two seconds are over, counted from the later of both times; zero or less when they are. A time
// ahead of now says nothing about the last touch (a copied file may carry any modification time), so the other one
// decides; when both are ahead, the clock was set back, and the answer is the whole two seconds.
[[nodiscard]] Seconds untilSettled(Date modified, Date changed, Date now);

}  // namespace quenlio
