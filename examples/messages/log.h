#pragma once

#include <chrono>
#include <ctime>
#include <exception>
#include <string>
#include <string_view>

namespace messages {

/// Prints one line, `subject: text`, and flushes it. Peers choose parts of both, so control
/// characters are replaced and long lines cut: nobody can forge a line.
void log(std::string_view subject, std::string_view text);

/// One line about a failure: the attribute at fault, if there is one, and the innermost reason. The
/// outer ones may show whole messages.
std::string explain(std::exception const & failure);

/// Measures messages from its construction on.
class Pace {
  public:
    /// "1000 in 0.004 s: 250000 a second, 1.9 us of processor time each". The time is that of this
    /// process.
    std::string text(unsigned long long count) const;

  private:
    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
    std::clock_t m_processor = std::clock();
};

} // namespace messages
