#include "app/update/NetworkFetcher.h"

#include "app/update/NetworkFetch.h"
#include "app/update/RefusedFetch.h"
#include "app/update/WebAddress.h"

#include <QNetworkRequest>
#include <QString>
#include <QUrl>
#include <chrono>
#include <utility>

namespace orvanta {
namespace {

constexpr int kMostRedirects = 5;

QNetworkRequest requestFor(const std::string& url, Seconds silence) {
    QNetworkRequest request(QUrl(QString::fromStdString(url), QUrl::StrictMode));
    // From https: to nothing less.
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::NoLessSafeRedirectPolicy);
    request.setMaximumRedirectsAllowed(kMostRedirects);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    // The very bytes that were signed, and as many as they say.
    request.setRawHeader("Accept-Encoding", "identity");
    request.setHeader(QNetworkRequest::UserAgentHeader, QStringLiteral("Orvanta"));
    request.setTransferTimeout(
        static_cast<int>(std::chrono::duration_cast<std::chrono::milliseconds>(silence).count()));
    return request;
}

} // namespace

NetworkFetcher::NetworkFetcher(Patience patience) : patience_(patience) {}

std::unique_ptr<Fetch> NetworkFetcher::get(const std::string& url, std::int64_t maxBytes,
                                           Completion completion) {
    const std::string address = safeWebAddress(url);
    if (address.empty())
        return std::make_unique<RefusedFetch>("Its address is no safe one.", std::move(completion));
    return std::make_unique<NetworkFetch>(
        std::unique_ptr<QNetworkReply>(network_.get(requestFor(address, patience_.silence))),
        maxBytes, patience_.whole, std::move(completion));
}

} // namespace orvanta
