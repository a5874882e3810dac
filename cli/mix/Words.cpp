#include "cli/mix/Words.h"

#include "cli/mix/CommandError.h"
#include "core/services/crash/UTF8.h"

#include <fmt/format.h>

#include <algorithm>

namespace orvanta::cli {
namespace {

constexpr char kQuote = '"';
constexpr char kEscape = '\\';

bool isBlank(char byte) {
    return byte == ' ' || byte == '\t';
}

bool isControl(char byte) {
    const auto code = static_cast<unsigned char>(byte);
    return (code < 0x20 && byte != '\t') || code == 0x7F;
}

/// Walks over one line, byte by byte.
class WordReader {
public:
    explicit WordReader(std::string_view line) : rest_(line) {}

    std::vector<std::string> read() {
        for (; !rest_.empty(); rest_.remove_prefix(1)) {
            if (rest_.front() == kQuote)
                toggleQuotes();
            else if (isBlank(rest_.front()) && !isQuoted_)
                endWord();
            else
                take();
        }
        if (isQuoted_)
            throw CommandError("A quote has no end.");
        endWord();
        return std::move(words_);
    }

private:
    void toggleQuotes() {
        isQuoted_ = !isQuoted_;
        // "" is a word, too.
        isInWord_ = true;
    }

    void endWord() {
        if (isInWord_)
            words_.push_back(std::move(word_));
        word_.clear();
        isInWord_ = false;
    }

    void take() {
        const bool isEscape = isQuoted_ && rest_.size() > 1 && rest_.front() == kEscape &&
                              (rest_[1] == kQuote || rest_[1] == kEscape);
        if (isEscape)
            rest_.remove_prefix(1);
        word_ += rest_.front();
        isInWord_ = true;
    }

    std::string_view rest_;
    std::vector<std::string> words_;
    std::string word_;
    bool isInWord_ = false;
    bool isQuoted_ = false;
};

} // namespace

std::vector<std::string> wordsOf(std::string_view line) {
    if (std::ranges::any_of(line, isControl) || !crash::isUTF8(line))
        throw CommandError("The line holds what is no text.");
    return WordReader(line).read();
}

std::string inQuotes(std::string_view text) {
    std::string result(1, kQuote);
    for (const char byte : text) {
        if (byte == kQuote || byte == kEscape)
            result += kEscape;
        result += isControl(byte) || byte == '\t' ? '?' : byte;
    }
    result += kQuote;
    return result;
}

std::string enumerated(Words parts) {
    if (parts.size() < 2)
        return parts.empty() ? std::string() : parts.front();
    return fmt::format("{} and {}", fmt::join(parts.first(parts.size() - 1), ", "), parts.back());
}

} // namespace orvanta::cli
