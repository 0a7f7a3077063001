#include "desktop/linux/session/QtPasteboard.h"

#include <QtCore/QMimeData>
#include <QtGui/QClipboard>
#include <QtGui/QGuiApplication>
#include <mutex>

#include "desktop/linux/session/ClipboardManager.h"
#include "desktop/linux/system/FileURI.h"
#include "desktop/render/FileImages.h"

namespace quenlio {
namespace {

// The toolkit itself answers whoever asks for this. Some clipboard managers lose the first of what is offered, which
// with most programs is this one.
const QString kTime = QStringLiteral("TIMESTAMP");
const QString kImage = QStringLiteral("image/png");
const QString kURIs = QStringLiteral("text/uri-list");
const QString kFileManager = QStringLiteral("x-special/gnome-copied-files");
const QString kText = QStringLiteral("text/plain");

// A picture that becomes a PNG once, on the thread of whoever asks for it first; others wait for that. Any thread.
class PngOnce {
 public:
  explicit PngOnce(ImageRef image) : image_(std::move(image)) {}

  [[nodiscard]] const QByteArray& bytes() {
    std::call_once(made_, [&] {
      bytes_ = pngBytes(*image_);
      image_.reset();
    });
    return bytes_;
  }

 private:
  std::once_flag made_;
  ImageRef image_;  // until it is made
  QByteArray bytes_;
};

// Bytes under each name, which no text type ever touches: paths need not be UTF-8.
class Offer final : public QMimeData {
 public:
  explicit Offer(std::vector<FileURL> urls, std::shared_ptr<PngOnce> picture)
      : urls_(std::move(urls)), picture_(std::move(picture)) {}

  [[nodiscard]] QStringList formats() const override {
    QStringList names(kTime);
    if (picture_) {
      names << kImage;
    }
    return urls_.empty() ? names : names << kURIs << kFileManager << kText;
  }
  [[nodiscard]] bool hasFormat(const QString& name) const override { return formats().contains(name); }
  [[nodiscard]] const std::vector<FileURL>& urls() const { return urls_; }
  [[nodiscard]] const std::shared_ptr<PngOnce>& picture() const { return picture_; }

 protected:
  [[nodiscard]] QVariant retrieveData(const QString& name, QMetaType /*type*/) const override {
    if (name == kTime || !hasFormat(name)) {
      return {};
    }
    return name == kImage ? picture_->bytes() : QByteArray::fromStdString(textAs(name));
  }

 private:
  [[nodiscard]] std::string textAs(const QString& name) const {
    if (name == kURIs) {
      return uriList(urls_);
    }
    if (name == kText) {
      return pathLines(urls_);
    }
    std::string copied = "copy";
    for (const FileURL& url : urls_) {
      copied += "\n" + fileURI(url);
    }
    return copied;
  }

  std::vector<FileURL> urls_;
  std::shared_ptr<PngOnce> picture_;
};

QClipboard& clipboard() {
  return *QGuiApplication::clipboard();
}

// The clipboard takes the offer over, and lets go of it when somebody else has copied something.
void offer(std::vector<FileURL> urls, std::shared_ptr<PngOnce> picture) {
  clipboard().setMimeData(new Offer(std::move(urls), std::move(picture)));
}

// What this program has on the clipboard; nullptr when that is somebody else's, or paths alone.
const Offer* presentOffer() {
  return dynamic_cast<const Offer*>(clipboard().mimeData());
}

// A picture that turned out to be damaged is no longer promised, unless something else has been copied meanwhile.
void withdraw(const std::shared_ptr<PngOnce>& picture) {
  const Offer* present = presentOffer();
  if (present != nullptr && present->picture() == picture) {
    offer(present->urls(), nullptr);
  }
}

}  // namespace

QtPasteboard::~QtPasteboard() {
  handOver();
}

void QtPasteboard::handOver() {
  // The other thread may not have come to it yet.
  const Offer* present = presentOffer();
  if (present != nullptr && present->picture() && present->picture()->bytes().isEmpty()) {
    withdraw(present->picture());
  }
  const bool isKept =
      !clipboard().ownsClipboard() || clipboard().mimeData()->formats().isEmpty() || handOverClipboard();
  if (!isKept && clipboard().ownsClipboard()) {
    // Or the toolkit would go on asking for many seconds.
    clipboard().clear();
  }
}

// By an offer of nothing: a clipboard that nobody owns is filled again by some clipboard managers, over what is written
// next.
void QtPasteboard::clearContents() {
  clipboard().setMimeData(new QMimeData);
}

void QtPasteboard::writeObjects(const PasteboardObjects& objects) {
  const auto picture = objects.image ? std::make_shared<PngOnce>(objects.image) : nullptr;
  offer(objects.fileURLs, picture);
  if (!picture) {
    return;
  }
  const std::function<void()> withdrawn = weak_.bind([picture](QtPasteboard& /*self*/) { withdraw(picture); });
  scheduler_.detached(QualityOfService::userInitiated,
                      [picture, image = objects.image, &scheduler = scheduler_, withdrawn] {
                        if (picture->bytes().isEmpty() || !isSoundAsPNG(*image)) {
                          scheduler.post(withdrawn);
                        }
                      });
}

void copyPaths(const std::vector<FileURL>& urls) {
  auto* paths = new QMimeData;
  paths->setData(kText, QByteArray::fromStdString(pathLines(urls)));
  clipboard().setMimeData(paths);
}

}  // namespace quenlio
