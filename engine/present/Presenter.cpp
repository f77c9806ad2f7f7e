#include "engine/present/Presenter.h"

#include "engine/present/Stage.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <functional>
#include <future>
#include <map>
#include <mutex>
#include <poll.h>
#include <pthread.h>
#include <sys/eventfd.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

namespace tide {

// The render thread: it sleeps until a picture is due, X has an event or somebody calls, and answers calls between two
// windows.
class Presenter::Renderer
{
public:
    Renderer() = default;
    ~Renderer();
    Renderer(const Renderer&) = delete;
    Renderer& operator=(const Renderer&) = delete;

    void start(); // also tries again to open a display that could not be opened before
    void stop();
    void wake();

    // Runs `question` on the render thread and waits for its answer; `otherwise` when there is no display.
    template <typename Answer, typename Question> Answer ask(Answer otherwise, Question question)
    {
        const auto answerNow = [&] { return stage_ ? question(*stage_) : otherwise; };
        if (id_ == std::this_thread::get_id())
            return answerNow();
        std::packaged_task<Answer()> task(answerNow);
        std::future<Answer> answer = task.get_future();
        return post([&task] { task(); }) ? answer.get() : otherwise;
    }

    // The same without waiting.
    template <typename News> void tell(News news)
    {
        post([this, news = std::move(news)] {
            if (stage_)
                news(*stage_);
        });
    }

private:
    bool post(std::function<void()> call); // false when the thread does not run
    void run();
    bool answerCalls();
    void sleepUntil(TimePoint due);

    const int bell_ = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    std::atomic<bool> rung_{false};
    std::atomic<std::thread::id> id_{};

    std::mutex mutex_;
    std::thread thread_;                       // mutex_
    bool running_ = false;                     // mutex_
    bool ended_ = false;                       // mutex_: it is not started again
    std::vector<std::function<void()>> calls_; // mutex_

    std::unique_ptr<Stage> stage_; // render thread
};

namespace {

// At exit the OpenGL driver takes itself down before the statics of the program go: drawing must have ended by then.
// Registered after the driver was loaded, so that it runs before the driver's own handlers; and again after each of the
// first drawings, since the driver registers more of them when it uploads and compiles for the first time.
class ExitGuard
{
public:
    static ExitGuard& instance()
    {
        static ExitGuard guard;
        return guard;
    }

    void enter(void* key, std::function<void()> stop)
    {
        static const int registered = registerAtExit();
        static_cast<void>(registered);
        const std::lock_guard lock(mutex_);
        stops_.emplace(key, std::move(stop));
    }

    void afterDrawing()
    {
        if (drawings_ < kFirstDrawings && ++drawings_ <= kFirstDrawings)
            registerAtExit();
    }

    void leave(void* key)
    {
        const std::lock_guard lock(mutex_);
        stops_.erase(key);
    }

private:
    static constexpr int kFirstDrawings = 16;

    static int registerAtExit()
    {
        return std::atexit([] { instance().stopAll(); });
    }

    // The lock is held while they stop, so that none is destroyed meanwhile; no render thread ever takes it.
    void stopAll()
    {
        const std::lock_guard lock(mutex_);
        for (const auto& [key, stop] : stops_)
            stop();
    }

