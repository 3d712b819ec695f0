#pragma once

namespace vxcore {

/// A source of bytes that is read once, from front to back.
///
/// The destructor is protected: never delete through this interface (see `InterfacePtr`).
///
/// Threads. One stream belongs to one thread at a time.
///
/// Errors. The functions may raise what the source raises; readers here pass that on.
class IReadStream {
  public:
    /// Copies the next bytes to `buffer`, which has room for `size`, and returns their number,
    /// which is below `size` only at the end of the stream. A short read is therefore the last.
    virtual unsigned int read(void * buffer, unsigned int size) = 0;

    /// Skips the next bytes and returns their number, as `read` does.
    virtual unsigned int skip(unsigned int size) = 0;

    /// The bytes left, or -1 when the stream does not know.
    virtual long long size() const = 0;

  protected:
    IReadStream() = default;
    IReadStream(IReadStream const &) = default;
    IReadStream & operator=(IReadStream const &) = default;
    ~IReadStream() = default;
};

} // namespace vxcore
