#include "screenshot_scenes.h"
#include "ui/menus.h"
#include "ui/update_view.h"

namespace orlix::test {
namespace {

const QString longNotes = QStringLiteral(
    "Velmorandix Orlix 1.10\n\n"
    "- The board draws its pieces in half the time, and large windows stay quick while two "
    "engines play.\n"
    "- A series of engine games can be continued after a pause of any length.\n"
    "- Engines that answer late no longer lose on time when their answer was in the pipe.\n"
    "- The move list keeps its place while you read earlier moves.\n"
    "- New icons for pause and resume.\n"
    "- Corrections of the French texts.\n\n"
    "Thanks to everybody who wrote in.");

void finish(Shell& shell) {
    shell.updateWorld.transport.gate.open();
    shell.eventually([&] { return !shell.updates->isChecking() && !shell.updates->isInstalling(); });
}

void check(Shell& shell) {
    showTwoPeople(shell);
    shell.updateWorld.transport.response.body = shell.updateWorld.info.toJson();
    shell.updates->checkForUpdates(false);
    finish(shell);
}

void checking(Shell& shell) {
    showTwoPeople(shell);
    shell.updateWorld.transport.gate.close();
    shell.updates->checkForUpdates(false);
}

void upToDate(Shell& shell) {
    shell.updateWorld.info.version = QStringLiteral("1.9");
    shell.updateWorld.info.build = QStringLiteral("41");
    check(shell);
}

void failed(Shell& shell) {
    shell.updateWorld.transport.response.error =
        QStringLiteral("The host updates.velmorandix-orlix.invalid was not found");
    check(shell);
}

void availableWithNotes(Shell& shell) {
    shell.updateWorld.info.releaseNotes = longNotes;
    check(shell);
}

void unverifiable(Shell& shell) {
    shell.updateWorld.info.build.reset();
    availableWithNotes(shell);
}

void installing(Shell& shell) {
    availableWithNotes(shell);
    shell.updateWorld.transport.gate.close();
    shell.updates->install();
}

void notInstalled(Shell& shell) {
    availableWithNotes(shell);
    shell.updateWorld.signatures.byName["Running.app"].info.teamIdentifier.reset();
    shell.updates->install();
    finish(shell);
}

void tellResult(Shell& shell, bool succeeded, const QString& text) {
    showTwoPeople(shell);
    const UpdateInstallResult result{succeeded, text, QStringLiteral("1.10")};
    writeFile(shell.updateWorld.statusPath(), result.toJson().toStdString());
    shell.updates->handleLaunch();
}

void longFailure(Shell& shell) {
    availableWithNotes(shell);
    tellResult(shell, false,
               QStringLiteral("Velmorandix Orlix 1.10 could not be installed: hdiutil: attach failed - no "
                              "mountable file systems in Velmorandix-Orlix-1.10-42.dmg. ")
                   .repeated(4));
}

void updaterNotStarted(Shell& shell) {
    availableWithNotes(shell);
    shell.updates->install();
    finish(shell);
    shell.updateWorld.starter.error = ENOENT;
    shell.updates->launchScheduledInstallerIfNeeded();
}

}  // namespace

std::vector<PictureOf> updatePictures() {
    struct Scene {
        const char* name;
        std::function<void(Shell&)> reach;
        bool isInEveryLanguage;
    };
    const std::vector<Scene> scenes{
        {"60-update-checking", checking, false},
        {"61-update-none", upToDate, true},
        {"62-update-check-failed", failed, true},
        {"63-update-available", check, false},
        {"64-update-notes", availableWithNotes, true},
        {"65-update-unverifiable", unverifiable, true},
        {"66-update-installing", installing, true},
        {"67-update-refused", notInstalled, false},
        {"68-update-not-started", updaterNotStarted, true},
        {"69-update-installed",
         [](Shell& shell) {
             tellResult(shell, true, QStringLiteral("Velmorandix Orlix 1.10 was installed."));
         },
         false},
        {"70-update-long-failure", longFailure, false},
        {"71-update-focus",
         [](Shell& shell) {
             check(shell);
             QTest::keyClick(shell.find<UpdateView>(), Qt::Key_Tab);
         },
         false},
        {"72-update-menu",
         [](Shell& shell) {
             showTwoPeople(shell);
             shell.find<ApplicationMenu>()->popup(shell.window->pos() + QPoint(0, 24));
         },
         true},
    };
    std::vector<PictureOf> all;
    for (const Theme::Scheme scheme : {Theme::Scheme::light, Theme::Scheme::dark}) {
        const QString look =
            scheme == Theme::Scheme::dark ? QStringLiteral("-dark-") : QStringLiteral("-light-");
        for (const Scene& scene : scenes) {
            for (const Language language : allLanguages) {
                if (language != Language::english && !scene.isInEveryLanguage) continue;
                all.push_back({QString::fromLatin1(scene.name) + look + rawValue(language), scene.reach,
                               scheme, language});
            }
        }
    }
    return all;
}

}  // namespace orlix::test
