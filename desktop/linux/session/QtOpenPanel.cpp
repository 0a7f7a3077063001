#include "desktop/linux/session/QtOpenPanel.h"

#include <QtCore/QFile>
#include <QtWidgets/QFileDialog>

namespace quenlio {
namespace {

struct TypeFilter {
  const char* name;
  const char* patterns;
};

TypeFilter filterOf(ContentType type) {
  switch (type) {
    case ContentType::png:
      return {"PNG", "*.png"};
    case ContentType::jpeg:
      return {"JPEG", "*.jpg *.jpeg"};
    case ContentType::heic:
      return {"HEIC", "*.heic"};
    case ContentType::tiff:
      return {"TIFF", "*.tiff"};
    case ContentType::pdf:
      return {"PDF", "*.pdf"};
  }
  return {};
}

QString nameFilter(const QString& name, const QString& patterns) {
  return QStringLiteral("%1 (%2)").arg(name, patterns);
}

// All types together first, since a dialog starts with the first filter; then each alone.
QStringList nameFilters(const std::vector<ContentType>& types) {
  QStringList single;
  QStringList patterns;
  for (const ContentType type : types) {
    const TypeFilter filter = filterOf(type);
    patterns << QString::fromLatin1(filter.patterns);
    single << nameFilter(QString::fromLatin1(filter.name), patterns.back());
  }
  return types.size() < 2 ? single
                          : QStringList(nameFilter(QStringLiteral("Supported Files"), patterns.join(' '))) + single;
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
    dialog.setNameFilters(nameFilters(request.allowedContentTypes));
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
