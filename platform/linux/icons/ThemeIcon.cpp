#include "platform/linux/icons/ThemeIcon.h"

#include <utility>

namespace orvanta::desktop {

ThemeIcon::ThemeIcon(std::string icon, std::string theme, std::shared_ptr<const IconThemes> themes)
    : icon_(std::move(icon)), theme_(std::move(theme)), themes_(std::move(themes)) {}

std::string ThemeIcon::cacheKey() const {
    return icon_.starts_with('/') ? icon_ : theme_ + ":" + icon_;
}

std::optional<std::filesystem::path> ThemeIcon::imageFile(int pixels) const {
    return themes_->fileInTheme(theme_, icon_, pixels);
}

} // namespace orvanta::desktop
