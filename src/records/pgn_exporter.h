// Hands PGN and FEN text to the user: a save panel or the pasteboard. Main thread; the panels schedule
// themselves.
#pragma once

#include <QObject>
#include <QString>
#include <functional>

namespace orlix {

class FileDialogs;
class FileStore;
class Pasteboard;

class PGNExporter : public QObject {
    Q_OBJECT
  public:
    enum class SaveOutcome { saved, cancelled, failed };
    using SaveCompletion = std::function<void(SaveOutcome outcome)>;

    PGNExporter(FileDialogs& dialogs, FileStore& files, Pasteboard& pasteboard, QObject* parent = nullptr);

    /// `completion` hears once what became of it, unless the exporter is gone by then.
    void savePGNDialog(const QString& pgnContent, const QString& defaultFileName,
                       SaveCompletion completion = {});
    void saveFENDialog(const QString& fenContent, const QString& defaultFileName,
                       SaveCompletion completion = {});
    void copyToClipboard(const QString& text);

  private:
    void saveLater(const QString& title, const QString& fileExtension, const QString& content,
                   const QString& defaultFileName, SaveCompletion completion);

    FileDialogs& dialogs_;
    FileStore& files_;
    Pasteboard& pasteboard_;
};

}  // namespace orlix
