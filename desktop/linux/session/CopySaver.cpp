#include "desktop/linux/session/CopySaver.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QMessageBox>
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <optional>
#include <string>

#include "core/base/Uuid.h"
#include "core/library/UniqueNames.h"

namespace quenlio {
namespace {

struct Copy {
  FileURL from;
  FileURL to;
  std::optional<FileIdentity> replaced = {};  // the file that the user has agreed to replace
};

QString shown(const std::string& bytes) {
  return QFile::decodeName(QByteArray::fromStdString(bytes));
}

std::string bytesOf(const QString& text) {
  return QFile::encodeName(text).toStdString();
}

// What is shown under that name in the folder, which need not be spelt like that.
FileURL entryShownAs(const QString& name, const FileURL& folder, const FileManager& files) {
  FileURL spelt = folder.appending(bytesOf(name));
  if (files.fileExistsAtPath(spelt)) {
    return spelt;
  }
  const auto entries = files.contentsOfDirectoryAtURL(folder, HiddenFiles::include);
  if (entries.ok()) {
    for (const DirectoryEntry& entry : entries.value()) {
      if (shown(entry.url.lastPathComponent()) == name) {
        return entry.url;
      }
    }
  }
  return spelt;
}

// A free name beside the file. Dialogs read what is in quotes as names of their own.
FileURL proposalFor(const FileURL& file, const FileManager& files) {
  std::string name = file.lastPathComponent();
  std::ranges::replace(name, '"', '\'');
  return uniqueRenameURL(FileURL(), file.parent().appending(name), files);
}

FileURL folderShownAs(const QString& path, const FileManager& files) {
  FileURL folder("/");
  for (const QString& name : path.split(u'/', Qt::SkipEmptyParts)) {
    folder = entryShownAs(name, folder, files);
  }
  return folder;
}

// Puts the file `made` in the place of the other, which goes; 0 or the error's number. Both change places first, so
// that it shows which file that was before anything is lost.
int replace(const FileURL& made, const Copy& copy, const FileManager& files) {
  const char* from = made.path().c_str();
  const char* to = copy.to.path().c_str();
  if (::renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_EXCHANGE) == 0) {
    if (files.identityOfItemAtPath(made) == copy.replaced) {
      return 0;
    }
    (void)::renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_EXCHANGE);
    return EEXIST;
  }
  const bool knowsNoExchange = errno == EINVAL || errno == ENOSYS || errno == EOPNOTSUPP;
  if (!knowsNoExchange || files.identityOfItemAtPath(copy.to) != copy.replaced) {
    return EEXIST;
  }
  return std::rename(from, to) == 0 ? 0 : errno;
}

using Problem = std::optional<std::string>;

Problem makeInPlaceOfAnother(const Copy& copy, FileManager& files) {
  const FileURL hidden = copy.to.parent().appending(".quenlio-copy-" + Uuid::random().string());
  if (const auto made = files.copyItemAtURL(copy.from, hidden); !made.ok()) {
    return made.error().localizedDescription;
  }
  const int error = replace(hidden, copy, files);
  (void)files.removeItemAtURL(hidden);  // the copy, or what it has replaced
  return error == 0 ? Problem() : "The file “" + copy.to.lastPathComponent() + "” could not be replaced.";
}

// Why a copy could not be made, if it could not.
Problem make(const Copy& copy, FileManager& files) {
  if (copy.from.standardized() == copy.to.standardized()) {
    return std::nullopt;
  }
  if (copy.replaced && files.identityOfItemAtPath(copy.to) == copy.replaced) {
    return makeInPlaceOfAnother(copy, files);
  }
  const auto made = files.copyItemAtURL(copy.from, copy.to);
  return made.ok() ? Problem() : made.error().localizedDescription;
}

// Another program may take a name just when it has been found free.
Problem makeUnderFreeName(Copy copy, FileManager& files) {
  constexpr int attempts = 16;
  const FileURL wanted = copy.to;
  Problem problem;
  for (int attempt = 0; attempt < attempts; ++attempt) {
    copy.to = uniqueRenameURL(FileURL(), wanted, files);
    problem = make(copy, files);
    if (!problem || !files.identityOfItemAtPath(copy.to)) {
      break;
    }
  }
  return problem;
}

