#include "platform/qt/qt_file_dialogs.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QStandardPaths>
#include <utility>

namespace orlix {
namespace {

/// The documents folder, or the home folder of a user who has none.
QString startDirectory() {
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return QFileInfo(documents).isDir() ? documents : QDir::homePath();
}

}  // namespace

void QtFileDialogs::save(const SaveRequest& request, Completion completion) {
    QFileDialog* panel = makePanel(request.title);
    panel->setAcceptMode(QFileDialog::AcceptSave);
    panel->setFileMode(QFileDialog::AnyFile);
    panel->setNameFilter(
        QStringLiteral("%1 (*.%2)").arg(request.fileExtension.toUpper(), request.fileExtension));
    panel->setDefaultSuffix(request.fileExtension);
    panel->selectFile(request.fileName);
    show(panel, std::move(completion));
}

void QtFileDialogs::open(const OpenRequest& request, Completion completion) {
    QFileDialog* panel = makePanel(request.title);
    panel->setAcceptMode(QFileDialog::AcceptOpen);
    panel->setFileMode(QFileDialog::ExistingFile);
    panel->setLabelText(QFileDialog::Accept, request.prompt);
    show(panel, std::move(completion));
}

QFileDialog* QtFileDialogs::makePanel(const QString& title) const {
    auto* panel = new QFileDialog(window_.data(), title);
    panel->setAttribute(Qt::WA_DeleteOnClose);
    panel->setDirectory(lastDirectory_->isEmpty() ? startDirectory() : *lastDirectory_);
    return panel;
}

void QtFileDialogs::show(QFileDialog* panel, Completion completion) const {
    QObject::connect(panel, &QFileDialog::finished, panel,
                     [panel, lastDirectory = lastDirectory_, completion = std::move(completion)](int result) {
                         const QStringList files = panel->selectedFiles();
                         if (result != QDialog::Accepted || files.isEmpty()) {
                             completion(std::nullopt);
                             return;
                         }
                         *lastDirectory = QFileInfo(files.first()).absolutePath();
                         completion(files.first());
                     });
    panel->open();
}

}  // namespace orlix
