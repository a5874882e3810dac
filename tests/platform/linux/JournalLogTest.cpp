#include "platform/linux/JournalLog.h"

#include "tests/platform/linux/Pipe.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <future>
#include <map>
#include <optional>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>
#include <system_error>
#include <thread>

namespace orvanta::test {
namespace {

using Fields = std::map<std::string, std::string>;

/// The journal's end of the socket.
class FakeJournal {
public:
    explicit FakeJournal(const std::string& path) : socket_(socket(AF_UNIX, SOCK_DGRAM, 0)) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        path.copy(address.sun_path, sizeof address.sun_path - 1);
        if (bind(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
            throw std::system_error(errno, std::generic_category(), path);
    }

    FakeJournal(const FakeJournal&) = delete;
    FakeJournal& operator=(const FakeJournal&) = delete;

    ~FakeJournal() { close(socket_); }

    /// The next datagram; nothing when none has come.
    [[nodiscard]] std::optional<std::string> datagram() const {
        std::string buffer(1U << 20U, '\0');
        const ssize_t size = recv(socket_, buffer.data(), buffer.size(), MSG_DONTWAIT);
        if (size < 0)
            return std::nullopt;
        buffer.resize(static_cast<std::size_t>(size));
        return buffer;
    }

private:
    int socket_;
};

std::uint64_t littleEndian(const std::string& bytes) {
    std::uint64_t value = 0;
    for (std::size_t index = 0; index < 8; ++index)
        value |= std::uint64_t(static_cast<unsigned char>(bytes.at(index))) << (8 * index);
    return value;
}

/// The fields of one entry, read as the journal reads them.
Fields fieldsOf(std::string entry) {
    Fields fields;
    while (!entry.empty()) {
        const std::size_t lineEnd = entry.find('\n');
        const std::size_t equals = entry.substr(0, lineEnd).find('=');
        std::size_t valueStart = equals + 1;
        std::size_t valueSize = lineEnd - valueStart;
        const bool isBinary = equals == std::string::npos;
        if (isBinary) {
            valueStart = lineEnd + 1 + 8;
            valueSize = littleEndian(entry.substr(lineEnd + 1, 8));
        }
        fields[entry.substr(0, isBinary ? lineEnd : equals)] = entry.substr(valueStart, valueSize);
        EXPECT_EQ(entry.at(valueStart + valueSize), '\n');
        entry.erase(0, valueStart + valueSize + 1);
    }
    return fields;
}

class JournalLogTest : public ::testing::Test {
protected:
    [[nodiscard]] Fields received(const FakeJournal& journal) {
        const auto datagram = journal.datagram();
        return datagram ? fieldsOf(*datagram) : Fields{};
    }

