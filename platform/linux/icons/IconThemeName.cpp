#include "platform/linux/icons/IconThemeName.h"

#include "platform/linux/desktop/KeyFile.h"
#include "platform/linux/desktop/SmallFile.h"
#include "platform/linux/icons/IconTheme.h"

#include <array>
#include <string_view>

namespace orvanta::desktop {
namespace {

constexpr std::size_t kLargestSettings = 1U << 20U;

struct Setting {
    const char* file;
    std::string_view group;
    std::string_view key;
};

/// KDE keeps GTK's settings in step with its own; the other way round nobody does.
constexpr std::array kSettings = {
    Setting{"gtk-4.0/settings.ini", "Settings", "gtk-icon-theme-name"},
    Setting{"gtk-3.0/settings.ini", "Settings", "gtk-icon-theme-name"},
    Setting{"kdeglobals", "Icons", "Theme"},
};

std::string valueOf(const Setting& setting, const DesktopFolders& folders) {
    const auto text = readSmallFile(folders.configHome / setting.file, kLargestSettings);
    if (!text)
        return {};
    KeyFileReader lines(*text);
    while (const auto line = lines.next())
        if (line->group == setting.group && line->key == setting.key && isPlainName(line->value))
            return std::string(line->value);
    return {};
}

} // namespace

std::string iconThemeName(const DesktopFolders& folders) {
    for (const Setting& setting : kSettings)
        if (std::string name = valueOf(setting, folders); !name.empty())
            return name;
    return {};
}

} // namespace orvanta::desktop
