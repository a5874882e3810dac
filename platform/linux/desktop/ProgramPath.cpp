#include "platform/linux/desktop/ProgramPath.h"

#include "platform/linux/desktop/CommandLine.h"
#include "platform/linux/desktop/KeyFile.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <system_error>

namespace orvanta::desktop {

namespace fs = std::filesystem;

namespace {

/// Folders that hold programs of many packages, or a part of any package.
constexpr std::array kSharedFolders = std::to_array<std::string_view>(
    {"bin", "sbin", "games", "lib", "lib32", "lib64", "libexec", "share", "usr", "opt", "local",
     "home", "tmp", "resources", "dist", "src", "app", "x86_64-linux-gnu", "aarch64-linux-gnu"});

/// The last is where AppImages are mounted.
constexpr std::array kPackageFolders = std::to_array<std::string_view>(
    {"/usr/", "/opt/", "/bin/", "/sbin/", "/app/", "/snap/", "/var/lib/flatpak/", "/var/lib/snapd/",
     "/nix/store/", "/gnu/store/", "/tmp/.mount_"});

constexpr std::array kEndings = std::to_array<std::string_view>(
    {".py", ".pyz", ".sh", ".pl", ".rb", ".js", ".mjs", ".lua", ".jar", ".asar", ".bin", "-bin",
     ".real", ".exe", ".AppImage"});

bool isShared(std::string_view folderName) {
    return folderName.empty() || std::find(kSharedFolders.begin(), kSharedFolders.end(),
                                           folderName) != kSharedFolders.end();
}

std::string_view folderPart(std::string_view path) {
    const auto slash = path.rfind('/');
    return slash == std::string_view::npos ? std::string_view() : path.substr(0, slash);
}

std::string_view withoutEnding(std::string_view name) {
    for (const std::string_view ending : kEndings)
        if (name.ends_with(ending) && name.size() > ending.size())
            return name.substr(0, name.size() - ending.size());
    return name;
}

std::string canonicalOrSame(const fs::path& path) {
    std::error_code error;
    const fs::path canonical = fs::canonical(path, error);
    return error ? path.lexically_normal().string() : canonical.string();
}

} // namespace

bool isInstalledByPackage(std::string_view path) {
    return std::any_of(kPackageFolders.begin(), kPackageFolders.end(),
                       [path](std::string_view folder) { return path.starts_with(folder); });
}

std::string folderOf(const std::string& program) {
    return std::string(folderPart(program));
}

std::string ownFolderOf(const std::string& program) {
    const std::string_view folder = folderPart(program);
    const std::string_view folderName = fileNameOf(folder);
    const bool isNamesake =
        asciiLowerCase(folderName) == asciiLowerCase(withoutEnding(fileNameOf(program)));
    const bool isOwn = isNamesake || isInstalledByPackage(program);
    return std::string(isOwn && !isShared(folderName) ? folder : std::string_view());
}

std::vector<std::string> namesOf(const std::string& program) {
    const std::string_view file = fileNameOf(program);
    std::vector<std::string> names{std::string(file)};
    if (const std::string_view stem = withoutEnding(file); stem != file)
        names.emplace_back(stem);
    if (!isInstalledByPackage(program))
        return names;
    constexpr int kFoldersAbove = 2;
    std::string_view folder = folderPart(program);
    for (int above = 0; above < kFoldersAbove; ++above, folder = folderPart(folder))
        if (!isShared(fileNameOf(folder)))
            names.emplace_back(fileNameOf(folder));
    return names;
}

std::string withoutDeletedMark(std::string path) {
    constexpr std::string_view kMark = " (deleted)";
    std::error_code error;
    if (path.ends_with(kMark) && !fs::exists(path, error))
        path.resize(path.size() - kMark.size());
    return path;
}

std::string locatedProgram(const std::string& program, const std::vector<fs::path>& folders) {
    if (program.starts_with('/'))
        return canonicalOrSame(program);
    if (isWindowsPath(program))
        return program;
    if (program.find('/') != std::string::npos)
        return {};
    std::error_code error;
    for (const fs::path& folder : folders)
        if (fs::is_regular_file(folder / program, error))
            return canonicalOrSame(folder / program);
    return {};
}

} // namespace orvanta::desktop
