#pragma once

#include "tests/e2e/churn/ChurnProgram.h"
#include "tests/e2e/churn/Journal.h"
#include "tests/e2e/support/EndToEndTest.h"
#include "tests/e2e/support/Footprint.h"

#include <cstdint>
#include <list>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace orvanta::test {

/// An audio system in which things happen at random: devices, programs and daemons come and go
/// while the engine has a tap on every program but one. The same happens in every run, unless the
/// variable ORVANTA_CHURN_SEED, or else gtest's --gtest_random_seed, sets another seed for the
/// random numbers.
class ChurnedAudio : public EndToEndTest {
protected:
    ChurnedAudio();

    void SetUp() override;
    void TearDown() override;

    /// In each round a few things happen at random, soon after one another. Then every tap has 3 s,
    /// from when its program has a stream and there is a device, to play where it should. Every few
    /// rounds a device is listened to, and what gets past a tap is measured. Throws what went
    /// wrong.
    void churn(int rounds);

private:
    void play(int round);

    // What happens. Each does nothing where there is nothing to do it to.
    void happen();
    void plugDevice();
    void unplugDevice();
    void renameDevice();
    void chooseDefault();
    void startProgram();
    void endProgram();
    void reopenStream();
    void moveStream();
    void routeTap();
    void loseAllDevices();
    void restartSessionManager();
    void restartServer();
    void restartPulseBridge();
    /// The session manager has died of itself, as WirePlumber 0.4.13 does now and then.
    void recoverFromCrash();

    // How it is done.
    /// PipeWire 0.3.65 hears a client that has bound the session's metadata no more until the
    /// session manager has answered, and the session manager no more until the owner of a stream
    /// that it asks about has. Now and then the Pulse bridge is both client and owner, and they
    /// wait for one another, and everybody else for them; only a new server helps.
    void bringBackSessionManager();
    /// With these devices; it has none of the old ones any more.
    void renewServer(const std::vector<std::string>& devices);
    void startBystander();
    void plugAll(const std::vector<std::string>& names);
    void plugOne(const NullSink& sink);
    /// The program's tap loses the device when it plays there.
    void takeAway(std::string name);
    void awaitNoTapNodes() const;
    /// Whether the last time is long enough ago; counts as one if so.
    [[nodiscard]] bool mayLoseAllDevices();
    void start(ChurnProgram::Kind kind);
    void tap(ChurnProgram& program);
    void forgetTap(const ChurnProgram& program);
    /// Programs that have ended with a daemon begin anew.
    void replaceEnded();
    void replaceSilent();
    void replaceAll();
    /// Before its file is over.
    void retireOld();

    // What must hold.
    void settle();
    void settleBystander();
    [[nodiscard]] std::vector<ChurnProgram*> misplaced();
    /// Why the program is not heard where it should be; empty when it is.
    [[nodiscard]] std::string fault(ChurnProgram& program);
    [[nodiscard]] std::string faultOfBystander() const;
    [[nodiscard]] std::string deviceOf(const ChurnProgram& program);
    /// The mixer's part that watches over taps takes a lost one down and makes it anew; here the
    /// test is that part. Throws when the engine has not said that it gave the tap up.
    void tapAnew(ChurnProgram& program);
    /// A player of the server's own protocol that is moved to and fro while other streams come and
    /// go falls silent for good now and then, with its links as they should be, also where there is
    /// no mixer at all. Whether this is one; its tap is gone then.
    [[nodiscard]] bool isStuck(const ChurnProgram& program);
    /// WirePlumber 0.4.13 gives up for good a stream whose link has failed twice, as one does whose
    /// device goes while it is made; its log says so. Whether it has since the round began.
    [[nodiscard]] bool wasAnyStreamGivenUp() const;
    [[nodiscard]] double levelOfStream(const ChurnProgram& program) const;
    void listen();
    void measureLeak();
    void setAllMuted(bool areMuted);
    [[nodiscard]] Footprint footprintWithoutPrograms();
    void tell(int rounds) const;

    [[nodiscard]] std::size_t below(std::size_t bound);

    /// True with the chance of one in `n`.
    [[nodiscard]] bool oneIn(std::size_t n) { return below(n) == 0; }

    std::mt19937_64 random_;
    Journal journal_;
    std::filesystem::path file_;
    std::vector<std::string> devices_;
    std::list<ChurnProgram> programs_;
    /// Nobody taps it.
    std::unique_ptr<StreamClient> bystander_;
    std::uint64_t nextSeed_ = 100;

    bool wasDaemonRestarted_ = false;
    std::size_t givenUpBefore_ = 0;
    double lastLossOfAll_ = 0;

    int events_ = 0;
    int taps_ = 0;
    int refusedRoutes_ = 0;
    int listened_ = 0;
    int crashes_ = 0;
    int stuckStarts_ = 0;
    /// Programs that a restarted daemon left without sound.
    std::vector<std::string> forsaken_;
    /// Players that fell silent of themselves.
    std::vector<std::string> stuck_;
    std::vector<std::string> tappedAnew_;
    std::vector<double> settleSeconds_;
    std::vector<double> leakedMs_;
};

} // namespace orvanta::test
