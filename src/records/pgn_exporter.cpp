#include "records/pgn_exporter.h"

#include <QPointer>
#include <optional>
#include <utility>

#include "platform/file_dialogs.h"
#include "platform/file_store.h"
#include "platform/pasteboard.h"
#include "platform/post.h"

namespace orlix {

PGNExporter::PGNExporter(FileDialogs& dialogs, FileStore& files, Pasteboard& pasteboard, QObject* parent)
    : QObject(parent), dialogs_(dialogs), files_(files), pasteboard_(pasteboard) {}

void PGNExporter::savePGNDialog(const QString& pgnContent, const QString& defaultFileName,
                                SaveCompletion completion) {
    saveLater(QStringLiteral("Save PGN Game"), QStringLiteral("pgn"), pgnContent, defaultFileName,
              std::move(completion));
}

void PGNExporter::saveFENDialog(const QString& fenContent, const QString& defaultFileName,
                                SaveCompletion completion) {
    saveLater(QStringLiteral("Save FEN Position"), QStringLiteral("fen"), fenContent, defaultFileName,
              std::move(completion));
}

void PGNExporter::copyToClipboard(const QString& text) {
    pasteboard_.setText(text);
}

void PGNExporter::saveLater(const QString& title, const QString& fileExtension, const QString& content,
                            const QString& defaultFileName, SaveCompletion completion) {
    const FileDialogs::SaveRequest request{title, defaultFileName, fileExtension};
    // Through the event loop, whichever thread asks: a panel never opens inside its caller.
    post(this, [this, request, content, completion = std::move(completion)] {
        dialogs_.save(
            request, [self = QPointer(this), content, completion](const std::optional<QString>& path) {
                if (self == nullptr) return;
                // A failed write stays silent here on purpose: no message, no retry.
                auto outcome = SaveOutcome::cancelled;
                if (path) {
                    outcome = self->files_.writeAtomically(*path, content.toUtf8()) ? SaveOutcome::saved
                                                                                    : SaveOutcome::failed;
                }
                if (completion) completion(outcome);
            });
    });
}

}  // namespace orlix
