#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtCore/QTimer>
#include <QtWidgets/QApplication>
#include <QtWidgets/QFileDialog>
#include <functional>
#include <gtest/gtest.h>

#include "desktop/linux/session/QtOpenPanel.h"

namespace quenlio {
namespace {

// Runs the panel; once its dialog is up the user does that with it.
std::optional<FileURL> runPanel(const OpenPanelRequest& request, const std::function<void(QFileDialog&)>& user) {
  QTimer watch;
  QObject::connect(&watch, &QTimer::timeout, &watch, [&] {
    if (auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget())) {
      watch.stop();
      user(*dialog);
    }
  });
  watch.start(1);
  return QtOpenPanel().runModal(request);
}

TEST(QtOpenPanel, showsFilesOfAllTypesAtFirstAndEachTypeByChoice) {
  OpenPanelRequest request{.canChooseFiles = true};
  request.allowedContentTypes = {ContentType::png, ContentType::jpeg, ContentType::heic, ContentType::tiff,
                                 ContentType::pdf};
  QStringList filters;
  QString selected;
  EXPECT_FALSE(runPanel(request, [&](QFileDialog& dialog) {
    filters = dialog.nameFilters();
    selected = dialog.selectedNameFilter();
    dialog.reject();
  }));
  ASSERT_EQ(filters.size(), 6);
  EXPECT_EQ(selected, filters[0]);
  for (const char* suffix : {"png", "jpg", "jpeg", "heic", "tiff", "pdf"}) {
    const QString pattern = QStringLiteral("*.") + QString::fromLatin1(suffix);
    EXPECT_TRUE(filters[0].contains(pattern)) << suffix;
    EXPECT_EQ(filters.filter(pattern + QLatin1Char(' ')).size() + filters.filter(pattern + QLatin1Char(')')).size(), 2)
        << suffix;
  }
}

TEST(QtOpenPanel, hasNoSecondFilterForOneTypeAndNoneForAllFiles) {
  OpenPanelRequest request{.canChooseFiles = true};
  QStringList filters;
  const auto look = [&filters](QFileDialog& dialog) {
    filters = dialog.nameFilters();
    dialog.reject();
  };
  request.allowedContentTypes = {ContentType::png};
  (void)runPanel(request, look);
  EXPECT_EQ(filters, QStringList(QStringLiteral("PNG (*.png)")));
  request.allowedContentTypes = {};
  (void)runPanel(request, look);
  EXPECT_EQ(filters.size(), 1);
  EXPECT_TRUE(filters.value(0).contains(QLatin1Char('*')) && !filters.value(0).contains(QLatin1Char('.')));
}

TEST(QtOpenPanel, givesTheFileThatIsChosen) {
  const QTemporaryDir folder;
  const QString path = folder.filePath(QStringLiteral("écran.png"));
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.close();
  OpenPanelRequest request{.canChooseFiles = true};
  request.directoryURL = FileURL(folder.path().toStdString());
  request.allowedContentTypes = {ContentType::png, ContentType::jpeg};
  const auto chosen = runPanel(request, [&path](QFileDialog& dialog) {
    dialog.selectFile(path);
    // accept() is for those who press the button.
    QMetaObject::invokeMethod(&dialog, "accept");
  });
  EXPECT_EQ(chosen, FileURL(path.toStdString()));
}

}  // namespace
}  // namespace quenlio
