#include "ui/panel/live_elo_editor.h"

#include "game/game_manager.h"
#include "ui/panel/elo_editor.h"
#include "ui/panel/section_head.h"
#include "ui/theme.h"

namespace orlix {

namespace {

std::size_t indexOf(PieceColor color) {
    return color == PieceColor::white ? 0 : 1;
}

}  // namespace

LiveEloEditor::LiveEloEditor(const PanelContext& context, QWidget* parent)
    : Card(context.theme, parent), context_(context) {
    auto* head = new SectionHead(Icon::sliders, context.theme, this);
    // The same in every language.
    head->setTitle(QStringLiteral("Gegnerische ELO live:"));
    setAccessibleName(QStringLiteral("Gegnerische ELO live:"));
    content()->addWidget(head);
    takeGame();
}

EloEditor* LiveEloEditor::editor(PieceColor color) {
    EloEditor*& editor = editors_[indexOf(color)];
    if (editor) return editor;
    const bool isWhite = color == PieceColor::white;
    editor = new EloEditor(isWhite ? "elo_white_engine" : "elo_black_engine", context_, this);
    editor->setPartNames(isWhite ? QStringLiteral("liveWhite") : QStringLiteral("liveBlack"));
    // White's comes first, whichever is needed first; the head stands above both.
    content()->insertWidget(isWhite ? 1 : content()->count(), editor);
    GameManager& game = context_.game;
    connect(editor, &EloEditor::edited, &game, [&game, isWhite](bool limitElo, qint64 elo) {
        if (isWhite) {
            game.updateWhiteElo(limitElo, elo);
        } else {
            game.updateBlackElo(limitElo, elo);
        }
    });
    return editor;
}

void LiveEloEditor::takeGame() {
    const GameManager& game = context_.game;
    const bool hasWhite = game.whiteEngineProcess() != nullptr;
    const bool hasBlack = game.blackEngineProcess() != nullptr;
    if (hasWhite) {
        editor(PieceColor::white)->setStrength(game.whiteEngineLimitElo(), game.whiteEngineElo());
    }
    if (hasBlack) {
        editor(PieceColor::black)->setStrength(game.blackEngineLimitElo(), game.blackEngineElo());
    }
    for (EloEditor* editor : editors_) {
        // Between engines the sliders have to do: the console below needs the room.
        if (editor) editor->setPresetsShown(!hasWhite || !hasBlack);
    }
    if (editors_[0]) editors_[0]->setVisible(hasWhite);
    if (editors_[1]) editors_[1]->setVisible(hasBlack);
    setVisible(hasWhite || hasBlack);
}

}  // namespace orlix
