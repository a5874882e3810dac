#include <gtest/gtest.h>

#include <QString>
#include <QtGlobal>

namespace orvanta::test {
namespace {

void failAtWarnings(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text) {
    // Of the platform without a screen, whose windows have no frame to tell.
    if (text == "This plugin does not support propagateSizeHints()")
        return;
    if (type == QtWarningMsg || type == QtCriticalMsg)
        ADD_FAILURE() << "The toolkit warns: " << text.toStdString();
    if (type == QtFatalMsg)
        GTEST_LOG_(FATAL) << text.toStdString();
}

/// A warning of the toolkit, or of the views' own language, fails the test that it comes in.
class FatalWarnings final : public testing::EmptyTestEventListener {
public:
    void OnTestStart(const testing::TestInfo& /*test*/) override {
        former_ = qInstallMessageHandler(failAtWarnings);
    }

    void OnTestEnd(const testing::TestInfo& /*test*/) override { qInstallMessageHandler(former_); }

private:
    QtMessageHandler former_ = nullptr;
};

/// Listens before the first test.
class ListenForWarnings final : public testing::Environment {
public:
    void SetUp() override {
        // The test framework owns it.
        testing::UnitTest::GetInstance()->listeners().Append(new FatalWarnings);
    }
};

// The test framework owns it.
[[maybe_unused]] const testing::Environment* const kFatalWarnings =
    testing::AddGlobalTestEnvironment(new ListenForWarnings);

} // namespace
} // namespace orvanta::test
