#include "app/themes/ThemeManager.h"

namespace orvanta {
namespace {

ThemeChoice storedChoice(const UserDefaults& defaults) {
    const auto text = defaults.string(ThemeManager::defaultsKey);
    return (text ? themeChoiceFrom(*text) : std::nullopt).value_or(ThemeChoice::classic);
}

} // namespace

ThemeManager::ThemeManager(UserDefaults& defaults)
    : choice(objectWillChange, storedChoice(defaults),
             [this] { defaults_.setString(defaultsKey, rawValue(choice.get())); }),
      defaults_(defaults) {}

} // namespace orvanta
