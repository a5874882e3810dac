#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace orvanta {

/// What came of a fetch.
struct Fetched {
    std::string content;
    /// Why nothing came, for people to read; empty when all did.
    std::string failure;
};

/// A fetch under way, or over. Its end gives it up, without a word.
class Fetch {
public:
    Fetch() = default;
    Fetch(const Fetch&) = delete;
    Fetch& operator=(const Fetch&) = delete;
    virtual ~Fetch() = default;
};

/// Gets files from the web.
class UpdateFetcher {
public:
    using Completion = std::function<void(Fetched)>;

    UpdateFetcher() = default;
    UpdateFetcher(const UpdateFetcher&) = delete;
    UpdateFetcher& operator=(const UpdateFetcher&) = delete;
    virtual ~UpdateFetcher() = default;

    /// Calls `completion` once, on the main thread and never from within; it may end the fetch.
    /// What is longer than `maxBytes` fails.
    [[nodiscard]] virtual std::unique_ptr<Fetch> get(const std::string& url, std::int64_t maxBytes,
                                                     Completion completion) = 0;
};

} // namespace orvanta
