#pragma once

#include <string>
#include <utility>

namespace messages {

/// Owns a file descriptor.
class Descriptor {
  public:
    explicit Descriptor(int descriptor = -1) noexcept : m_descriptor(descriptor) {}

    Descriptor(Descriptor && other) noexcept
        : m_descriptor(std::exchange(other.m_descriptor, -1)) {}

    Descriptor & operator=(Descriptor && other) noexcept {
        std::swap(m_descriptor, other.m_descriptor);
        return *this;
    }

    ~Descriptor();

    /// -1: none.
    int get() const noexcept { return m_descriptor; }

  private:
    int m_descriptor;
};

/// A socket that waits for connections at `path`, for programs of the same user only. A socket that
/// a dead server has left there is replaced.
///
/// @raises std::system_error, std::runtime_error: another server listens there.
Descriptor listen_at(std::string const & path);

/// The next connection that waits at the listening socket; none if there is no more.
Descriptor accept_from(Descriptor const & listener);

/// @raises std::system_error: nothing listens at `path`.
Descriptor connect_to(std::string const & path);

/// Raises the failure in `errno` as a std::system_error.
[[noreturn]] void throw_errno(std::string const & what);

} // namespace messages
