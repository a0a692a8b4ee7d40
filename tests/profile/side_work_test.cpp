#include "profile/side_work.h"

#include <atomic>
#include <chrono>
#include <gtest/gtest.h>
#include <stdexcept>
#include <thread>

namespace vantrel {
namespace {

TEST(SideWork, RunsBesideTheCallerAndHandsBackWhatItThrew) {
    std::thread::id ran;
    SideWork work([&] { ran = std::this_thread::get_id(); });
    work.Wait();
    EXPECT_NE(ran, std::this_thread::get_id());

    SideWork failing([] { throw std::runtime_error("disk full"); });
    EXPECT_THROW(failing.Wait(), std::runtime_error);
    EXPECT_NO_THROW(failing.Wait()); // handed back once

    // Later jobs use the same helper, one after the other.
    std::thread::id again;
    SideWork(([&] { again = std::this_thread::get_id(); })).Wait();
    EXPECT_EQ(again, ran);
}

TEST(SideWork, LeavingTheScopeWaitsAndNestedJobsRunAtOnce) {
    std::atomic<int> steps{0};
    {
        SideWork slow([&] {
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            SideWork inner([&] { ++steps; }); // from the helper: runs here and now
            inner.Wait();
            ++steps;
        });
        SideWork dropped([] { throw std::runtime_error("never asked for"); });
    }
    EXPECT_EQ(steps, 2);

    // Callers on several threads at once each get their own job done.
    std::atomic<int> done{0};
    std::thread others[4];
    for (auto& t : others)
        t = std::thread([&] {
            for (int k = 0; k < 50; ++k)
                SideWork([&] { ++done; }).Wait();
        });
    for (auto& t : others)
        t.join();
    EXPECT_EQ(done, 200);
}

} // namespace
} // namespace vantrel
