#include "platform/linux/desktop/LocaleNames.h"

#include <algorithm>

namespace orvanta::desktop {
namespace {

void addMissing(std::vector<std::string>& keys, std::string key) {
    if (std::find(keys.begin(), keys.end(), key) == keys.end())
        keys.push_back(std::move(key));
}

void addKeys(std::vector<std::string>& keys, std::string_view locale) {
    const std::string_view beforeModifier = locale.substr(0, locale.find('@'));
    const std::string modifier(locale.substr(beforeModifier.size()));
    const std::string country(beforeModifier.substr(0, beforeModifier.find('.')));
    const std::string language = country.substr(0, country.find('_'));
    if (language.empty() || language == "C" || language == "POSIX")
        return;
    for (const std::string& place : {country, language}) {
        addMissing(keys, place + modifier);
        addMissing(keys, place);
    }
}

} // namespace

std::vector<std::string> localeKeys(const std::vector<std::string>& locales) {
    std::vector<std::string> keys;
    for (const std::string& locale : locales)
        addKeys(keys, locale);
    return keys;
}

} // namespace orvanta::desktop
