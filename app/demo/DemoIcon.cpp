#include "app/demo/DemoIcon.h"

#include <array>
#include <iterator>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace orvanta::demo {
namespace {

/// A row's icon and a strip's, and both on finer screens.
constexpr std::array kSizes{32, 64, 128};

} // namespace

DemoIcon::DemoIcon(std::string key, const IconTile& tile, const std::filesystem::path& folder)
    : key_(std::move(key)) {
    // Where it fails, so does the saving.
    std::error_code ignored;
    std::filesystem::create_directories(folder, ignored);
    for (const int size : kSizes) {
        const auto file = folder / (key_ + "-" + std::to_string(size) + ".png");
        if (!paintTile(tile, size).save(QString::fromStdString(file.string()), "PNG"))
            throw std::runtime_error("The icon " + file.string() + " cannot be written.");
        files_[size] = file;
    }
}

std::optional<std::filesystem::path> DemoIcon::imageFile(int pixels) const {
    const auto found = files_.lower_bound(pixels);
    return found != files_.end() ? found->second : std::prev(found)->second;
}

} // namespace orvanta::demo
