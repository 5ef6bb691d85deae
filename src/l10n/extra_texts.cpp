#include "l10n/extra_texts.h"

#include <QStringView>
#include <array>
#include <cstddef>

namespace orlix {
namespace {

struct Row {
    ExtraText id;
    // In the order of `Language`.
    QStringView english;
    QStringView german;
    QStringView dutch;
    QStringView french;
};

// clang-format off
constexpr Row rows[] = {
    {ExtraText::gameMenu, u"Game", u"Partie", u"Partij", u"Partie"},
    {ExtraText::noEngineRegistered,
     u"No UCI engine is registered yet. Add one to play against it.",
     u"Noch keine UCI-Engine eingetragen. Füge eine hinzu, um gegen sie zu spielen.",
     u"Nog geen UCI-engine geregistreerd. Voeg er een toe om ertegen te spelen.",
     u"Aucun moteur UCI enregistré. Ajoutez-en un pour jouer contre lui."},
    {ExtraText::noEngineChosen, u"No engine is chosen for this game.",
     u"Für diese Partie ist keine Engine gewählt.", u"Voor deze partij is geen engine gekozen.",
     u"Aucun moteur n'est choisi pour cette partie."},
    {ExtraText::newGameSeatsEngine, u"The engine joins in with the next game.",
     u"Die Engine spielt ab der nächsten Partie mit.", u"De engine speelt vanaf de volgende partij mee.",
     u"Le moteur jouera dès la prochaine partie."},
    {ExtraText::checkingEngine, u"Checking the engine…", u"Die Engine wird geprüft …",
     u"De engine wordt gecontroleerd…", u"Vérification du moteur…"},
    {ExtraText::showLivePosition, u"Back to the game", u"Zurück zur Partie", u"Terug naar de partij",
     u"Retour à la partie"},
    {ExtraText::noAutomatchGames, u"Finished games are listed here.", u"Beendete Partien stehen hier.",
     u"Voltooide partijen staan hier.", u"Les parties terminées s'affichent ici."},
    {ExtraText::seriesSettings, u"All settings of the match", u"Alle Einstellungen des Matches",
     u"Alle instellingen van de match", u"Tous les réglages du match"},
    {ExtraText::matchStrength,
     u"Elo difference of engine 1 with its 95 % error, and the likelihood that it is the stronger one (LOS)",
     u"Elo-Unterschied von Engine 1 mit 95-%-Fehler und Wahrscheinlichkeit, dass sie die stärkere ist (LOS)",
     u"Elo-verschil van engine 1 met 95%-fout, en de kans dat zij de sterkere is (LOS)",
     u"Écart Elo du moteur 1 avec son erreur à 95 %, et probabilité qu'il soit le plus fort (LOS)"},
    {ExtraText::averageGameTime, u"Average time of a game", u"Mittlere Dauer einer Partie",
     u"Gemiddelde duur van een partij", u"Durée moyenne d'une partie"},
    {ExtraText::board, u"Chess board", u"Schachbrett", u"Schaakbord", u"Échiquier"},
    {ExtraText::squareEmpty, u"empty", u"leer", u"leeg", u"vide"},
    {ExtraText::squareSelected, u"selected", u"ausgewählt", u"geselecteerd", u"sélectionnée"},
    {ExtraText::squareLegalTarget, u"possible move", u"möglicher Zug", u"mogelijke zet", u"coup possible"},
    {ExtraText::squareLastMove, u"last move", u"letzter Zug", u"laatste zet", u"dernier coup"},
    {ExtraText::squareInCheck, u"in check", u"im Schach", u"schaak", u"en échec"},
    {ExtraText::evaluation, u"Evaluation", u"Bewertung", u"Waardering", u"Évaluation"},
    {ExtraText::engineAdded, u"%1 has been added.", u"%1 wurde hinzugefügt.", u"%1 is toegevoegd.",
     u"%1 a été ajouté."},
    {ExtraText::whitePawn, u"white pawn", u"weißer Bauer", u"witte pion", u"pion blanc"},
    {ExtraText::whiteKnight, u"white knight", u"weißer Springer", u"wit paard", u"cavalier blanc"},
    {ExtraText::whiteBishop, u"white bishop", u"weißer Läufer", u"witte loper", u"fou blanc"},
    {ExtraText::whiteRook, u"white rook", u"weißer Turm", u"witte toren", u"tour blanche"},
    {ExtraText::whiteQueen, u"white queen", u"weiße Dame", u"witte dame", u"dame blanche"},
    {ExtraText::whiteKing, u"white king", u"weißer König", u"witte koning", u"roi blanc"},
    {ExtraText::blackPawn, u"black pawn", u"schwarzer Bauer", u"zwarte pion", u"pion noir"},
    {ExtraText::blackKnight, u"black knight", u"schwarzer Springer", u"zwart paard", u"cavalier noir"},
    {ExtraText::blackBishop, u"black bishop", u"schwarzer Läufer", u"zwarte loper", u"fou noir"},
    {ExtraText::blackRook, u"black rook", u"schwarzer Turm", u"zwarte toren", u"tour noire"},
    {ExtraText::blackQueen, u"black queen", u"schwarze Dame", u"zwarte dame", u"dame noire"},
    {ExtraText::blackKing, u"black king", u"schwarzer König", u"zwarte koning", u"roi noir"},
    {ExtraText::moveFromTo, u"%1 from %2 to %3", u"%1 von %2 nach %3", u"%1 van %2 naar %3", u"%1 de %2 à %3"},
    {ExtraText::moveCaptures, u"captured: %1", u"geschlagen: %1", u"geslagen: %1", u"prise : %1"},
    {ExtraText::movePromotes, u"promotion: %1", u"Umwandlung: %1", u"promotie: %1", u"promotion : %1"},
    {ExtraText::moveCastles, u"castling", u"Rochade", u"rokade", u"roque"},
    {ExtraText::moveTakenBack, u"Move taken back", u"Zug zurückgenommen", u"Zet teruggenomen", u"Coup repris"},
    {ExtraText::checkForUpdates, u"Check for Updates…", u"Nach Updates suchen …", u"Zoeken naar updates…",
     u"Rechercher des mises à jour…"},
    {ExtraText::quit, u"Quit", u"Beenden", u"Afsluiten", u"Quitter"},
    {ExtraText::checkAgain, u"Check Again", u"Erneut suchen", u"Opnieuw zoeken", u"Rechercher encore"},
    {ExtraText::softwareUpdate, u"Software Update", u"Softwareupdate", u"Software-update",
     u"Mise à jour du logiciel"},
    {ExtraText::releaseAvailable, u"Velmorandix Orlix %1 (build %2) is available.",
     u"Velmorandix Orlix %1 (Build %2) ist verfügbar.", u"Velmorandix Orlix %1 (build %2) is beschikbaar.",
     u"Velmorandix Orlix %1 (build %2) est disponible."},
    {ExtraText::releaseUnverifiable,
     u"The feed has no valid verification metadata; automatic installation is disabled.",
     u"Der Feed hat keine gültigen Prüfdaten; die automatische Installation ist ausgeschaltet.",
     u"De feed heeft geen geldige controlegegevens; automatische installatie is uitgeschakeld.",
     u"Le flux n'a pas de données de vérification valides ; l'installation automatique est désactivée."},
    {ExtraText::releaseNotes, u"Release notes", u"Versionshinweise", u"Release-opmerkingen",
     u"Notes de version"},
    {ExtraText::installRelease, u"Download, Install & Relaunch", u"Installieren & neu starten",
     u"Installeren & herstarten", u"Installer et relancer"},
    {ExtraText::updateChecking, u"Checking for updates…", u"Es wird nach Updates gesucht …",
     u"Er wordt naar updates gezocht…", u"Recherche de mises à jour…"},
    {ExtraText::updateUpToDate, u"Velmorandix Orlix is up to date (version %1).",
     u"Velmorandix Orlix ist aktuell (Version %1).", u"Velmorandix Orlix is up-to-date (versie %1).",
     u"Velmorandix Orlix est à jour (version %1)."},
    {ExtraText::updateCheckFailed, u"Update check failed: %1", u"Die Suche nach Updates ist fehlgeschlagen: %1",
     u"Het zoeken naar updates is mislukt: %1", u"La recherche de mises à jour a échoué : %1"},
    {ExtraText::updateVerifying, u"Downloading and verifying Velmorandix Orlix %1…",
     u"Velmorandix Orlix %1 wird geladen und geprüft …", u"Velmorandix Orlix %1 wordt geladen en gecontroleerd…",
     u"Téléchargement et vérification de Velmorandix Orlix %1…"},
    {ExtraText::updateVerified, u"Update verified. Velmorandix Orlix will now install and relaunch.",
     u"Update geprüft. Velmorandix Orlix wird jetzt installiert und neu gestartet.",
     u"Update gecontroleerd. Velmorandix Orlix wordt nu geïnstalleerd en herstart.",
     u"Mise à jour vérifiée. Velmorandix Orlix va maintenant être installé et relancé."},
    {ExtraText::updaterNotStarted, u"Could not start the updater: %1",
     u"Der Updater konnte nicht gestartet werden: %1", u"De updater kon niet worden gestart: %1",
     u"Impossible de démarrer le programme de mise à jour : %1"},
};
// clang-format on

constexpr bool everyCaseHasItsRow() {
    if (std::size(rows) != static_cast<std::size_t>(ExtraText::end)) return false;
    for (std::size_t index = 0; index < std::size(rows); ++index) {
        const Row& row = rows[index];
        if (row.id != static_cast<ExtraText>(index)) return false;
        if (row.english.empty() || row.german.empty() || row.dutch.empty() || row.french.empty())
            return false;
    }
    return true;
}
static_assert(everyCaseHasItsRow(),
              "the rows stand in the order of the cases, with a text in every language");

QStringView column(const Row& row, Language language) {
    switch (language) {
        case Language::english: return row.english;
        case Language::german: return row.german;
        case Language::dutch: return row.dutch;
        case Language::french: return row.french;
    }
    Q_UNREACHABLE();
}

}  // namespace

QString extraText(Language language, ExtraText text) {
    Q_ASSERT(text < ExtraText::end);
    const QStringView found = column(rows[static_cast<std::size_t>(text)], language);
    return QString::fromRawData(found.data(), found.size());
}

}  // namespace orlix
