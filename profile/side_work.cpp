#include "profile/side_work.h"

#include <condition_variable>
#include <deque>
#include <exception>
#include <mutex>
#include <thread>
#include <utility>

namespace vantrel {

struct SideWork::Task {
    std::function<void()> job;
    std::exception_ptr error;
    bool done = false;
};

namespace {

void RunJob(SideWork::Task& task) {
    try {
        task.job();
    } catch (...) {
        task.error = std::current_exception();
    }
}

// The helper thread; it starts with the first job and ends with the program.
class Helper {
  public:
    static Helper& Instance() {
        static Helper helper;
        return helper;
    }

    bool IsHelperThread() const { return std::this_thread::get_id() == thread_.get_id(); }

    void Post(std::shared_ptr<SideWork::Task> task) {
        {
            std::lock_guard<std::mutex> lock(mutex_);
            queue_.push_back(std::move(task));
        }
        work_.notify_one();
    }

    void WaitFor(const SideWork::Task& task) {
        std::unique_lock<std::mutex> lock(mutex_);
        done_.wait(lock, [&] { return task.done; });
    }

    ~Helper() {
        {
            std::lock_guard<std::mutex> lock(mutex_);
            stop_ = true;
        }
        work_.notify_one();
        thread_.join();
    }

  private:
    Helper() : thread_([this] { Run(); }) {}

    void Run() {
        std::unique_lock<std::mutex> lock(mutex_);
        for (;;) {
            work_.wait(lock, [&] { return stop_ || !queue_.empty(); });
            if (queue_.empty()) return; // stopping, and nothing is left to do
            std::shared_ptr<SideWork::Task> task = std::move(queue_.front());
            queue_.pop_front();
            lock.unlock();
            RunJob(*task);
            lock.lock();
            task->done = true;
            done_.notify_all();
        }
    }

    std::mutex mutex_;
    std::condition_variable work_, done_;
    std::deque<std::shared_ptr<SideWork::Task>> queue_;
    bool stop_ = false;
    std::thread thread_;
};

} // namespace

SideWork::SideWork(std::function<void()> job) : task_(std::make_shared<Task>()) {
    task_->job = std::move(job);
    Helper& helper = Helper::Instance();
    if (helper.IsHelperThread()) {
        RunJob(*task_);
        task_->done = true;
    } else {
        helper.Post(task_);
    }
}

void SideWork::Wait() {
    Helper::Instance().WaitFor(*task_);
    std::exception_ptr error = std::exchange(task_->error, nullptr);
    if (error) std::rethrow_exception(error);
}

SideWork::~SideWork() {
    Helper::Instance().WaitFor(*task_);
}

} // namespace vantrel
