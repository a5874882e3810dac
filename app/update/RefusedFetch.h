#pragma once

#include "app/update/UpdateFetcher.h"

#include <QTimer>
#include <string>
#include <utility>

namespace orvanta {

/// A fetch that nobody is asked for. Says so from the event loop, as all of them do.
class RefusedFetch final : public Fetch {
public:
    RefusedFetch(std::string reason, UpdateFetcher::Completion completion) {
        timer_.setSingleShot(true);
        QObject::connect(&timer_, &QTimer::timeout, &timer_,
                         [reason = std::move(reason), completion = std::move(completion)] {
                             // By a copy: it may end this object, and what is told with it.
                             const auto told = completion;
                             told({.content = {}, .failure = reason});
                         });
        timer_.start(0);
    }

private:
    QTimer timer_;
};

} // namespace orvanta
