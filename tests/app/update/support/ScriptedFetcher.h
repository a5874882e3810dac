#pragma once

#include "app/update/UpdateFetcher.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace orvanta::test {

/// The web as the test tells it. Keeps what is asked for until the test answers.
class ScriptedFetcher final : public UpdateFetcher {
public:
    struct Request {
        std::string url;
        std::int64_t maxBytes = 0;
    };

    std::vector<Request> requests;

    [[nodiscard]] std::unique_ptr<Fetch> get(const std::string& url, std::int64_t maxBytes,
                                             Completion completion) override {
        requests.push_back({.url = url, .maxBytes = maxBytes});
        auto fetch = std::make_unique<ScriptedFetch>(*this);
        waiting_ = fetch.get();
        completion_ = std::move(completion);
        return fetch;
    }

    /// Whether an answer is waited for.
    [[nodiscard]] bool isWaitedFor() const { return waiting_ != nullptr; }

    void deliver(const std::string& content) { answer({.content = content, .failure = {}}); }

    void fail(const std::string& reason) { answer({.content = {}, .failure = reason}); }

private:
    struct ScriptedFetch final : Fetch {
        explicit ScriptedFetch(ScriptedFetcher& web) : fetcher(web) {}

        ~ScriptedFetch() override {
            if (fetcher.waiting_ == this)
                fetcher.waiting_ = nullptr;
        }

        ScriptedFetcher& fetcher;
    };

    void answer(Fetched fetched) {
        waiting_ = nullptr;
        const auto completion = std::exchange(completion_, nullptr);
        completion(std::move(fetched));
    }

    ScriptedFetch* waiting_ = nullptr;
    Completion completion_;
};

} // namespace orvanta::test
