#pragma once

#include "core/platform/RunLoop.h"

#include <memory>
#include <string>

namespace orvanta {

/// How soon the work of a queue should get a processor, least urgent first.
enum class QualityOfService { utility, standard, userInitiated, userInteractive };

/// A task queue off the main thread.
class SerialQueue : public TaskQueue {
public:
    /// Reverse-domain name, shown by debuggers.
    [[nodiscard]] virtual const std::string& label() const = 0;
    [[nodiscard]] virtual QualityOfService qualityOfService() const = 0;

    /// Posts `task` and returns when it has run, and with it all that was due before. Not from a
    /// task of this queue.
    virtual void postAndWait(Task task) = 0;
};

/// Makes the serial queues of a program: threads in the product, virtual time in tests.
class SerialQueues {
public:
    SerialQueues() = default;
    SerialQueues(const SerialQueues&) = delete;
    SerialQueues& operator=(const SerialQueues&) = delete;
    virtual ~SerialQueues() = default;

    [[nodiscard]] virtual std::unique_ptr<SerialQueue> make(std::string label,
                                                            QualityOfService quality) = 0;
};

} // namespace orvanta
