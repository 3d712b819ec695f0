#pragma once

#include "vxfile/input_file.h"

#include <string>

namespace vxattr {

/// A file, or standard input for "-". Shows progress on standard error when that is a terminal and
/// the input is large.
class Input final : public vxfile::InputFile {
  public:
    /// @param maxSize  Bytes.
    Input(std::string const & path, unsigned long long maxSize);
    Input(Input const &) = delete;
    Input & operator=(Input const &) = delete;

    /// Clears the progress.
    ~Input() override;

    /// The name of the input in messages.
    std::string const & place() const noexcept { return name(); }

  private:
    void received_more() override;

    long long const m_fileSize;         // bytes; -1: unknown
    unsigned long long m_nextShown = 0; // the bytes received at which to show progress; 0: never
    bool m_wasShown = false;
};

} // namespace vxattr
