// Work done beside the calling thread, on one long-lived helper thread.
#pragma once

#include <functional>
#include <memory>

namespace vantrel {

// Runs a job on the helper thread while the caller goes on, for work of a
// millisecond or so. Starting a thread per job costs tens of microseconds,
// and some systems give a new thread a processor only once its parent waits;
// a helper that is already waiting starts at once. Jobs run one at a time,
// in the order they come; a job started from the helper itself runs at once
// on it, so jobs may start jobs.
class SideWork {
  public:
    explicit SideWork(std::function<void()> job);
    // Waits for the job, then rethrows what it threw (once).
    void Wait();
    // Waits for the job; what it threw is dropped.
    ~SideWork();
    SideWork(const SideWork&) = delete;
    SideWork& operator=(const SideWork&) = delete;

    struct Task;

  private:
    std::shared_ptr<Task> task_;
};

} // namespace vantrel
