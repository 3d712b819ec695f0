#pragma once

#include "vxcore/byte_view.h"
#include "vxcore/output_sink.h"
#include "vxserialize/export.h"
#include "vxserialize/fwd.h"

#include <cstddef>
#include <optional>
#include <string>

/// Frames: blocks of bytes in a stream that has no boundaries of its own, such as a socket, a pipe
/// or a log file. A frame is its size, 4 bytes, the most significant one first, and as many bytes.
namespace vxserialize {

/// Writes the bytes as one frame. A small frame is passed to the sink in one piece.
///
///     write_frame(sink, payload);
///
/// @raises std::length_error: more than 2^32 - 1 bytes; nothing is written. What the sink raises
///         passes through. The stream may then end inside a frame, and is of no more use.
VXSERIALIZE_API void write_frame(vxcore::OutputSink & sink, vxcore::ByteView payload);
VXSERIALIZE_API void write_frame(vxcore::OutputSink & sink, MemoryListBase const & payload);

/// Cuts a stream into its frames. The bytes may come in any pieces.
///
///     FrameReader frames;
///     while (std::size_t const size = receive(buffer)) {
///         frames.feed({buffer, size});
///         while (auto const frame = frames.next()) {
///             handle(*frame);
///         }
///     }
///     frames.finish(); // raises if the last frame is not complete
///
/// A frame above the limit is refused and skipped: `next()` raises, and then goes on with the frame
/// after it.
///
/// Memory. What was fed and not yet taken, and a small factor for growth: whatever size a frame
/// claims, memory grows with the bytes that come. With the loop above that is one frame and one
/// buffer at most. An empty reader keeps at most 64 KiB.
///
/// Threads. One reader belongs to one thread at a time.
class VXSERIALIZE_API FrameReader {
  public:
    struct Options {
        unsigned int max_size = 16u << 20; ///< bytes of a frame; one with more is refused
    };

    FrameReader() noexcept : FrameReader(Options()) {}

    explicit FrameReader(Options const & options) noexcept : m_options(options) {}

    /// Adds the next bytes of the stream, which are copied.
    ///
    /// @raises std::bad_alloc: no memory; nothing was added.
    void feed(vxcore::ByteView bytes);

    /// Takes the next frame. Returns nothing if it is not complete yet.
    ///
    /// @keeps  The bytes stay in place until the next call of `feed`.
    /// @raises error.vxserialize.data.size: the frame is larger than the limit. It is skipped,
    ///         including those bytes of it that come later.
    std::optional<vxcore::ByteView> next() VXCORE_LIFETIMEBOUND;

    /// The frame that `next` returned last; no bytes after `feed`.
    vxcore::ByteView last() const noexcept VXCORE_LIFETIMEBOUND;

    /// Call this at the end of the stream: it must not end inside a frame.
    ///
    /// @raises error.vxserialize.data.truncated: it does. Complete frames that were not taken yet
    ///         raise nothing.
    void finish() const;

    /// The number of bytes that were fed and not taken.
    std::size_t buffered() const noexcept { return m_bytes.size() - m_taken; }

  private:
    /// The size that the head at that place states. All of it must be there.
    unsigned int size_at(std::size_t place) const noexcept;

    [[noreturn]] void refuse(unsigned int size);

    Options m_options;
    std::string m_bytes;
    std::size_t m_taken = 0;    // bytes of m_bytes before the next frame
    unsigned int m_last = 0;    // size of the frame that ends there
    unsigned int m_skipped = 0; // bytes of a refused frame that are still to come
};

} // namespace vxserialize
