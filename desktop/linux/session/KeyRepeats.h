// Tells the repeats of a key that is held down from presses. The server sends a release and a press for each, both of
// one moment, and Qt takes them for what they are only when it finds both waiting; now and then it finds the release
// alone. Nobody's finger lets go of a key and presses it in the same millisecond. Main thread.
#pragma once

#include <QtGui/QKeyEvent>

namespace quenlio {

class KeyRepeats {
 public:
  // A release, or a press, on its way to a window. True for a press that is a repeat and does not say so.
  bool hides(const QKeyEvent& key);
  // Sends the press to the window once more, as the repeat that it is.
  static void sendAsRepeat(const QKeyEvent& press, QObject& window);

 private:
  quint32 released_ = 0;  // the key
  quint64 releasedAt_ = 0;
};

}  // namespace quenlio
