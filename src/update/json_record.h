// Reads one JSON object field by field. The first thing that is wrong is remembered, in words for the user;
// later reads then give empty values. Keys that nobody asks for do not matter. A value; any thread.
#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <optional>

namespace orlix {

class JsonRecord {
  public:
    /// `name` is what the error texts call the object ("The update feed").
    JsonRecord(const QByteArray& json, QString name);

    QString text(QLatin1String key);
    bool boolean(QLatin1String key);
    /// Absent and null are the same here.
    std::optional<QString> optionalText(QLatin1String key);
    /// A number without a fraction that a 64-bit signed integer holds; "1e3" and "5.0" are such numbers.
    std::optional<qint64> optionalInteger(QLatin1String key);

    /// Empty as long as everything was well.
    const QString& error() const { return error_; }
    void fail(const QString& what);

  private:
    QJsonValue required(QLatin1String key);
    QJsonValue present(QLatin1String key) const;
    void failWrongType(QLatin1String key);

    QString name_;
    QJsonObject object_;
    QString error_;
};

}  // namespace orlix
