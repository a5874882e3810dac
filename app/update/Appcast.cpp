#include "app/update/Appcast.h"

#include "app/update/VersionOrder.h"
#include "app/update/WebAddress.h"

#include <QByteArray>
#include <QString>
#include <QXmlStreamReader>
#include <algorithm>
#include <utility>

namespace orvanta {
namespace {

/// The names that feeds add to those of RSS.
constexpr QLatin1String kNamespace("http://www.andymatuschak.org/xml-namespaces/sparkle");
constexpr QLatin1String kSystem("linux");

std::string textOf(const QString& text) {
    return text.trimmed().toStdString();
}

/// Reads one item after the other.
class AppcastReader {
public:
    explicit AppcastReader(std::string_view document)
        : xml_(QByteArray(document.data(), static_cast<qsizetype>(document.size()))) {}

    std::optional<std::vector<AppcastItem>> read() {
        std::vector<AppcastItem> items;
        while (!xml_.atEnd()) {
            if (xml_.readNext() != QXmlStreamReader::StartElement ||
                xml_.name() != QLatin1String("item"))
                continue;
            if (auto item = readItem())
                items.push_back(std::move(*item));
        }
        return xml_.hasError() ? std::nullopt : std::optional(std::move(items));
    }

private:
    [[nodiscard]] bool isOurs(QLatin1String name) const {
        return xml_.namespaceUri() == kNamespace && xml_.name() == name;
    }

    [[nodiscard]] bool isPlain(QLatin1String name) const {
        return xml_.namespaceUri().isEmpty() && xml_.name() == name;
    }

    std::optional<AppcastItem> readItem() {
        item_ = {};
        isOffered_ = true;
        while (xml_.readNextStartElement())
            readElement();
        if (item_.shortVersion.empty())
            item_.shortVersion = item_.version;
        const bool isComplete =
            !item_.version.empty() && (!item_.file.empty() || !item_.page.empty());
        return isOffered_ && isComplete ? std::optional(item_) : std::nullopt;
    }

    void readElement() {
        if (isPlain(QLatin1String("enclosure"))) {
            readEnclosure();
            xml_.skipCurrentElement();
        } else if (isPlain(QLatin1String("link"))) {
            item_.page =
                safeWebAddress(textOf(xml_.readElementText(QXmlStreamReader::SkipChildElements)));
        } else if (isOurs(QLatin1String("version"))) {
            item_.version = textOf(xml_.readElementText(QXmlStreamReader::SkipChildElements));
        } else if (isOurs(QLatin1String("shortVersionString"))) {
            item_.shortVersion = textOf(xml_.readElementText(QXmlStreamReader::SkipChildElements));
        } else {
            isOffered_ = isOffered_ && !isOurs(QLatin1String("channel"));
            xml_.skipCurrentElement();
        }
    }

    void readEnclosure() {
        const auto attributes = xml_.attributes();
        const auto ours = [&](QLatin1String name) {
            return textOf(attributes.value(QString(kNamespace), name).toString());
        };
        const auto system = attributes.value(QString(kNamespace), QLatin1String("os"));
        if (!system.isEmpty() && system != kSystem)
            return;
        const std::string signature = ours(QLatin1String("edSignature"));
        if (item_.file.empty() && !signature.empty()) {
            item_.file = safeWebAddress(textOf(attributes.value(QLatin1String("url")).toString()));
            item_.fileSize = std::max(attributes.value(QLatin1String("length")).toLongLong(), 0LL);
            item_.signature = signature;
        }
        // Older feeds name the versions here.
        if (item_.version.empty())
            item_.version = ours(QLatin1String("version"));
        if (item_.shortVersion.empty())
            item_.shortVersion = ours(QLatin1String("shortVersionString"));
    }

    QXmlStreamReader xml_;
    AppcastItem item_;
    bool isOffered_ = true;
};

} // namespace

std::optional<std::vector<AppcastItem>> readAppcast(std::string_view document) {
    return AppcastReader(document).read();
}

std::optional<AppcastItem> updateFor(std::string_view version,
                                     const std::vector<AppcastItem>& items) {
    const auto newest = std::ranges::max_element(items, [](const auto& a, const auto& b) {
        return compareVersions(a.version, b.version) < 0;
    });
    if (newest == items.end() || compareVersions(newest->version, version) <= 0)
        return std::nullopt;
    return *newest;
}

} // namespace orvanta
