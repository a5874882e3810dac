#include "platform/qt/automation/IntentShortcut.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QString>
#include <QStringList>

namespace orvanta {
namespace {

constexpr QLatin1String kArgument("argument");

QString toQt(const std::string& text) {
    return QString::fromStdString(text);
}

std::string text(const QVariantMap& record, const char* key) {
    return record.value(QLatin1String(key)).toString().toStdString();
}

/// What is inside of a dictionary that came over the bus is left packed.
QVariantMap mapIn(const QVariant& value) {
    if (value.canConvert<QDBusArgument>())
        return qdbus_cast<QVariantMap>(value);
    return value.toMap();
}

QVariantMap argumentRecord(const IntentArgument& argument) {
    return {{QStringLiteral("name"), toQt(argument.name)},
            {QStringLiteral("title"), toQt(argument.title)},
            {QStringLiteral("description"), toQt(argument.description)},
            {QStringLiteral("default"), QVariant::fromValue<qlonglong>(argument.defaultValue)},
            {QStringLiteral("control-style"), toQt(argument.controlStyle)}};
}

IntentArgument argumentOf(const QVariantMap& record) {
    return {.name = text(record, "name"),
            .title = text(record, "title"),
            .description = text(record, "description"),
            .defaultValue = record.value(QStringLiteral("default")).toLongLong(),
            .controlStyle = text(record, "control-style")};
}

} // namespace

QVariantMap recordOf(const IntentShortcut& shortcut) {
    QStringList phrases;
    for (const std::string& phrase : shortcut.phrases)
        phrases.push_back(toQt(phrase));
    QVariantMap record{{QStringLiteral("method"), toQt(shortcut.method)},
                       {QStringLiteral("title"), toQt(shortcut.title)},
                       {QStringLiteral("phrases"), phrases},
                       {QStringLiteral("short-title"), toQt(shortcut.shortTitle)},
                       {QStringLiteral("symbol"), toQt(shortcut.symbol)}};
    if (shortcut.argument)
        record.insert(kArgument, argumentRecord(*shortcut.argument));
    return record;
}

IntentShortcut shortcutOf(const QVariantMap& record) {
    IntentShortcut shortcut{.method = text(record, "method"),
                            .title = text(record, "title"),
                            .phrases = {},
                            .shortTitle = text(record, "short-title"),
                            .symbol = text(record, "symbol"),
                            .argument = std::nullopt};
    for (const QString& phrase : record.value(QStringLiteral("phrases")).toStringList())
        shortcut.phrases.push_back(phrase.toStdString());
    if (record.contains(kArgument))
        shortcut.argument = argumentOf(mapIn(record.value(kArgument)));
    return shortcut;
}

void registerIntentShortcutRecords() {
    qDBusRegisterMetaType<IntentShortcutRecords>();
}

} // namespace orvanta
