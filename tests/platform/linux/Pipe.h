#pragma once

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <string>
#include <system_error>
#include <unistd.h>

namespace orvanta::test {

/// A pipe that stands in for standard error. Holds 64 KiB.
class Pipe {
public:
    Pipe() {
        if (pipe(ends_.data()) != 0)
            throw std::system_error(errno, std::generic_category(), "pipe");
    }

    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;

    ~Pipe() {
        closeOutput();
        closeInput();
    }

    [[nodiscard]] int input() const { return ends_[1]; }

    void closeInput() {
        if (ends_[1] >= 0)
            close(ends_[1]);
        ends_[1] = -1;
    }

    /// Whoever writes from now on writes for nobody.
    void closeOutput() {
        if (ends_[0] >= 0)
            close(ends_[0]);
        ends_[0] = -1;
    }

    /// Fills the pipe to the last byte.
    void fill() const {
        const int flags = fcntl(input(), F_GETFL);
        fcntl(input(), F_SETFL, flags | O_NONBLOCK);
        while (write(input(), "x", 1) == 1) {
        }
        fcntl(input(), F_SETFL, flags);
    }

    /// What is there now, at the most this many bytes; there must be one.
    [[nodiscard]] std::string readSome(std::size_t most) const {
        std::string text(most, '\0');
        const ssize_t count = read(ends_[0], text.data(), text.size());
        text.resize(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
        return text;
    }

    /// Everything written until the input is closed.
    [[nodiscard]] std::string readToEnd() const {
        std::string text;
        std::array<char, 4096> part{};
        for (ssize_t count = 0; (count = read(ends_[0], part.data(), part.size())) > 0;)
            text.append(part.data(), static_cast<std::size_t>(count));
        return text;
    }

    /// Everything written so far. Nothing can be written any more.
    [[nodiscard]] std::string contents() {
        closeInput();
        return readToEnd();
    }

private:
    std::array<int, 2> ends_{-1, -1};
};

} // namespace orvanta::test
