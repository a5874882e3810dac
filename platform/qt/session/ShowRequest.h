#pragma once

#include <QByteArray>
#include <QDeadlineTimer>
#include <QString>

namespace orvanta {

/// What a start that is not the first says, and what it is answered.
inline constexpr char kShowRequest[] = "show\n";
inline constexpr char kShowAnswer[] = "shown\n";

/// What became of a request.
enum class ShowRequestResult {
    heard,
    nobodyThere, ///< Nobody listens, or not any more.
    unanswered
};

/// Asks whoever listens at the socket to show itself, and waits for the answer until then.
[[nodiscard]] ShowRequestResult requestShow(const QString& socket, const QDeadlineTimer& deadline);

} // namespace orvanta
