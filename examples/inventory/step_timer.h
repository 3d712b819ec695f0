#pragma once

#include <algorithm>
#include <chrono>
#include <iomanip>
#include <iostream>

namespace inventory {

/// Prints a line for each step of the program.
class StepTimer {
  public:
    /// Prints a step that took all the time since the previous call, or since construction.
    void print(char const * step, std::size_t bytes, unsigned int attributes) {
        std::chrono::duration<double, std::nano> const time = Clock::now() - m_start;
        std::cout << std::left << std::setw(13) << step << std::right << std::setw(9) << bytes
                  << " bytes" << std::fixed << std::setprecision(1) << std::setw(8)
                  << static_cast<double>(bytes) * 1e3 / time.count() << " MB/s" << std::setw(8)
                  << time.count() / std::max(attributes, 1u) << " ns per attribute\n";
        m_start = Clock::now();
    }

  private:
    using Clock = std::chrono::steady_clock;

    Clock::time_point m_start = Clock::now();
};

} // namespace inventory
