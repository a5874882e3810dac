#include "app/update/Download.h"

#include <QByteArray>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QString>
#include <QUrl>
#include <algorithm>
#include <system_error>

namespace orvanta {

namespace fs = std::filesystem;

namespace {

/// Below what any file system takes, with room for a number.
constexpr std::size_t kLongestName = 200;

bool isUsualInNames(char character) {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
           (character >= '0' && character <= '9') || character == '.' || character == '-' ||
           character == '_' || character == '+' || character == '~';
}

/// Names that say what they are: no folders, no hidden files, no options of a command.
std::string tamed(std::string name) {
    std::ranges::replace_if(
        name, [](char each) { return !isUsualInNames(each); }, '_');
    name.erase(0, name.find_first_not_of(".-"));
    if (name.size() > kLongestName)
        name.erase(0, name.size() - kLongestName);
    return name;
}

QString qtName(const fs::path& path) {
    return QFile::decodeName(QByteArray::fromStdString(path.native()));
}

fs::path numbered(const fs::path& folder, const std::string& name, int number) {
    if (number == 1)
        return folder / name;
    const fs::path plain(name);
    return folder / (plain.stem().string() + " (" + std::to_string(number) + ")" +
                     plain.extension().string());
}

bool hasContent(const QString& name, std::string_view content) {
    QFile file(name);
    return QFileInfo(name).isFile() && file.size() == static_cast<qint64>(content.size()) &&
           file.open(QIODevice::ReadOnly) &&
           file.readAll() ==
               QByteArray::fromRawData(content.data(), static_cast<qsizetype>(content.size()));
}

} // namespace

std::string downloadName(std::string_view url, std::string_view version) {
    const QUrl address(QString::fromUtf8(url.data(), static_cast<qsizetype>(url.size())));
    const std::string name = tamed(address.fileName(QUrl::FullyDecoded).toStdString());
    return name.empty() ? "Orvanta-" + tamed(std::string(version)) : name;
}

SavedDownload saveDownload(const fs::path& folder, const std::string& name,
                           std::string_view content) {
    std::error_code ignored;
    fs::create_directories(folder, ignored);
    for (int number = 1;; ++number) {
        const fs::path path = numbered(folder, name, number);
        if (hasContent(qtName(path), content))
            return {.file = path};
        // A link that leads nowhere is a file, too.
        if (fs::exists(fs::symlink_status(path, ignored)))
            continue;
        QSaveFile file(qtName(path));
        const bool isWritten = file.open(QIODevice::WriteOnly) &&
                               file.write(content.data(), static_cast<qint64>(content.size())) ==
                                   static_cast<qint64>(content.size());
        if (!isWritten || !file.commit())
            return {.failure = file.errorString().toStdString()};
        return {.file = path};
    }
}

} // namespace orvanta
