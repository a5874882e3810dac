#pragma once

#include "app/demo/IconTile.h"
#include "core/platform/Workspace.h"

#include <map>
#include <string>

namespace orvanta::demo {

/// The icon of a demo program: PNG files of the sizes that views ask for.
class DemoIcon final : public Icon {
public:
    /// Paints the files into `folder`, which is made where it is not there; older ones give way.
    /// Throws std::runtime_error where that is not possible. Main thread, with a QGuiApplication.
    DemoIcon(std::string key, const IconTile& tile, const std::filesystem::path& folder);

    [[nodiscard]] std::string cacheKey() const override { return key_; }

    /// The smallest that need not be enlarged, or else the largest.
    [[nodiscard]] std::optional<std::filesystem::path> imageFile(int pixels) const override;

private:
    const std::string key_;
    std::map<int, std::filesystem::path> files_;
};

} // namespace orvanta::demo
