// Other programs that are started beside the tests: for their output, as partners of a drag, as owners of the
// clipboard. The event loop runs while they are waited for, since they may want something of this program.
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QProcess>
#include <QtCore/QRect>
#include <QtCore/QStringList>
#include <optional>
#include <vector>

#include "core/base/FileURL.h"

namespace quenlio {

// What the program writes until it ends; nothing unless it ends with 0 in time.
[[nodiscard]] std::optional<QByteArray> outputOf(const QString& program, const QStringList& arguments);

// What another program reads from the clipboard under this name; nothing when it is not offered.
[[nodiscard]] std::optional<QByteArray> pasted(const char* type);
// The names of all that is offered.
[[nodiscard]] QStringList offeredTypes();

// This test program once more, in one of the parts that main() knows. It is ended with this object.
class Partner {
 public:
  explicit Partner(const QStringList& part);
  ~Partner();
  Partner(const Partner&) = delete;
  Partner& operator=(const Partner&) = delete;

  // The next line that it writes, without its end; nothing when none comes in time.
  [[nodiscard]] std::optional<QByteArray> nextLine();
  // Asks it to end and waits until it has, for at most that long; true when it ended with 0.
  [[nodiscard]] bool terminate(int milliseconds = 10'000);
  [[nodiscard]] QProcess& process() { return process_; }

 private:
  QProcess process_;
};

// The parts. Each returns the exit code.

// A window at this place that takes whatever files are dropped on it. Writes "ready", then for each drop a line with
// the action that was offered and the addresses, a space between each.
int acceptDrops(const QRect& geometry);
// Puts a file on the clipboard, writes "ready", and ends when it is asked to.
int copyAndStay(const FileURL& file);

}  // namespace quenlio
