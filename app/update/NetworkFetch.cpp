#include "app/update/NetworkFetch.h"

#include <chrono>
#include <utility>

namespace orvanta {
namespace {

constexpr qint64 kReadAhead = 1 << 20;

std::string reasonOf(const QNetworkReply& reply) {
    // The toolkit's own way to give a silent server up.
    if (reply.error() == QNetworkReply::OperationCanceledError)
        return "The server does not answer.";
    return reply.errorString().toStdString();
}

} // namespace

NetworkFetch::NetworkFetch(std::unique_ptr<QNetworkReply> reply, std::int64_t maxBytes,
                           Seconds patience, UpdateFetcher::Completion completion)
    : reply_(std::move(reply)), maxBytes_(maxBytes), completion_(std::move(completion)) {
    // A server that sends without end is not listened to either.
    reply_->setReadBufferSize(kReadAhead);
    QObject::connect(reply_.get(), &QNetworkReply::metaDataChanged, &deadline_,
                     [this] { receiveLength(); });
    QObject::connect(reply_.get(), &QNetworkReply::readyRead, &deadline_, [this] { receive(); });
    // Queued: the completion may end this object, and the reply with it.
    QObject::connect(
        reply_.get(), &QNetworkReply::finished, &deadline_, [this] { finish(); },
        Qt::QueuedConnection);
    deadline_.setSingleShot(true);
    QObject::connect(&deadline_, &QTimer::timeout, &deadline_,
                     [this] { refuse("It took too long."); });
    deadline_.start(std::chrono::duration_cast<std::chrono::milliseconds>(patience));
}

NetworkFetch::~NetworkFetch() {
    QObject::disconnect(reply_.get(), nullptr, &deadline_, nullptr);
    reply_->abort();
}

void NetworkFetch::receiveLength() {
    const auto length = reply_->header(QNetworkRequest::ContentLengthHeader);
    if (length.isValid() && length.toLongLong() > maxBytes_)
        refuse("It is larger than it should be.");
}

void NetworkFetch::receive() {
    content_ += reply_->readAll();
    if (content_.size() > maxBytes_)
        refuse("It is larger than it should be.");
}

void NetworkFetch::refuse(std::string reason) {
    if (!refusal_.empty())
        return;
    refusal_ = std::move(reason);
    reply_->abort();
}

void NetworkFetch::finish() {
    deadline_.stop();
    if (refusal_.empty() && reply_->error() == QNetworkReply::NoError)
        receive();
    Fetched fetched;
    if (!refusal_.empty())
        fetched.failure = refusal_;
    else if (reply_->error() != QNetworkReply::NoError)
        fetched.failure = reasonOf(*reply_);
    else
        fetched.content = content_.toStdString();
    // Last, and by a copy: it may end this object.
    const auto completion = completion_;
    completion(std::move(fetched));
}

} // namespace orvanta
