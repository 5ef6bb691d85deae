#include "platform/linux/linux_system_settings.h"

#include <QFile>

#include "platform/linux/configuration_folder.h"

namespace orlix {
namespace {

/// "de_AT.UTF-8@euro" becomes "de-AT"; the C locale and an empty name become empty.
QString languageTag(const QString& locale) {
    qsizetype end = 0;
    while (end < locale.size() && locale[end] != u'.' && locale[end] != u'@')
        ++end;
    const QString name = locale.left(end);
    if (name == u"C" || name == u"POSIX") return {};
    return QString(name).replace(u'_', u'-');
}

/// The value of `key` below the header `group` of an INI file, or empty. A few lines are not worth a whole
/// settings object, which would keep the file in memory.
QString valueInFile(const QString& path, const QByteArray& group, const QByteArray& key) {
    constexpr qint64 longestFile = 256 * 1024;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) return {};
    bool inGroup = false;
    QString found;
    for (const QByteArray& rawLine : file.read(longestFile).split('\n')) {
        const QByteArray line = rawLine.trimmed();
        if (line.startsWith('[')) {
            inGroup = line == '[' + group + ']';
            continue;
        }
        const qsizetype equals = line.indexOf('=');
        if (inGroup && equals > 0 && line.left(equals).trimmed() == key)
            found = QString::fromUtf8(line.mid(equals + 1).trimmed());
    }
    return found;
}

bool desktopAsksForLessMotion() {
    const QString config = configurationFolder();
    for (const QString& toolkit : {QStringLiteral("/gtk-4.0"), QStringLiteral("/gtk-3.0")}) {
        const QString animations =
            valueInFile(config + toolkit + QStringLiteral("/settings.ini"), QByteArrayLiteral("Settings"),
                        QByteArrayLiteral("gtk-enable-animations"))
                .toLower();
        if (animations == u"0" || animations == u"false" || animations == u"no") return true;
    }
    bool isNumber = false;
    const double factor = valueInFile(config + QStringLiteral("/kdeglobals"), QByteArrayLiteral("KDE"),
                                      QByteArrayLiteral("AnimationDurationFactor"))
                              .toDouble(&isNumber);
    return isNumber && factor == 0;
}

}  // namespace

QStringList LinuxSystemSettings::preferredLanguages() const {
    QString locale;
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        locale = qEnvironmentVariable(variable);
        if (!locale.isEmpty()) break;
    }
    const QString localeTag = languageTag(locale);
    // The list of languages counts only beside a real locale.
    if (localeTag.isEmpty()) return {};

    QStringList tags;
    for (const QString& language :
         qEnvironmentVariable("LANGUAGE").split(u':', Qt::SkipEmptyParts) + QStringList{locale}) {
        const QString tag = languageTag(language);
        if (!tag.isEmpty() && !tags.contains(tag)) tags.append(tag);
    }
    return tags;
}

bool LinuxSystemSettings::prefersReducedMotion() const {
    if (!reducedMotion_) reducedMotion_ = desktopAsksForLessMotion();
    return *reducedMotion_;
}

bool LinuxSystemSettings::desktopMayShowMenus() {
    for (const QString& desktop : qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':'))
        if (desktop == u"KDE" || desktop == u"Unity") return true;
    // The panel applet that other desktops can have for it.
    return qEnvironmentVariable("GTK_MODULES").contains(u"appmenu");
}

QStringList LinuxSystemSettings::additionalEnginePaths() const {
    // By strength: the first engine found becomes the one that a new user plays against.
    return {QStringLiteral("/usr/games/stockfish"),       QStringLiteral("/usr/games/ethereal-chess"),
            QStringLiteral("/usr/games/fairy-stockfish"), QStringLiteral("/usr/games/toga2"),
            QStringLiteral("/usr/games/glaurung"),        QStringLiteral("/usr/games/sjaakii")};
}

}  // namespace orlix
