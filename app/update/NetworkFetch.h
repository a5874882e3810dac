#pragma once

#include "app/update/UpdateFetcher.h"
#include "core/platform/RunLoop.h"

#include <QByteArray>
#include <QNetworkReply>
#include <QTimer>
#include <memory>

namespace orvanta {

/// One file on its way from a server.
class NetworkFetch final : public Fetch {
public:
    /// `reply` is asked for already.
    NetworkFetch(std::unique_ptr<QNetworkReply> reply, std::int64_t maxBytes, Seconds patience,
                 UpdateFetcher::Completion completion);
    ~NetworkFetch() override;

private:
    void receiveLength();
    void receive();
    void refuse(std::string reason);
    void finish();

    const std::unique_ptr<QNetworkReply> reply_;
    const std::int64_t maxBytes_;
    const UpdateFetcher::Completion completion_;
    QByteArray content_;
    /// Why we want no more of it.
    std::string refusal_;
    QTimer deadline_;
};

} // namespace orvanta
