#include "platform/linux/processes/ProcessScope.h"

#include "platform/linux/desktop/KeyFile.h"

#include <algorithm>
#include <optional>

namespace orvanta::desktop {
namespace {

constexpr std::string_view kScope = ".scope";
constexpr std::string_view kService = ".service";
constexpr std::size_t kLongestUnit = 255;

std::optional<unsigned> hexDigit(char letter) {
    if (letter >= '0' && letter <= '9')
        return static_cast<unsigned>(letter - '0');
    if (letter >= 'a' && letter <= 'f')
        return static_cast<unsigned>(letter - 'a') + 10;
    return std::nullopt;
}

/// systemd writes what its names cannot hold as "\x2d".
std::string unitUnescaped(std::string_view text) {
    constexpr std::size_t kEscapeLength = 4;
    std::string plain;
    while (!text.empty()) {
        const bool isEscape = text.size() >= kEscapeLength && text.starts_with("\\x");
        const auto high = isEscape ? hexDigit(text[2]) : std::nullopt;
        const auto low = isEscape ? hexDigit(text[3]) : std::nullopt;
        plain += high && low ? static_cast<char>(*high * 16 + *low) : text.front();
        text.remove_prefix(high && low ? kEscapeLength : 1);
    }
    return plain;
}

bool takePrefix(std::string_view& text, std::string_view prefix) {
    if (!text.starts_with(prefix))
        return false;
    text.remove_prefix(prefix.size());
    return true;
}

bool takeSuffix(std::string_view& text, std::string_view suffix) {
    if (!text.ends_with(suffix))
        return false;
    text.remove_suffix(suffix.size());
    return true;
}

/// Everything, and what follows each dash.
void addIDs(std::vector<std::string>& ids, std::string_view text) {
    while (!text.empty()) {
        const std::string id = unitUnescaped(text);
        std::string_view withoutSuffix = id;
        takeSuffix(withoutSuffix, ".desktop");
        ids.emplace_back(withoutSuffix);
        const auto dash = text.find('-');
        text.remove_prefix(dash == std::string_view::npos ? text.size() : dash + 1);
    }
}

/// Cuts "-0f47e9f4-3d0b-4b1f-9a53-1d5e0c3ba9d7" off: a dash and a UUID.
std::string_view withoutUUID(std::string_view text) {
    constexpr std::string_view kShape = "-xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx";
    if (text.size() <= kShape.size())
        return text;
    const std::string_view tail = text.substr(text.size() - kShape.size());
    const bool isOne =
        std::equal(tail.begin(), tail.end(), kShape.begin(), [](char letter, char shape) {
            return shape == '-' ? letter == '-' : hexDigit(letter).has_value();
        });
    return isOne ? text.substr(0, text.size() - kShape.size()) : text;
}

/// snap.<name>.<app>-<UUID>.scope, with a point for the dash in former times, or without the random
/// part of a service.
void readSnap(ProcessScope& scope, std::string_view unit) {
    const auto parts = listItems(unit, '.');
    if (parts.size() < 2)
        return;
    scope.snapName = unitUnescaped(parts[0]);
    scope.snapApp = unitUnescaped(withoutUUID(parts[1]));
}

/// app-<launcher>-<id>-<random>.scope, app-<launcher>-<id>@<random>.service; the launcher may be
/// missing.
void readApplication(ProcessScope& scope, std::string_view unit, bool isService) {
    const auto end = unit.rfind(isService ? '@' : '-');
    const std::string_view withoutRandom =
        end == std::string_view::npos ? unit : unit.substr(0, end);
    std::string_view flatpak = withoutRandom;
    if (takePrefix(flatpak, "flatpak-"))
        scope.flatpakID = unitUnescaped(flatpak);
    addIDs(scope.applicationIDs, withoutRandom);
}

/// The bus's own services: dbus-<connection>-<name>@<random>.service.
void readBusService(ProcessScope& scope, std::string_view unit) {
    const std::string_view withoutRandom = unit.substr(0, unit.rfind('@'));
    const auto dash = withoutRandom.find('-');
    if (dash != std::string_view::npos)
        addIDs(scope.applicationIDs, withoutRandom.substr(dash + 1));
}

ProcessScope scopeOfUnit(std::string_view unit) {
    ProcessScope scope;
    if (unit.size() > kLongestUnit)
        return scope;
    const bool isService = takeSuffix(unit, kService);
    if (!isService && !takeSuffix(unit, kScope))
        return scope;
    if (takePrefix(unit, "snap."))
        readSnap(scope, unit);
    else if (takePrefix(unit, "app-") || takePrefix(unit, "gnome-launched-") ||
             unit.starts_with("flatpak-"))
        readApplication(scope, unit, isService);
    else if (takePrefix(unit, "dbus-") && isService)
        readBusService(scope, unit);
    return scope;
}

/// Of "hierarchy:controllers:path", where the path may hold colons as well.
std::string_view groupPath(std::string_view line) {
    line.remove_prefix(std::min(line.size(), line.find(':')));
    line.remove_prefix(std::min(line.size(), line.find('/')));
    return line;
}

} // namespace

ProcessScope parseProcessScope(std::string_view text) {
    for (const std::string_view line : listItems(text, '\n')) {
        std::vector<std::string_view> units = listItems(groupPath(line), '/');
        std::reverse(units.begin(), units.end());
        for (const std::string_view unit : units)
            if (ProcessScope scope = scopeOfUnit(unit); scope != ProcessScope{})
                return scope;
    }
    return {};
}

} // namespace orvanta::desktop
