#include "platform/linux/linux_defaults_store.h"

#include "platform/linux/configuration_folder.h"

namespace orlix {
namespace {

std::optional<bool> spelledBoolean(const QString& text) {
    for (const char16_t* word : {u"true", u"yes", u"1"}) {
        if (text.compare(QStringView(word), Qt::CaseInsensitive) == 0) return true;
    }
    for (const char16_t* word : {u"false", u"no", u"0"}) {
        if (text.compare(QStringView(word), Qt::CaseInsensitive) == 0) return false;
    }
    return std::nullopt;
}

bool isQuoted(const QString& text) {
    return text.size() >= 2 && text.startsWith(u'"') && text.endsWith(u'"');
}

// The file knows no types: after a restart a boolean comes back as the text "true". So a text that spells a
// boolean is one, and strings that would be mistaken for it are stored in quotation marks of their own.
QString encoded(const QString& text) {
    return spelledBoolean(text) || isQuoted(text) ? u'"' + text + u'"' : text;
}

}  // namespace

QString LinuxDefaultsStore::defaultPath() {
    return configurationFolder() + QStringLiteral("/velmorandix-orlix/defaults.ini");
}

LinuxDefaultsStore::LinuxDefaultsStore(const QString& path) : settings_(path, QSettings::IniFormat) {}

LinuxDefaultsStore::~LinuxDefaultsStore() = default;

std::optional<QByteArray> LinuxDefaultsStore::data(const QString& key) const {
    const QVariant value = settings_.value(key);
    if (value.typeId() != QMetaType::QByteArray) return std::nullopt;
    return value.toByteArray();
}

std::optional<QString> LinuxDefaultsStore::string(const QString& key) const {
    const QVariant value = settings_.value(key);
    if (value.typeId() != QMetaType::QString) return std::nullopt;
    const QString text = value.toString();
    if (spelledBoolean(text)) return std::nullopt;
    return isQuoted(text) ? text.mid(1, text.size() - 2) : text;
}

std::optional<bool> LinuxDefaultsStore::boolean(const QString& key) const {
    const QVariant value = settings_.value(key);
    if (value.typeId() != QMetaType::QString) return std::nullopt;
    return spelledBoolean(value.toString());
}

void LinuxDefaultsStore::setData(const QString& key, const QByteArray& value) {
    write(key, value);
}

void LinuxDefaultsStore::setString(const QString& key, const QString& value) {
    write(key, encoded(value));
}

void LinuxDefaultsStore::setBoolean(const QString& key, bool value) {
    write(key, value ? QStringLiteral("true") : QStringLiteral("false"));
}

void LinuxDefaultsStore::write(const QString& key, const QVariant& value) {
    // Every start stores the registry again, as a rule just as it was: that costs no write.
    if (settings_.status() == QSettings::NoError && settings_.value(key) == value) return;
    settings_.setValue(key, value);
    settings_.sync();
}

}  // namespace orlix
