#pragma once

#include "app/update/UpdateFetcher.h"
#include "core/platform/RunLoop.h"

#include <QNetworkAccessManager>

namespace orvanta {

/// Gets files by HTTPS, wherever it is led within that. Keeps and sends no cookies, caches nothing.
/// Needs Qt's event loop on the thread that makes it.
class NetworkFetcher final : public UpdateFetcher {
public:
    struct Patience {
        /// With a server that says nothing.
        Seconds silence{30.0};
        /// With a whole file.
        Seconds whole{3600.0};
    };

    explicit NetworkFetcher(Patience patience);

    [[nodiscard]] std::unique_ptr<Fetch> get(const std::string& url, std::int64_t maxBytes,
                                             Completion completion) override;

private:
    const Patience patience_;
    QNetworkAccessManager network_;
};

} // namespace orvanta
