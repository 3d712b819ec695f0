#pragma once

#include "vxcore/absolute_time.h"
#include "vxcore/ref_count_ptr.h"
#include "vxcore/relative_time.h"
#include "vxcore/string_key.h"
#include "vxcore/text_size.h"
#include "vxcore/uuid.h"
#include "vxserialize/export.h"
#include "vxserialize/fwd.h"

#include <concepts>
#include <cstddef>
#include <string_view>

namespace vxserialize {

/// Writes a sequence of elements in some form, from which a Reader reads them in the same order.
///
/// Elements follow each other, or are inside lists and records:
///
///     writer.begin_list(2);              // exactly two elements follow
///     writer << "port" << 8080;          // one element of the list may be several primitives
///     writer.next_list_item();           // between two elements only
///     writer << "host" << "x";
///     writer.end_list();
///
/// A form overrides the functions below; callers mostly use `<<`. Byte counts are 32 bits wide.
/// What is written is not kept: arguments need to live during the call only. How to end a stream,
/// and to get what was written, is up to the form: see MemoryWriter and TextWriter.
///
/// Cost. One virtual call per element.
///
/// Threads. One writer belongs to one thread at a time.
///
/// Errors. The forms of this library raise `error.vxserialize.usage` for calls in a wrong order (a
/// list closed with another count than announced, a record closed as a list, an element after the
/// end) and `error.vxserialize.depth` beyond `max_open_containers`. The writer is then as before
/// the call.
class VXSERIALIZE_API Writer {
  public:
    /// Ends nothing: an open list stays open in what was written.
    virtual ~Writer();

    /// Each writes one element of the kind in its name. An integer takes any 64-bit number.
    virtual void write_null() = 0;
    virtual void write_bool(bool value) = 0;
    virtual void write_integer(long long value) = 0;

    /// Writes another kind of element than `write_integer`, for type tags and tokens. Only
    /// `read_uint` reads it.
    virtual void write_uint(unsigned int value) = 0;

    /// Preserves every bit pattern, -0.0 and the payload of a NaN included.
    virtual void write_double(double value) = 0;

    /// Writes any bytes; they are not checked. `data` may be null if `size` is 0.
    virtual void write_string(char const * data, unsigned int size) = 0;

    /// Writes a name: the same kind of element as a string. `read_string_key` reads it.
    virtual void write_string_key(vxcore::StringKey const & key) = 0;

    /// Each writes one element of the kind in its name, with all ticks and all bytes.
    virtual void write_absolute_time(vxcore::AbsoluteTime value) = 0;
    virtual void write_relative_time(vxcore::RelativeTime value) = 0;
    virtual void write_uuid(vxcore::Uuid const & value) = 0;

    /// Writes one block of bytes. `data` may be null if `size` is 0.
    virtual void write_binary(void const * data, unsigned int size) = 0;

    /// Writes the bytes of a list as one block, like `write_binary`. This implementation first
    /// copies them into one piece; the forms of this library write segment by segment.
    virtual void write_memory_list(MemoryListBase const & list);

    /// Opens a list of exactly `count` elements. The list itself is a primitive of the element
    /// around it.
    ///
    /// @raises error.vxserialize.depth: `max_open_containers` lists and records are open.
    virtual void begin_list(unsigned int count) = 0;

    /// Separates two elements of the open list. Not called before the first or after the last.
    ///
    /// @raises error.vxserialize.usage: no list is the innermost container, or nothing was written
    ///         since it began or since the last separator.
    virtual void next_list_item() = 0;

    /// Closes the open list, which must have as many elements as announced.
    ///
    /// @raises error.vxserialize.usage: it has not, or the innermost container is no list.
    virtual void end_list() = 0;

    /// Opens a record: a fixed sequence of elements that counts as one. Its reader has to know how
    /// many there are; `next_list_item` is not called.
    ///
    /// @raises error.vxserialize.depth: as `begin_list`.
    virtual void begin_record() = 0;

    /// Closes the open record.
    ///
    /// @raises error.vxserialize.usage: the innermost container is no record.
    virtual void end_record() = 0;

  protected:
    Writer() = default;
    Writer(Writer const &) = default;
    Writer & operator=(Writer const &) = default;
};

/// Signed integers up to 64 bits. `<<` converts no other type: a pointer must not become a boolean,
/// nor a character a number. Cast to one of the types first.
template <typename T>
concept WritableInteger =
    std::same_as<T, int> || std::same_as<T, long> || std::same_as<T, long long>;

// The operators return the writer, so that calls can be chained. Each raises what its function
// raises; the elements before it in the chain are then written.

/// As `write_bool`.
template <std::same_as<bool> T>
Writer & operator<<(Writer & writer, T value) {
    writer.write_bool(value);
    return writer;
}

/// As `write_integer`.
template <WritableInteger T>
Writer & operator<<(Writer & writer, T value) {
    writer.write_integer(value);
    return writer;
}

/// As `write_uint`.
template <std::same_as<unsigned int> T>
Writer & operator<<(Writer & writer, T value) {
    writer.write_uint(value);
    return writer;
}

/// As `write_double`.
template <std::same_as<double> T>
Writer & operator<<(Writer & writer, T value) {
    writer.write_double(value);
    return writer;
}

/// As `write_string`, for `std::string`, views and null-terminated text.
///
/// @raises std::length_error: more than 2^32 - 1 bytes.
inline Writer & operator<<(Writer & writer, std::string_view value) {
    writer.write_string(value.data(), vxcore::text_size(value.size()));
    return writer;
}

/// A null pointer is no text. For the null element call `write_null`.
Writer & operator<<(Writer & writer, std::nullptr_t) = delete;

/// The others, each as the write of the type.
inline Writer & operator<<(Writer & writer, vxcore::Uuid const & value) {
    writer.write_uuid(value);
    return writer;
}

inline Writer & operator<<(Writer & writer, vxcore::AbsoluteTime value) {
    writer.write_absolute_time(value);
    return writer;
}

inline Writer & operator<<(Writer & writer, vxcore::RelativeTime value) {
    writer.write_relative_time(value);
    return writer;
}

/// Writes the bytes of `list` as one binary block. A null list becomes an empty block.
VXSERIALIZE_API void
write_memory_list_as_binary(Writer & writer, vxcore::RefCountPtr<MemoryList const> const & list);

} // namespace vxserialize
