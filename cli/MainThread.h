#pragma once

#include "core/model/MixerViewModel.h"
#include "core/platform/RunLoop.h"

#include <functional>
#include <future>
#include <memory>
#include <type_traits>
#include <utility>

namespace orvanta::cli {

/// What `body` answers, or throws, when the run loop has come to it. From any other thread.
template <class Body>
std::invoke_result_t<Body&> callOn(RunLoop& runLoop, Body body) {
    using Packaged = std::packaged_task<std::invoke_result_t<Body&>()>;
    // Kept by the run loop too: it may still be leaving the task when the answer is there.
    const auto task = std::make_shared<Packaged>(std::move(body));
    auto answer = task->get_future();
    runLoop.post([task] { (*task)(); });
    return answer.get();
}

/// A mixer's model, made, used and ended on the main thread. Its taps end with it. For any other
/// thread.
class MainThreadModel {
public:
    /// What `make` answers, on the main thread; what that refers to must outlive it.
    MainThreadModel(RunLoop& mainRunLoop,
                    const std::function<std::shared_ptr<MixerViewModel>()>& make)
        : mainRunLoop_(mainRunLoop) {
        callOn(mainRunLoop_, [&] { model_ = make(); });
    }

    MainThreadModel(const MainThreadModel&) = delete;
    MainThreadModel& operator=(const MainThreadModel&) = delete;

    ~MainThreadModel() {
        callOn(mainRunLoop_, [this] { model_.reset(); });
    }

    /// What `body` answers for the model.
    template <class Body>
    std::invoke_result_t<Body&, MixerViewModel&> operator()(Body body) {
        return callOn(mainRunLoop_, [&] { return body(*model_); });
    }

private:
    RunLoop& mainRunLoop_;
    std::shared_ptr<MixerViewModel> model_;
};

} // namespace orvanta::cli
