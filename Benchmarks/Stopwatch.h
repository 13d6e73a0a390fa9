#pragma once

#include <algorithm>
#include <chrono>
#include <ctime>
#include <vector>

/// Both the time on the wall and the time that this thread had on a processor: on a machine with other work the second
/// one is what can be compared.
class Stopwatch {
  public:
    struct Lap {
        double wall = 0; // milliseconds
        double cpu = 0;
    };

    /// Since the start or the last lap.
    Lap lap() {
        const Instant now;
        const Lap lap{std::chrono::duration<double, std::milli>(now.wall - m_last.wall).count(), now.cpu - m_last.cpu};
        m_last = now;
        return lap;
    }

  private:
    struct Instant {
        Instant() {
            timespec time{};
            clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
            cpu = static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
        }
        std::chrono::steady_clock::time_point wall = std::chrono::steady_clock::now();
        double cpu = 0; // milliseconds
    };

    Instant m_last;
};

/// The laps of many rounds of one phase.
class Phase {
  public:
    void add(const Stopwatch::Lap& lap) {
        m_wall.push_back(lap.wall);
        m_cpu.push_back(lap.cpu);
    }
    double wall() const { return median(m_wall); }
    double cpu() const { return median(m_cpu); }

  private:
    static double median(std::vector<double> values) {
        const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
        std::nth_element(values.begin(), middle, values.end());
        return *middle;
    }

    std::vector<double> m_wall;
    std::vector<double> m_cpu;
};
