#include <gtest/gtest.h>

#include <QGuiApplication>
#include <array>
#include <memory>
#include <string>

namespace orvanta::test {
namespace {

/// The toolkit, there for all tests of a program. It ends with them and not at the program's exit,
/// when what it needs for its end has gone already.
class GuiEnvironment final : public testing::Environment {
public:
    void SetUp() override {
        application_ = std::make_unique<QGuiApplication>(argumentCount_, arguments_.data());
    }

    void TearDown() override { application_.reset(); }

private:
    // The toolkit keeps references to both.
    std::string name_ = "tests";
    std::array<char*, 2> arguments_{name_.data(), nullptr};
    int argumentCount_ = 1;
    std::unique_ptr<QGuiApplication> application_;
};

// The test framework owns it.
[[maybe_unused]] const testing::Environment* const kEnvironment =
    testing::AddGlobalTestEnvironment(new GuiEnvironment);

} // namespace
} // namespace orvanta::test
