#include "cli/mix/LineReader.h"

#include <gtest/gtest.h>

#include <csignal>
#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace orvanta::cli {
namespace {

using Arrival = LineReader::Arrival;

class ALineReader : public testing::Test {
protected:
    ALineReader() {
        if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends_) != 0)
            ADD_FAILURE() << "no socket pair";
    }

    ~ALineReader() override {
        finish();
        close(ends_[0]);
    }

    void write(const std::string& text) {
        ASSERT_EQ(::write(ends_[1], text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }

    void finish() {
        if (ends_[1] >= 0)
            close(ends_[1]);
        ends_[1] = -1;
    }

    int ends_[2] = {-1, -1};
    StopSignals signals_;
};

TEST_F(ALineReader, TakesLinesInTheirOrder) {
    LineReader reader(ends_[0]);
    write("one\ntwo\r\n\nthr");
    for (const char* const line : {"one", "two", ""}) {
        ASSERT_EQ(reader.wait(signals_), Arrival::line);
        EXPECT_EQ(reader.take(), line);
    }
    write("ee\n");
    ASSERT_EQ(reader.wait(signals_), Arrival::line);
    EXPECT_EQ(reader.take(), "three");
}

TEST_F(ALineReader, TakesALastLineWithoutAnEnd) {
    LineReader reader(ends_[0]);
    write("one\nlast");
    finish();
    ASSERT_EQ(reader.wait(signals_), Arrival::line);
    EXPECT_EQ(reader.take(), "one");
    ASSERT_EQ(reader.wait(signals_), Arrival::line);
    EXPECT_EQ(reader.take(), "last");
    EXPECT_EQ(reader.wait(signals_), Arrival::end);
    EXPECT_EQ(reader.wait(signals_), Arrival::end);
}

TEST_F(ALineReader, ComesToAnEndWhereThereIsNoInput) {
    const int closed = open("/dev/null", O_WRONLY | O_CLOEXEC);
    EXPECT_EQ(LineReader(closed).wait(signals_), Arrival::end);
    close(closed);
    EXPECT_EQ(LineReader(closed).wait(signals_), Arrival::end);
}

TEST_F(ALineReader, PassesOverALineThatIsTooLong) {
    LineReader reader(ends_[0]);
    const std::string longest(LineReader::longestLine, 'x');
    write(longest + "\n" + longest + "x\nshort\n");
    ASSERT_EQ(reader.wait(signals_), Arrival::line);
    EXPECT_EQ(reader.take(), longest);
    ASSERT_EQ(reader.wait(signals_), Arrival::line);
    EXPECT_EQ(reader.take(), std::nullopt);
    ASSERT_EQ(reader.wait(signals_), Arrival::line);
    EXPECT_EQ(reader.take(), "short");
}

TEST_F(ALineReader, TakesASignalBeforeALine) {
    LineReader reader(ends_[0]);
    write("one\n");
    ASSERT_EQ(raise(SIGTERM), 0);
    EXPECT_EQ(reader.wait(signals_), Arrival::signal);
    EXPECT_EQ(reader.wait(signals_), Arrival::line);
}

TEST_F(ALineReader, WaitsNoLongerThanItIsTold) {
    LineReader reader(ends_[0]);
    const auto until = std::chrono::steady_clock::now() + std::chrono::milliseconds(20);
    EXPECT_EQ(reader.wait(signals_, until), Arrival::time);
    EXPECT_GE(std::chrono::steady_clock::now(), until);
    write("late\n");
    EXPECT_EQ(reader.wait(signals_, until), Arrival::line) << "what is there is taken at any time";
}

} // namespace
} // namespace orvanta::cli
