#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace orvanta::desktop {

/// One folder of an icon theme and the sizes, in pixels of the screen, that its icons are made for.
struct IconFolder {
    std::string path; ///< below the theme
    int size = 0;
    int smallest = 0; ///< of the sizes that its icons may be drawn in
    int largest = 0;

    /// 0 where the icons are made for `pixels`, or else by how many pixels they miss it.
    [[nodiscard]] int distance(int pixels) const;
};

/// What a theme's file "index.theme" says.
struct IconTheme {
    std::vector<std::string> inherits; ///< themes to look in for what this one lacks
    std::vector<IconFolder> folders;
};

/// Folders without a usable size, and paths that lead out of the theme, are left out.
[[nodiscard]] IconTheme parseIconTheme(std::string_view text);

/// Whether a text may stand for one name below a folder: no slash, not "..".
[[nodiscard]] bool isPlainName(std::string_view name);

} // namespace orvanta::desktop
