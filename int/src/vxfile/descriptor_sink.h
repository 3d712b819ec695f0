#pragma once

#include "vxcore/output_sink.h"
#include "vxfile/export.h"

#include <cstddef>
#include <memory>
#include <string>

namespace vxfile {

/// How a DescriptorSink writes.
struct DescriptorSinkOptions {
    std::string name; ///< what messages call the file; empty: "descriptor" and its number
    std::size_t buffer_size = 0; ///< bytes collected before they are written; 0: each call writes
    bool wipe_buffer = false;    ///< wipes the buffer in the end: it may hold secrets
};

/// Writes to an open file: a plain file, a pipe, a terminal or a socket.
///
///     DescriptorSink output(STDOUT_FILENO);
///     write_message(output, map);
///
/// The file must be a blocking one. A write to a pipe or socket that nobody reads any more raises
/// the signal SIGPIPE, which ends a program that does not ignore it.
///
/// Errors. `write` and `flush` raise error.vxfile.write. Some of the bytes may have been written
/// then, so the sink is of no more use.
class VXFILE_API DescriptorSink final : public vxcore::OutputSink {
  public:
    /// @param descriptor  Stays open. Must outlive the sink.
    /// @raises std::bad_alloc: no memory for the buffer.
    explicit DescriptorSink(int descriptor, DescriptorSinkOptions options = {});
    DescriptorSink(DescriptorSink const &) = delete;
    DescriptorSink & operator=(DescriptorSink const &) = delete;

    /// Does not write: bytes in the buffer are lost without `flush()`.
    ~DescriptorSink();

    void write(vxcore::ByteView bytes) override;

    /// Writes the bytes in the buffer.
    void flush();

    /// The number of bytes passed to the system so far.
    unsigned long long written() const noexcept { return m_written; }

  private:
    void send(vxcore::ByteView bytes);

    int const m_file;
    DescriptorSinkOptions const m_options;
    std::unique_ptr<unsigned char[]> const m_buffer;
    std::size_t m_size = 0; // bytes in the buffer
    unsigned long long m_written = 0;
};

} // namespace vxfile
