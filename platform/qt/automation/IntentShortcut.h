#pragma once

#include <QList>
#include <QVariantMap>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace orvanta {

/// What an intent takes besides its being asked for.
struct IntentArgument {
    std::string name;
    std::string title;
    std::string description;
    std::int64_t defaultValue = 0;
    /// How to let somebody choose it: "field", "slider" or "stepper".
    std::string controlStyle;

    friend bool operator==(const IntentArgument&, const IntentArgument&) = default;
};

/// An intent as it is shown to people.
struct IntentShortcut {
    /// The method of the bus that is the intent.
    std::string method;
    std::string title;
    std::vector<std::string> phrases;
    std::string shortTitle;
    std::string symbol;
    std::optional<IntentArgument> argument;

    friend bool operator==(const IntentShortcut&, const IntentShortcut&) = default;
};

/// Shortcuts on the bus, aa{sv}: to each key of a dictionary "method", "title", "phrases" (as),
/// "short-title" and "symbol"; for one with an argument "argument" (a{sv}) as well, of "name",
/// "title", "description", "default" (x) and "control-style".
using IntentShortcutRecords = QList<QVariantMap>;

[[nodiscard]] QVariantMap recordOf(const IntentShortcut& shortcut);

/// What a record lacks is empty.
[[nodiscard]] IntentShortcut shortcutOf(const QVariantMap& record);

/// Once before such records are sent; more than once does no harm.
void registerIntentShortcutRecords();

} // namespace orvanta
