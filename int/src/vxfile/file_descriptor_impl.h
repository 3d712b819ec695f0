#pragma once

/// Included through input_file.h and atomic_file.h.

#include "vxfile/export.h"

#include <utility>

namespace vxfile::impl {

/// A descriptor of an open file, or none. Closes it, unless it is borrowed.
class VXFILE_API FileDescriptor {
  public:
    enum class EOwner { eUs, eCaller };

    FileDescriptor() noexcept = default;

    FileDescriptor(int file, EOwner owner) noexcept
        : m_file(file), m_isOurs(owner == EOwner::eUs) {}

    FileDescriptor(FileDescriptor && other) noexcept
        : m_file(std::exchange(other.m_file, -1)), m_isOurs(other.m_isOurs) {}

    FileDescriptor & operator=(FileDescriptor && other) noexcept {
        std::swap(m_file, other.m_file);
        std::swap(m_isOurs, other.m_isOurs);
        return *this;
    }

    ~FileDescriptor() { close(); }

    /// Negative if there is none.
    int get() const noexcept { return m_file; }

    /// Closes the file. Returns false if that fails, with the reason in `errno`.
    bool close() noexcept;

  private:
    int m_file = -1;
    bool m_isOurs = false;
};

} // namespace vxfile::impl
