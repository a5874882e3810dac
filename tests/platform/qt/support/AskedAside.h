#pragma once

#include "tests/platform/qt/support/EventLoop.h"

#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <utility>

namespace orvanta::test {

/// What `question` answers. It is asked on a thread of its own while the event loop of this one
/// runs: who asks and waits cannot answer itself.
template <class Question>
auto askedAside(Question question) {
    auto answer = std::async(std::launch::async, std::move(question));
    EXPECT_TRUE(eventuallyInEventLoop(Seconds(30), [&] {
        return answer.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
    }));
    return answer.get();
}

} // namespace orvanta::test
