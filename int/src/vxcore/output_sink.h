#pragma once

#include "vxcore/byte_view.h"
#include "vxcore/export.h"

#include <cstddef>
#include <iosfwd>
#include <span>
#include <string>

namespace vxcore {

/// Takes bytes, one piece after the other: a string, a buffer, a stream, or one of your own.
///
///     std::string bytes;
///     StringSink sink(bytes);
///     write_bytes(sink, map);
///
/// The destructor is protected: never delete through this interface.
///
/// Threads. One sink belongs to one thread at a time.
class OutputSink {
  public:
    /// Takes all the bytes, in order after those of earlier calls. They may change when the call
    /// has returned.
    ///
    /// @raises What the sink raises. What it then has of these bytes is up to the sink; the sinks
    ///         below say.
    virtual void write(ByteView bytes) = 0;

  protected:
    OutputSink() = default;
    OutputSink(OutputSink const &) = default;
    OutputSink & operator=(OutputSink const &) = default;
    ~OutputSink() = default;
};

/// Appends to a string.
class VXCORE_API StringSink final : public OutputSink {
  public:
    /// @param target  Must outlive the sink. What it holds is kept.
    explicit StringSink(std::string & target) noexcept : m_target(target) {}

    /// @raises std::bad_alloc, std::length_error: as `std::string::append`. The string is then as
    ///         it was.
    void write(ByteView bytes) override;

  private:
    std::string & m_target;
};

/// Fills a buffer of the caller from its start.
///
///     std::array<char, 512> buffer;
///     BufferSink sink(buffer);
///     write_bytes(sink, map);
///     send(sink.written());
class VXCORE_API BufferSink final : public OutputSink {
  public:
    /// @param buffer  Must outlive the sink.
    explicit BufferSink(std::span<char> buffer) noexcept
        : BufferSink(std::as_writable_bytes(buffer)) {}

    explicit BufferSink(std::span<unsigned char> buffer) noexcept
        : BufferSink(std::as_writable_bytes(buffer)) {}

    explicit BufferSink(std::span<std::byte> buffer) noexcept : m_buffer(buffer) {}

    /// @raises error.vxcore.output.full: the bytes do not fit. None of them is taken.
    void write(ByteView bytes) override;

    /// What the buffer holds so far.
    ByteView written() const noexcept { return {m_buffer.data(), m_size}; }

  private:
    std::span<std::byte> m_buffer;
    std::size_t m_size = 0;
};

/// Writes to a standard stream, without formatting and without a flush.
///
///     std::ofstream file("state.bin", std::ios::binary);
///     StreamSink sink(file);
///     write_bytes(sink, map);
class VXCORE_API StreamSink final : public OutputSink {
  public:
    /// @param stream  Must outlive the sink. Open files with `std::ios::binary`.
    explicit StreamSink(std::ostream & stream) noexcept : m_stream(stream) {}

    /// @raises error.vxcore.output: the stream has failed, now or earlier. It may have taken a part
    ///         of the bytes. A stream that was set to raise raises its own failure.
    void write(ByteView bytes) override;

  private:
    std::ostream & m_stream;
};

} // namespace vxcore
