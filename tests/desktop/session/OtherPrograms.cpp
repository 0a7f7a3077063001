#include "tests/desktop/session/OtherPrograms.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QMimeData>
#include <QtGui/QDragEnterEvent>
#include <QtGui/QDropEvent>
#include <QtGui/QWindow>
#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>
#include <cstdio>

#include "desktop/linux/session/MainQueue.h"
#include "desktop/linux/session/QtPasteboard.h"
#include "desktop/linux/session/TerminationSignals.h"
#include "desktop/render/FileImages.h"

#include "tests/desktop/WaitUntil.h"

namespace quenlio {
namespace {

void writeLine(const QByteArray& line) {
  std::printf("%s\n", line.constData());
  std::fflush(stdout);
}

class DropTarget final : public QWidget {
 public:
  DropTarget() { setAcceptDrops(true); }

 private:
  // The title tells other programs that a drag has arrived: a release before that would drop nothing.
  void dragEnterEvent(QDragEnterEvent* event) override {
    setWindowTitle(QStringLiteral("over"));
    event->acceptProposedAction();
  }
  void dragLeaveEvent(QDragLeaveEvent* /*event*/) override { setWindowTitle(QStringLiteral("left")); }
  void dragMoveEvent(QDragMoveEvent* event) override {
    event->acceptProposedAction();
    writeLine("over");
  }
  void dropEvent(QDropEvent* event) override {
    setWindowTitle(QStringLiteral("dropped on"));
    const bool isCopy = event->proposedAction() == Qt::CopyAction && event->possibleActions() == Qt::CopyAction;
    QByteArray line = isCopy ? "copy" : "other";
    for (const QByteArray& address : event->mimeData()->data(QStringLiteral("text/uri-list")).split('\n')) {
      line += address.trimmed().isEmpty() ? QByteArray() : " " + address.trimmed();
    }
    line += " | " + event->mimeData()->data(QStringLiteral("text/plain")).toPercentEncoding();
    event->acceptProposedAction();
    writeLine(line);
  }
};

}  // namespace

std::optional<QByteArray> outputOf(const QString& program, const QStringList& arguments) {
  QProcess process;
  process.start(program, arguments);
  const bool isOver = waitUntil([&process] { return process.state() == QProcess::NotRunning; });
  const bool isGood = isOver && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
  return isGood ? std::optional(process.readAllStandardOutput()) : std::nullopt;
}

std::optional<QByteArray> pasted(const char* type) {
  return outputOf(QStringLiteral("xclip"), {QStringLiteral("-selection"), QStringLiteral("clipboard"),
                                            QStringLiteral("-o"), QStringLiteral("-t"), QString::fromLatin1(type)});
}

QStringList offeredTypes() {
  return QString::fromLatin1(pasted("TARGETS").value_or(QByteArray())).split(u'\n', Qt::SkipEmptyParts);
}

Partner::Partner(const QStringList& part) {
  process_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
  process_.start(QCoreApplication::applicationFilePath(), part);
}

Partner::~Partner() {
  process_.kill();
  process_.waitForFinished();
}

std::optional<QByteArray> Partner::nextLine() {
  return waitUntil([this] { return process_.canReadLine(); }) ? std::optional(process_.readLine().chopped(1))
                                                              : std::nullopt;
}

bool Partner::terminate(int milliseconds) {
  process_.terminate();
  return waitUntil([this] { return process_.state() == QProcess::NotRunning; },
                   std::chrono::milliseconds(milliseconds)) &&
         process_.exitStatus() == QProcess::NormalExit && process_.exitCode() == 0;
}

int acceptDrops(const QRect& geometry) {
  DropTarget target;
  target.setWindowFlag(Qt::FramelessWindowHint);
  target.setGeometry(geometry);
  target.show();
  if (!waitUntil([&] { return target.geometry() == geometry && target.windowHandle()->isExposed(); })) {
    return 1;
  }
  writeLine("ready");
  return QApplication::exec();
}

int copyAndStay(const FileURL& file) {
  MainQueue scheduler;
  QtPasteboard pasteboard(scheduler);
  const TerminationSignals signals([] { QCoreApplication::exit(0); });
  const FileImages images{ImageDecoder(ChildDecoder(FileURL("/nowhere")))};
  pasteboard.writeObjects({.image = images.imageWithContentsOfFile(file), .fileURLs = {file}});
  writeLine("ready");
  return QApplication::exec();
}

}  // namespace quenlio
