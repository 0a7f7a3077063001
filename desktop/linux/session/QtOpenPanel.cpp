#include "desktop/linux/session/QtOpenPanel.h"

#include <QtCore/QFile>
#include <QtWidgets/QFileDialog>

namespace quenlio {
namespace {

QString mimeTypeOf(ContentType type) {
  switch (type) {
    case ContentType::png:
      return QStringLiteral("image/png");
    case ContentType::jpeg:
      return QStringLiteral("image/jpeg");
    case ContentType::heic:
      return QStringLiteral("image/heif");
    case ContentType::tiff:
      return QStringLiteral("image/tiff");
    case ContentType::pdf:
      return QStringLiteral("application/pdf");
  }
  return {};
}

void setUp(QFileDialog& dialog, const OpenPanelRequest& request) {
  // These dialogs have no place for a message but their title.
  dialog.setWindowTitle(QString::fromStdString(request.message.empty() ? request.title : request.message));
  if (!request.prompt.empty()) {
    dialog.setLabelText(QFileDialog::Accept, QString::fromStdString(request.prompt));
  }
  dialog.setAcceptMode(QFileDialog::AcceptOpen);
  if (request.canChooseDirectories && !request.canChooseFiles) {
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly);
  } else {
    dialog.setFileMode(request.allowsMultipleSelection ? QFileDialog::ExistingFiles : QFileDialog::ExistingFile);
  }
  if (!request.allowedContentTypes.empty()) {
    QStringList types;
    for (const ContentType type : request.allowedContentTypes) {
      types << mimeTypeOf(type);
    }
    dialog.setMimeTypeFilters(types);
  }
  if (request.directoryURL) {
    dialog.setDirectory(QFile::decodeName(QByteArray::fromStdString(request.directoryURL->path())));
  }
}

}  // namespace

std::optional<FileURL> QtOpenPanel::runModal(const OpenPanelRequest& request) {
  QFileDialog dialog;
  setUp(dialog, request);
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) {
    return std::nullopt;
  }
  return FileURL(QFile::encodeName(dialog.selectedFiles().constFirst()).toStdString());
}

}  // namespace quenlio
