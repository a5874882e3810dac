#pragma once

#include "app/shell/ShellWindows.h"

#include <algorithm>

namespace orvanta::test {

/// Windows that are only names, and what was done to them.
class FakeWindows final : public ShellWindows {
public:
    void open(std::string_view identifier) override { calls.push_back(word("open ", identifier)); }

    [[nodiscard]] std::vector<std::string> titles() const override { return open_; }

    void close(std::string_view title) override {
        calls.push_back(word("close ", title));
        if (const auto found = std::ranges::find(open_, title); found != open_.end())
            open_.erase(found);
    }

    void makeKeyAndOrderFront(std::string_view title) override {
        calls.push_back(word("front ", title));
    }

    void closeKeyWindow() override { calls.emplace_back("close key window"); }

    void activateIgnoringOtherApps() override { calls.emplace_back("activate"); }

    void show(std::vector<std::string> titles) { open_ = std::move(titles); }

    std::vector<std::string> calls;

private:
    static std::string word(std::string_view verb, std::string_view name) {
        return std::string(verb) + std::string(name);
    }

    std::vector<std::string> open_;
};

} // namespace orvanta::test