void tell(const std::vector<std::string>& problems) {
  constexpr std::size_t most = 8;
  QStringList lines;
  for (const std::string& problem : problems) {
    lines << QString::fromStdString(problem);
    if (lines.size() == most && problems.size() > most) {
      lines << QStringLiteral("and %1 more").arg(problems.size() - most);
      break;
    }
  }
  auto* box = new QMessageBox(QMessageBox::Warning, QStringLiteral("Save a Copy"), lines.join(u'\n'), QMessageBox::Ok);
  box->setAttribute(Qt::WA_DeleteOnClose);
  box->show();
}

void makeAll(const std::vector<Copy>& copies, FileManager& files, Scheduler& scheduler) {
  std::vector<std::string> problems;
  for (const Copy& copy : copies) {
    const Problem problem = copies.size() > 1 ? makeUnderFreeName(copy, files) : make(copy, files);
    if (problem) {
      problems.push_back(*problem);
    }
  }
  if (!problems.empty()) {
    scheduler.post([problems = std::move(problems)] { tell(problems); });
  }
}

}  // namespace

class CopySaver::Dialog final : public QFileDialog {
 public:
  Dialog(std::vector<FileURL> urls, const FileManager& files)
      : urls_(std::move(urls)), files_(files), proposal_(proposalFor(urls_.front(), files)) {
    setAcceptMode(isOfOne() ? AcceptSave : AcceptOpen);
    if (isOfOne()) {
      setWindowTitle(QStringLiteral("Save a Copy"));
      setFileMode(AnyFile);
      selectFile(shown(proposal_.path()));
    } else {
      setWindowTitle(QStringLiteral("Save %1 Copies").arg(urls_.size()));
      setFileMode(Directory);
      setOption(ShowDirsOnly);
      setDirectory(shown(urls_.front().parent().path()));
      setLabelText(Accept, QStringLiteral("Save"));
    }
  }

  // The copies as the user wants them.
  [[nodiscard]] std::vector<Copy> copies() const {
    if (isOfOne()) {
      return {{urls_.front(), place(), replaced_}};
    }
    std::vector<Copy> copies;
    const FileURL folder = place();
    for (const FileURL& url : urls_) {
      copies.push_back({url, folder.appending(url.lastPathComponent())});
    }
    return copies;
  }

 private:
  // Notes what is there before the question about it, which is the file that the answer is about.
  void accept() override {
    const bool willBeAskedAbout = QFileInfo::exists(selectedFiles().value(0));
    replaced_ = willBeAskedAbout && isOfOne() ? files_.identityOfItemAtPath(place()) : std::nullopt;
    QFileDialog::accept();
  }

  [[nodiscard]] bool isOfOne() const { return urls_.size() == 1; }
  [[nodiscard]] FileURL place() const {
    const QString chosen = selectedFiles().value(0);
    if (!isOfOne()) {
      return folderShownAs(chosen, files_);
    }
    const QFileInfo file(chosen);
    return folderShownAs(file.path(), files_).appending(nameShownAs(file.fileName()));
  }

  // The file's own name and the proposed one keep their bytes.
  [[nodiscard]] std::string nameShownAs(const QString& name) const {
    for (const FileURL& known : {proposal_, urls_.front()}) {
      if (shown(known.lastPathComponent()) == name) {
        return known.lastPathComponent();
      }
    }
    return bytesOf(name);
  }

  const std::vector<FileURL> urls_;
  const FileManager& files_;
  const FileURL proposal_;  // for one
  std::optional<FileIdentity> replaced_;
};

CopySaver::CopySaver(FileManager& files, Scheduler& scheduler) : files_(files), scheduler_(scheduler) {}

CopySaver::~CopySaver() = default;

void CopySaver::save(const std::vector<FileURL>& urls) {
  auto dialog = std::make_unique<Dialog>(urls, files_);
  const std::function<void(int)> finished = weak_.bind([made = dialog.get()](CopySaver& self, int result) {
    self.closed(made, result == static_cast<int>(QDialog::Accepted));
  });
  QObject::connect(dialog.get(), &QDialog::finished, dialog.get(), finished);
  dialog->show();
  dialog->raise();
  dialog->activateWindow();
  open_.push_back(std::move(dialog));
}

void CopySaver::closed(const Dialog* dialog, bool isAccepted) {
  const auto found = std::ranges::find(open_, dialog, &std::unique_ptr<Dialog>::get);
  std::vector<Copy> copies = isAccepted ? dialog->copies() : std::vector<Copy>();
  found->release()->deleteLater();  // it is just calling us
  open_.erase(found);
  if (!copies.empty()) {
    scheduler_.detached(
        QualityOfService::userInitiated,
        [copies = std::move(copies), &files = files_, &scheduler = scheduler_] { makeAll(copies, files, scheduler); });
  }
}

}  // namespace quenlio
