#include "platform/linux/icons/IconTheme.h"

#include "platform/linux/desktop/KeyFile.h"

#include <algorithm>
#include <charconv>
#include <map>

namespace orvanta::desktop {
namespace {

constexpr int kLargestSize = 4096;
constexpr int kLargestScale = 16;
constexpr int kDefaultThreshold = 2;
constexpr std::size_t kMostFolders = 2000;

struct FolderSection {
    int size = 0;
    int scale = 1;
    int smallest = 0;
    int largest = 0;
    int threshold = kDefaultThreshold;
    std::string_view type = "Threshold";
};

/// Within the bounds; `otherwise` for what is no such number.
int boundedNumber(std::string_view text, int lowest, int highest, int otherwise) {
    int value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    return result.ec == std::errc() && value >= lowest && value <= highest ? value : otherwise;
}

void take(FolderSection& section, const KeyFileLine& line) {
    const auto size = [&] {
        return boundedNumber(line.value, 1, kLargestSize, 0);
    };
    if (line.key == "Size")
        section.size = size();
    else if (line.key == "MinSize")
        section.smallest = size();
    else if (line.key == "MaxSize")
        section.largest = size();
    else if (line.key == "Scale")
        section.scale = boundedNumber(line.value, 1, kLargestScale, 1);
    else if (line.key == "Threshold")
        section.threshold = boundedNumber(line.value, 0, kLargestSize, kDefaultThreshold);
    else if (line.key == "Type")
        section.type = line.value;
}

IconFolder folderOf(std::string_view path, const FolderSection& section) {
    int smallest = section.size;
    int largest = section.size;
    if (section.type == "Scalable") {
        smallest = section.smallest > 0 ? section.smallest : section.size;
        largest = section.largest > 0 ? section.largest : section.size;
    } else if (section.type == "Threshold") {
        smallest = std::max(1, section.size - section.threshold);
        largest = section.size + section.threshold;
    }
    return {std::string(path), section.size * section.scale, smallest * section.scale,
            largest * section.scale};
}

bool staysBelow(std::string_view path) {
    const auto names = listItems(path, '/');
    return !names.empty() && !path.starts_with('/') &&
           std::all_of(names.begin(), names.end(), isPlainName);
}

} // namespace

int IconFolder::distance(int pixels) const {
    return pixels < smallest ? smallest - pixels : std::max(0, pixels - largest);
}

IconTheme parseIconTheme(std::string_view text) {
    IconTheme theme;
    std::vector<std::string_view> paths;
    std::map<std::string_view, FolderSection> sections;
    KeyFileReader lines(text);
    while (const auto line = lines.next()) {
        if (line->group != "Icon Theme") {
            take(sections[line->group], *line);
        } else if (line->key == "Inherits") {
            for (const std::string_view name : listItems(line->value, ','))
                if (isPlainName(name))
                    theme.inherits.emplace_back(name);
        } else if (line->key == "Directories" || line->key == "ScaledDirectories") {
            const auto listed = listItems(line->value, ',');
            paths.insert(paths.end(), listed.begin(), listed.end());
        }
    }
    paths.resize(std::min(paths.size(), kMostFolders));
    for (const std::string_view path : paths) {
        const auto section = sections.find(path);
        if (section != sections.end() && section->second.size > 0 && staysBelow(path))
            theme.folders.push_back(folderOf(path, section->second));
    }
    return theme;
}

bool isPlainName(std::string_view name) {
    return !name.empty() && name != "." && name != ".." && isDisplayText(name) &&
           name.find('/') == std::string_view::npos;
}

} // namespace orvanta::desktop
