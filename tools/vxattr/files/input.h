#pragma once

#include "vxcore/read_stream.h"
#include "vxserialize/memory_list.h"

#include <memory>
#include <string>
#include <string_view>

namespace vxattr {

/// A file, or standard input for "-", read once from start to end through a buffer.
///
/// Shows progress on standard error when that is a terminal and the input is large.
///
/// Errors. Raises Failure: the file cannot be read, or is larger than `maxSize`.
class Input final : public vxcore::IReadStream {
  public:
    /// @param maxSize  Bytes.
    Input(std::string path, unsigned long long maxSize);
    Input(Input const &) = delete;
    Input & operator=(Input const &) = delete;
    ~Input();

    /// The name of the input in messages.
    std::string const & place() const noexcept { return m_place; }

    /// The number of bytes received so far.
    unsigned long long received() const noexcept { return m_received; }

    /// The next 4096 bytes, or fewer at the end of the input. They are not consumed.
    std::string_view head();

    unsigned int read(void * buffer, unsigned int size) override;
    unsigned int skip(unsigned int size) override;
    long long size() const override;

    /// Reads all remaining bytes.
    vxcore::RefCountPtr<vxserialize::MemoryList> read_all();

  private:
    static constexpr std::size_t sm_bufferSize = 1 << 16;
    static constexpr std::size_t sm_headSize = 4096;

    /// Reads more bytes after the rest in the buffer, which must have room.
    ///
    /// @return false at the end of the input.
    bool fill();
    void show_progress();

    std::string const m_place;
    int m_file;
    unsigned long long const m_maxSize;
    long long m_fileSize = -1;         // bytes left at the start; -1: unknown
    unsigned long long m_received = 0; // bytes
    unsigned long long m_nextShown =
        0; // the value of m_received at which to show progress; 0: never
    bool m_wasShown = false;
    std::unique_ptr<char[]> const m_buffer;
    std::string_view m_rest; // bytes in the buffer that are not consumed
};

} // namespace vxattr
