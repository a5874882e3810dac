#include "platform/qt/session/ShowRequest.h"

#include <QLocalSocket>

namespace orvanta {
namespace {

int millisecondsTo(const QDeadlineTimer& deadline) {
    return static_cast<int>(deadline.remainingTime());
}

} // namespace

ShowRequestResult requestShow(const QString& socket, const QDeadlineTimer& deadline) {
    QLocalSocket connection;
    connection.connectToServer(socket);
    if (!connection.waitForConnected(millisecondsTo(deadline)))
        return deadline.hasExpired() ? ShowRequestResult::unanswered
                                     : ShowRequestResult::nobodyThere;
    connection.write(kShowRequest);
    const QByteArray wanted(kShowAnswer);
    while (connection.bytesAvailable() < wanted.size())
        if (!connection.waitForReadyRead(millisecondsTo(deadline)))
            // It may also have gone with our question, and somebody else may come.
            return deadline.hasExpired() ? ShowRequestResult::unanswered
                                         : ShowRequestResult::nobodyThere;
    return connection.read(wanted.size()) == wanted ? ShowRequestResult::heard
                                                    : ShowRequestResult::unanswered;
}

} // namespace orvanta