    std::mutex mutex_;
    std::map<void*, std::function<void()>> stops_; // mutex_
    std::atomic<int> drawings_{0};
};

timespec toTimespec(Clock::duration length)
{
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(length);
    timespec wait{};
    wait.tv_sec = seconds.count();
    wait.tv_nsec = std::chrono::nanoseconds(length - seconds).count();
    return wait;
}

} // namespace

Presenter::Renderer::~Renderer()
{
    ExitGuard::instance().leave(this);
    stop();
    close(bell_);
}

void Presenter::Renderer::start()
{
    {
        const std::lock_guard lock(mutex_);
        if (!thread_.joinable() && !ended_) {
            running_ = true;
            thread_ = std::thread(&Renderer::run, this);
        }
    }
    post([this] {
        if (!stage_)
            stage_ = Stage::open();
    });
}

void Presenter::Renderer::stop()
{
    std::thread thread;
    {
        const std::lock_guard lock(mutex_);
        running_ = false;
        ended_ = true;
        thread.swap(thread_);
    }
    if (!thread.joinable())
        return;
    wake();
    if (id_ == std::this_thread::get_id())
        thread.detach(); // the process exits from inside a draw hook
    else
        thread.join();
}

void Presenter::Renderer::wake()
{
    if (!rung_.exchange(true))
        eventfd_write(bell_, 1);
}

bool Presenter::Renderer::post(std::function<void()> call)
{
    {
        const std::lock_guard lock(mutex_);
        if (!running_)
            return false;
        calls_.push_back(std::move(call));
    }
    wake();
    return true;
}

void Presenter::Renderer::run()
{
    id_ = std::this_thread::get_id();
    pthread_setname_np(pthread_self(), "tide-render");
    while (answerCalls()) {
        TimePoint due = TimePoint::max();
        if (stage_) {
            stage_->handleEvents();
            due = stage_->work();
            if (due == TimePoint::min()) // it has drawn
                ExitGuard::instance().afterDrawing();
        }
        sleepUntil(due);
    }
    stage_.reset();
}

// False when the thread should end; the calls that came before were answered.
bool Presenter::Renderer::answerCalls()
{
    std::vector<std::function<void()>> calls;
    bool goesOn = false;
    {
        const std::lock_guard lock(mutex_);
        calls.swap(calls_);
        goesOn = running_;
    }
    for (const auto& call : calls)
        call();
    return goesOn;
}

void Presenter::Renderer::sleepUntil(TimePoint due)
{
    const TimePoint now = Clock::now();
    if (due <= now)
        return;
    pollfd waits[] = {{bell_, POLLIN, 0}, {stage_ ? stage_->descriptor() : -1, POLLIN, 0}};
    const timespec wait = toTimespec(due - now);
    ppoll(waits, 2, due == TimePoint::max() ? nullptr : &wait, nullptr);
    if (waits[0].revents == 0)
        return;
    eventfd_t count = 0;
    eventfd_read(bell_, &count);
    rung_.exchange(false);
}

Presenter::Presenter()
    : renderer_(std::make_unique<Renderer>())
{
}

Presenter::~Presenter() = default;

bool Presenter::add(int viewId, TP_WId window, std::shared_ptr<PictureSource> source, std::shared_ptr<WarpSource> warp)
{
    if (!source)
        return false;
    renderer_->start();
    const bool added = renderer_->ask(
        false, [&](Stage& stage) { return stage.add(viewId, window, std::move(source), std::move(warp)); });
    if (added)
        ExitGuard::instance().enter(renderer_.get(), [renderer = renderer_.get()] { renderer->stop(); });
    return added;
}

void Presenter::remove(int viewId)
{
    renderer_->ask(false, [viewId](Stage& stage) {
        stage.remove(viewId);
        return true;
    });
}

bool Presenter::setHook(int viewId, DrawHook hook)
{
    return renderer_->ask(false, [&](Stage& stage) { return stage.setHook(viewId, std::move(hook)); });
}

bool Presenter::setRegion(int viewId, std::optional<Region> region)
{
    return renderer_->ask(false, [&](Stage& stage) { return stage.setRegion(viewId, region); });
}

void Presenter::refresh(std::vector<int> viewIds)
{
    renderer_->tell([viewIds = std::move(viewIds)](Stage& stage) { stage.refresh(viewIds); });
}

void Presenter::windowChanged(TP_WId window)
{
    renderer_->tell([window](Stage& stage) { stage.windowChanged(window); });
}

void Presenter::wake()
{
    renderer_->wake();
}

PresenterStats Presenter::stats(int viewId) const
{
    return renderer_->ask(PresenterStats{}, [viewId](Stage& stage) { return stage.stats(viewId); });
}

} // namespace tide
