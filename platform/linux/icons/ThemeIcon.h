#pragma once

#include "core/platform/Workspace.h"
#include "platform/linux/icons/IconThemes.h"

namespace orvanta::desktop {

/// An icon by its name in the icon theme, or by the path of its file. The file is looked for when
/// it is asked for, in the theme that the user had when the icon was made.
class ThemeIcon final : public Icon {
public:
    /// `icon` as IconThemes::file takes it; `theme`: the theme it is shown in.
    ThemeIcon(std::string icon, std::string theme, std::shared_ptr<const IconThemes> themes);

    /// Another one for another theme: the same name then stands for another picture.
    [[nodiscard]] std::string cacheKey() const override;
    [[nodiscard]] std::optional<std::filesystem::path> imageFile(int pixels) const override;

private:
    const std::string icon_;
    const std::string theme_;
    const std::shared_ptr<const IconThemes> themes_;
};

} // namespace orvanta::desktop
