#include "desktop/linux/session/CopySaver.h"

#include <QtCore/QFile>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QMessageBox>
#include <cstdio>
#include <optional>
#include <string>

#include "core/base/Uuid.h"
#include "core/library/UniqueNames.h"

namespace quenlio {
namespace {

struct Copy {
  FileURL from;
  FileURL to;
  bool mayReplace = false;
};

std::optional<std::string> replace(const Copy& copy, FileManager& files) {
  const FileURL hidden = copy.to.parent().appending(".quenlio-copy-" + Uuid::random().string());
  if (const auto made = files.copyItemAtURL(copy.from, hidden); !made.ok()) {
    return made.error().localizedDescription;
  }
  if (std::rename(hidden.path().c_str(), copy.to.path().c_str()) != 0) {
    (void)files.removeItemAtURL(hidden);
    return "The file “" + copy.to.lastPathComponent() + "” could not be replaced.";
  }
  return std::nullopt;
}

// Why a copy could not be made, if it could not.
std::optional<std::string> make(const Copy& copy, FileManager& files) {
  if (copy.from.standardized() == copy.to.standardized()) {
    return std::nullopt;
  }
  if (copy.mayReplace) {
    return replace(copy, files);
  }
  const auto made = files.copyItemAtURL(copy.from, copy.to);
  return made.ok() ? std::nullopt : std::optional(made.error().localizedDescription);
}

void tell(const std::string& problem) {
  auto* box = new QMessageBox(QMessageBox::Warning, QStringLiteral("Save a Copy"), QString::fromStdString(problem),
                              QMessageBox::Ok);
  box->setAttribute(Qt::WA_DeleteOnClose);
  box->show();
}

FileURL chosen(const QFileDialog& dialog) {
  return FileURL(QFile::encodeName(dialog.selectedFiles().value(0)).toStdString());
}

void setUp(QFileDialog& dialog, const std::vector<FileURL>& urls) {
  dialog.setAcceptMode(urls.size() == 1 ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
  if (urls.size() == 1) {
    dialog.setWindowTitle(QStringLiteral("Save a Copy"));
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.selectFile(QFile::decodeName(QByteArray::fromStdString(urls.front().path())));
  } else {
    dialog.setWindowTitle(QStringLiteral("Save %1 Copies").arg(urls.size()));
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly);
    dialog.setDirectory(QFile::decodeName(QByteArray::fromStdString(urls.front().parent().path())));
    dialog.setLabelText(QFileDialog::Accept, QStringLiteral("Save"));
  }
}

}  // namespace

CopySaver::CopySaver(FileManager& files, Scheduler& scheduler) : files_(files), scheduler_(scheduler) {}

CopySaver::~CopySaver() = default;

void CopySaver::save(const std::vector<FileURL>& urls) {
  dialog_ = std::make_unique<QFileDialog>();
  setUp(*dialog_, urls);
  const std::function<void(int)> finished = weak_.bind(
      [urls](CopySaver& self, int result) { self.closed(urls, result == static_cast<int>(QDialog::Accepted)); });
  QObject::connect(dialog_.get(), &QDialog::finished, dialog_.get(), finished);
  dialog_->show();
  dialog_->raise();
  dialog_->activateWindow();
}

void CopySaver::closed(const std::vector<FileURL>& urls, bool isAccepted) {
  const FileURL place = chosen(*dialog_);
  dialog_.release()->deleteLater();  // it is just calling us
  if (!isAccepted || place.path().empty()) {
    return;
  }
  std::vector<Copy> copies;
  for (const FileURL& url : urls) {
    // What is there under the one name, the dialog has asked about.
    copies.push_back(urls.size() == 1 ? Copy{url, place, files_.fileExistsAtPath(place)}
                                      : Copy{url, place.appending(url.lastPathComponent())});
  }
  scheduler_.detached(QualityOfService::userInitiated,
                      [copies = std::move(copies), &files = files_, &scheduler = scheduler_] {
                        const bool inFolder = copies.size() > 1;
                        for (Copy copy : copies) {
                          if (inFolder) {
                            copy.to = uniqueRenameURL(FileURL(), copy.to, files);
                          }
                          if (const auto problem = make(copy, files)) {
                            scheduler.post([problem] { tell(*problem); });
                            return;
                          }
                        }
                      });
}

}  // namespace quenlio
