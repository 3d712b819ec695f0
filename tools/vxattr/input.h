#pragma once

#include "vxcore/read_stream.h"
#include "vxserialize/memory_list.h"

#include <memory>
#include <string>
#include <string_view>

namespace vxattr {

/// A file, or standard input for "-", read once from front to back through a buffer.
///
/// Shows on standard error how far it is when that is a terminal and the input is large.
///
/// Errors. Raises Failure: the file cannot be read, or is larger than it may be.
class Input final : public vxcore::IReadStream {
  public:
    /// @param maxSize  Bytes.
    Input(std::string path, unsigned long long maxSize);
    Input(Input const &) = delete;
    Input & operator=(Input const &) = delete;
    ~Input();

    /// As messages call it.
    std::string const & place() const noexcept { return m_place; }

    /// Bytes that came so far.
    unsigned long long received() const noexcept { return m_received; }

    /// The next bytes, 4096 of them or up to the end, without passing over them.
    std::string_view head();

    unsigned int read(void * buffer, unsigned int size) override;
    unsigned int skip(unsigned int size) override;
    long long size() const override;

    /// All that is left.
    vxcore::RefCountPtr<vxserialize::MemoryList> read_all();

  private:
    static constexpr std::size_t sm_bufferSize = 1 << 16;
    static constexpr std::size_t sm_headSize = 4096;

    /// Adds to what is left in the buffer, which has room. False at the end.
    bool fill();
    void show_progress();

    std::string const m_place;
    int m_file;
    unsigned long long const m_maxSize;
    long long m_fileSize = -1;          // not known
    unsigned long long m_received = 0;  // bytes that the file gave
    unsigned long long m_nextShown = 0; // bytes at which progress is shown again; 0: never
    bool m_wasShown = false;
    std::unique_ptr<char[]> const m_buffer;
    std::string_view m_rest; // of what stands in the buffer
};

} // namespace vxattr
