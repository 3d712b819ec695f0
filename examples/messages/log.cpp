#include "log.h"

#include "vxattribute/error_codes.h"
#include "vxattribute/query.h"
#include "vxcore/error_exception.h"

#include <algorithm>
#include <cstdio>
#include <iostream>

namespace messages {

using namespace vxattribute;

void log(std::string_view subject, std::string_view text) {
    constexpr std::size_t longest = 300;
    std::string line(subject);
    line.append(": ").append(text.substr(0, longest));
    std::replace_if(
        line.begin(), line.end(), [](char c) { return c < ' ' || c > '~'; }, '?');
    std::cout << line << std::endl;
}

std::string explain(std::exception const & failure) {
    auto const * const raised = dynamic_cast<vxcore::ErrorException const *>(&failure);
    if (raised == nullptr) {
        return failure.what();
    }
    vxcore::ErrorInfo const * cause = raised->info().get();
    while (cause->nested()) {
        cause = cause->nested().get();
    }
    std::string const & attribute = Query::bad_attribute_name(raised->info());
    if (cause->matches(error::vxattribute_query_notFound)) {
        return attribute + ": is missing";
    }
    return attribute.empty() ? cause->text() : attribute + ": " + cause->text();
}

std::string Pace::text(unsigned long long count) const {
    std::chrono::duration<double> const seconds = std::chrono::steady_clock::now() - m_start;
    double const processor =
        static_cast<double>(std::clock() - m_processor) / double{CLOCKS_PER_SEC};
    auto const messages = static_cast<double>(std::max(count, 1ull));
    char buffer[160];
    std::snprintf(buffer, sizeof buffer,
                  "%llu in %.3f s: %.0f a second, %.2f us of processor time each", count,
                  seconds.count(), messages / seconds.count(), processor / messages * 1e6);
    return buffer;
}

} // namespace messages
