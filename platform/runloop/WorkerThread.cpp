#include "platform/runloop/WorkerThread.h"

#include <pthread.h>
#include <string>
#include <sys/resource.h>

namespace orvanta {
namespace {

int niceValue(QualityOfService quality) {
    switch (quality) {
    case QualityOfService::utility:
        return 10;
    case QualityOfService::standard:
        return 0;
    case QualityOfService::userInitiated:
        return -5;
    case QualityOfService::userInteractive:
        return -10;
    }
    return 0;
}

} // namespace

void nameThisThread(std::string_view name) {
    pthread_setname_np(pthread_self(),
                       std::string(name.substr(0, kMaximumThreadNameLength)).c_str());
}

void applyToThisThread(QualityOfService quality) {
    const int nice = niceValue(quality);
    // On Linux a thread has a nice value of its own. Going below zero may be refused, and then the
    // thread works like any other.
    if (nice != 0)
        setpriority(PRIO_PROCESS, 0, nice);
}

void endThread(std::thread& thread) {
    if (thread.get_id() == std::this_thread::get_id())
        thread.detach();
    else if (thread.joinable())
        thread.join();
}

} // namespace orvanta
