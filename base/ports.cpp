#include "base/ports.h"

#include <chrono>
#include <cstdlib>
#include <cstring>

namespace vantrel {

std::time_t SystemClock::Now() {
    if (const char* epoch = std::getenv("SOURCE_DATE_EPOCH"); epoch && *epoch) {
        char* end = nullptr;
        long long v = std::strtoll(epoch, &end, 10);
        if (end && *end == '\0' && v >= 0) return static_cast<std::time_t>(v);
    }
    return std::time(nullptr);
}

double SystemClock::SecondsSinceMidnight() {
    using namespace std::chrono;
    auto now = system_clock::now();
    std::time_t t = system_clock::to_time_t(now);
    std::tm local{};
    localtime_r(&t, &local);
    double frac =
        static_cast<double>(duration_cast<microseconds>(now.time_since_epoch()).count() % 1000000) /
        1e6;
    return local.tm_hour * 3600.0 + local.tm_min * 60.0 + local.tm_sec + frac;
}

void DefaultRandom::Seed(double seed) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &seed, sizeof bits);
    // splitmix64 of the seed's bits, so nearby seeds give unrelated streams
    bits += 0x9e3779b97f4a7c15ULL;
    bits = (bits ^ (bits >> 30)) * 0xbf58476d1ce4e5b9ULL;
    bits = (bits ^ (bits >> 27)) * 0x94d049bb133111ebULL;
    state_ = bits ^ (bits >> 31);
    if (state_ == 0) state_ = 1; // the generator must never hold zero
}

double DefaultRandom::Next() {
    // xorshift64*
    state_ ^= state_ >> 12;
    state_ ^= state_ << 25;
    state_ ^= state_ >> 27;
    std::uint64_t r = state_ * 0x2545F4914F6CDD1DULL;
    return static_cast<double>(r >> 11) * (1.0 / 9007199254740992.0);
}

} // namespace vantrel
