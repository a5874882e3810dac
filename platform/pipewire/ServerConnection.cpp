#include "platform/pipewire/ServerConnection.h"

#include "platform/pipewire/PropertyMap.h"

#include <pipewire/pipewire.h>

#include <algorithm>
#include <cerrno>
#include <utility>

namespace orvanta::pipewire {
namespace {

/// A server that restarts is back within a moment, and programs should not be unmixed for longer.
/// One that has been away for a while is not waited for so eagerly.
constexpr std::chrono::milliseconds kEagerRetry{100};
constexpr int kEagerRetries = 50;
constexpr std::chrono::milliseconds kLazyRetry{1000};

/// The first round brings the list of objects, the second what was asked about each of them, and
/// the third the answers of those that other programs keep (the session manager's metadata).
constexpr int kRounds = 3;

/// How long a server may take to answer. After that no call waits for it any more, and where an
/// error about the connection came before, the connection counts as lost.
constexpr std::chrono::milliseconds kLongestSilence{1500};

} // namespace

struct ConnectionEvents {
    static void info(void* data, const pw_core_info* info) {
        PropertyMap properties;
        properties.merge(info->props);
        auto& connection = *static_cast<ServerConnection*>(data);
        connection.defaultRate_ = properties.number("default.clock.rate").value_or(0);
    }

    static void done(void* data, std::uint32_t id, int sequence) {
        if (id != PW_ID_CORE)
            return;
        auto& connection = *static_cast<ServerConnection*>(data);
        connection.answered(sequence);
        connection.roundDone(sequence);
    }

    static void error(void* data, std::uint32_t id, int, int result, const char* message) {
        static_cast<ServerConnection*>(data)->failed(id, result, message);
    }

    static constexpr pw_core_events make() {
        pw_core_events events{};
        events.version = PW_VERSION_CORE_EVENTS;
        events.info = info;
        events.done = done;
        events.error = error;
        return events;
    }
};

ServerConnection::ServerConnection(ControlLoop& loop, std::string remoteName,
                                   std::string applicationName, ConnectionListener& listener,
                                   const Logger& logger)
    : loop_(loop),
      remoteName_(std::move(remoteName)),
      applicationName_(std::move(applicationName)),
      listener_(listener),
      logger_(logger),
      retry_(loop, [this] { connect(); }),
      loss_(loop, [this] { lose(); }),
      silence_(loop, [this] { silent(); }) {
    retry_.set(std::chrono::milliseconds(0));
}

ServerConnection::~ServerConnection() {
    if (core_ == nullptr)
        return;
    spa_hook_remove(&coreHook_);
    pw_core_disconnect(core_);
}

void ServerConnection::connect() {
    static constexpr pw_core_events events = ConnectionEvents::make();
    pw_properties* properties =
        pw_properties_new(PW_KEY_APP_NAME, applicationName_.c_str(), nullptr);
    if (!remoteName_.empty())
        pw_properties_set(properties, PW_KEY_REMOTE_NAME, remoteName_.c_str());
    core_ = pw_context_connect(loop_.context(), properties, 0);
    attempted_ = true;
    if (core_ == nullptr) {
        if (!absenceLogged_)
            logger_.error("No PipeWire server answers (%d), waiting for one", errno);
        absenceLogged_ = true;
        retry_.set(++failures_ <= kEagerRetries ? kEagerRetry : kLazyRetry);
        loop_.changed();
        return;
    }
    absenceLogged_ = false;
    failures_ = 0;
    ++connections_;
    answered_ = 0;
    roundsLeft_ = kRounds;
    pw_core_add_listener(core_, &coreHook_, &events, this);
    listener_.serverConnected(core_);
    sequence_ = pw_core_sync(core_, PW_ID_CORE, 0);
    ask();
}

void ServerConnection::roundDone(int sequence) {
    if (sequence != sequence_ || roundsLeft_ == 0)
        return;
    if (--roundsLeft_ > 0) {
        sequence_ = pw_core_sync(core_, PW_ID_CORE, 0);
        return;
    }
    logger_.info("Connected to the PipeWire server");
    listener_.serverAnswered();
    loop_.changed();
}

void ServerConnection::failed(std::uint32_t id, int result, const char* message) {
    if (id == PW_ID_CORE && result == -EPIPE) {
        // The core is in the middle of telling its listeners, so it must live a little longer.
        loss_.set(std::chrono::milliseconds(0));
        return;
    }
    // What goes before it can be asked about is nothing to speak of.
    if (result != -ENOENT)
        logger_.debug("The server reports error %d on object %u: %s", result, id,
                      message != nullptr ? message : "");
    if (id == PW_ID_CORE)
        probe();
}

void ServerConnection::ask() {
    if (questions_.empty())
        askAnew();
}

ServerConnection::Question ServerConnection::askAnew() {
    if (core_ == nullptr)
        return {};
    questions_.push_back(pw_core_sync(core_, PW_ID_CORE, 0));
    if (!silence_.isSet())
        silence_.set(kLongestSilence);
    return {connections_, answered_ + questions_.size()};
}

/// Some errors about the core are about one request, others mean that nothing will come any more,
/// and the numbers do not tell which. An answer does.
void ServerConnection::probe() {
    if (isDoubtful_)
        return;
    isDoubtful_ = true;
    ask();
    silence_.set(kLongestSilence);
}

void ServerConnection::answered(int sequence) {
    const auto found = std::find(questions_.begin(), questions_.end(), sequence);
    if (found == questions_.end())
        return;
    // The server answers in the order in which it was asked.
    answered_ += static_cast<std::uint64_t>(found - questions_.begin()) + 1;
    questions_.erase(questions_.begin(), found + 1);
    silence_.cancel();
    if (!questions_.empty())
        silence_.set(kLongestSilence);
    isDoubtful_ = false;
    if (std::exchange(isSilent_, false)) {
        logger_.info("The PipeWire server answers again");
        listener_.serverAnswersAgain();
    }
    loop_.changed();
}

void ServerConnection::silent() {
    if (isDoubtful_) {
        lose();
        return;
    }
    if (!std::exchange(isSilent_, true))
        logger_.error("The PipeWire server does not answer");
    loop_.changed();
}

void ServerConnection::lose() {
    if (core_ == nullptr)
        return;
    logger_.error("The connection to the PipeWire server is lost");
    roundsLeft_ = 0;
    questions_.clear();
    isDoubtful_ = false;
    isSilent_ = false;
    silence_.cancel();
    loss_.cancel();
    listener_.serverLost();
    spa_hook_remove(&coreHook_);
    pw_core_disconnect(core_);
    core_ = nullptr;
    retry_.set(kEagerRetry);
    loop_.changed();
}

} // namespace orvanta::pipewire