    TemporaryDirectory folder_;
    std::string path_ = (folder_.path() / "socket").string();
    Pipe standardError_;
    JournalLog log_{"mixer", path_, standardError_.input()};
};

TEST_F(JournalLogTest, SendsEachMessageAsAnEntryWithItsFields) {
    const FakeJournal journal(path_);
    log_.write({LogLevel::info, "com.example.mixer", "Engine", "tap started\n"});
    EXPECT_EQ(received(journal), (Fields{{"PRIORITY", "6"},
                                         {"SYSLOG_IDENTIFIER", "mixer"},
                                         {"ORVANTA_SUBSYSTEM", "com.example.mixer"},
                                         {"ORVANTA_CATEGORY", "Engine"},
                                         {"MESSAGE", "tap started"}}));
    EXPECT_EQ(standardError_.contents(), "");
}

TEST_F(JournalLogTest, TellsTheLevelAsThePriority) {
    const FakeJournal journal(path_);
    log_.write({LogLevel::debug, "", "", "a"});
    EXPECT_EQ(received(journal)["PRIORITY"], "7");
    log_.write({LogLevel::error, "", "", "a"});
    EXPECT_EQ(received(journal)["PRIORITY"], "3");
}

TEST_F(JournalLogTest, KeepsMessagesOfSeveralLinesInOneEntry) {
    const FakeJournal journal(path_);
    log_.write({LogLevel::error, "s", "c", "first\nPRIORITY=0\n\nlast\n"});
    const Fields fields = received(journal);
    EXPECT_EQ(fields.at("MESSAGE"), "first\nPRIORITY=0\n\nlast");
    EXPECT_EQ(fields.at("PRIORITY"), "3");
    EXPECT_EQ(fields.size(), 5U);
}

TEST_F(JournalLogTest, KeepsLineFeedsInOtherFieldsFromBecomingFields) {
    const FakeJournal journal(path_);
    log_.write({LogLevel::info, "s\nMESSAGE=forged", "c\n", "true"});
    const Fields fields = received(journal);
    EXPECT_EQ(fields.at("MESSAGE"), "true");
    EXPECT_EQ(fields.at("ORVANTA_SUBSYSTEM"), "s\nMESSAGE=forged");
    EXPECT_EQ(fields.at("ORVANTA_CATEGORY"), "c\n");
}

TEST_F(JournalLogTest, KeepsEqualsSignsAndBytesOfAllKinds) {
    const FakeJournal journal(path_);
    const std::string message = "a=b \xC3\xA9" + std::string(1, '\0') + "c";
    log_.write({LogLevel::info, "s", "c", message});
    EXPECT_EQ(received(journal).at("MESSAGE"), message);
}

TEST_F(JournalLogTest, WritesToStandardErrorWhereThereIsNoJournal) {
    log_.write({LogLevel::info, "s", "Engine", "tap started"});
    EXPECT_EQ(standardError_.contents(), "info Engine: tap started\n");
}

TEST_F(JournalLogTest, FindsAJournalThatComesBack) {
    {
        const FakeJournal journal(path_);
        log_.write({LogLevel::info, "s", "c", "before"});
        EXPECT_EQ(received(journal)["MESSAGE"], "before");
    }
    log_.write({LogLevel::info, "s", "c", "meanwhile"});
    std::filesystem::remove(path_);
    const FakeJournal journal(path_);
    log_.write({LogLevel::info, "s", "c", "after"});
    EXPECT_EQ(received(journal)["MESSAGE"], "after");
    EXPECT_EQ(standardError_.contents(), "info c: meanwhile\n");
}

TEST_F(JournalLogTest, DoesNotWaitForAJournalThatIsStuck) {
    const FakeJournal journal(path_);
    constexpr int kMoreThanASocketHolds = 5000;
    for (int number = 0; number < kMoreThanASocketHolds; ++number)
        log_.write({LogLevel::info, "", "", ""});
    int taken = 0;
    while (journal.datagram())
        ++taken;
    EXPECT_GT(taken, 0);
    const std::string rest = standardError_.contents();
    const auto lines = std::count(rest.begin(), rest.end(), '\n');
    EXPECT_EQ(taken + lines, kMoreThanASocketHolds);
}

TEST_F(JournalLogTest, WaitsForNeitherWhenStandardErrorIsStuckToo) {
    const FakeJournal journal(path_);
    standardError_.fill();
    auto done = std::async(std::launch::async, [&] {
        for (int number = 0; number < 5000; ++number)
            log_.write({LogLevel::info, "", "", ""});
    });
    EXPECT_EQ(done.wait_for(std::chrono::seconds(30)), std::future_status::ready);
    while (done.wait_for(std::chrono::seconds(0)) != std::future_status::ready)
        static_cast<void>(standardError_.readSome(4096));
}

TEST_F(JournalLogTest, WritesToStandardErrorWhatIsTooLargeForTheJournal) {
    const FakeJournal journal(path_);
    // Another thread empties the pipe, which holds less than the message.
    const std::string message(1U << 20U, 'x');
    std::thread writer([&] {
        log_.write({LogLevel::info, "s", "c", message});
        standardError_.closeInput();
    });
    const std::string written = standardError_.readToEnd();
    writer.join();
    EXPECT_FALSE(journal.datagram());
    EXPECT_EQ(written, "info c: " + message + "\n");
}

TEST(JournalLog, BearsASocketPathThatIsTooLong) {
    Pipe standardError;
    JournalLog log("mixer", "/" + std::string(200, 'x'), standardError.input());
    log.write({LogLevel::info, "s", "c", "message"});
    EXPECT_EQ(standardError.contents(), "info c: message\n");
}

} // namespace
} // namespace orvanta::test
