#pragma once

#include "vxcore/absolute_time.h"
#include "vxcore/read_stream.h"
#include "vxcore/ref_count_ptr.h"
#include "vxcore/relative_time.h"
#include "vxcore/string_key.h"
#include "vxcore/uuid.h"
#include "vxserialize/element_kind.h"
#include "vxserialize/export.h"
#include "vxserialize/fwd.h"

#include <concepts>
#include <string>

namespace vxserialize {

/// A stream over one binary block together with what keeps it alive.
using ReadStreamPtr =
    vxcore::InterfacePtr<vxcore::IReadStream,
                         vxcore::RefCountPtr<vxcore::RefCounted<vxcore::AtomicRefCount>>>;

/// Gives back, in the same order, what a Writer of the same form took.
///
/// Lists are read by `has_next()`, which also closes them:
///
///     reader.begin_list();
///     while (reader.has_next()) {
///         names.push_back(reader.read_string_key());
///     }
///
/// Threads. One reader belongs to one thread at a time.
///
/// Errors. A read that does not find its element raises `error.vxserialize.data` or a code below
/// it, with the byte offset in the message. The place of the reader is unspecified then and so is a
/// string that was being read; anything else is as it was.
class VXSERIALIZE_API Reader {
  public:
    virtual ~Reader();

    /// The kind of the next element. Consumes nothing and does not raise on bad data, for which it
    /// gives `eElement_None`.
    virtual EElementKind next_type() = 0;

    virtual void read_null() = 0;

    /// Consumes the next element if it is a null element, and tells whether it did.
    virtual bool read_if_null() = 0;

    virtual bool read_bool() = 0;
    virtual long long read_integer() = 0;

    /// Reads what `write_uint` wrote. An integer is another kind.
    virtual unsigned int read_uint() = 0;

    virtual double read_double() = 0;
    virtual void read_string(std::string & value) = 0;
    virtual vxcore::StringKey read_string_key() = 0;
    virtual vxcore::AbsoluteTime read_absolute_time() = 0;
    virtual vxcore::RelativeTime read_relative_time() = 0;
    virtual vxcore::Uuid read_uuid() = 0;

    /// Steps over one binary block at once and gives a stream of known size over it. The stream may
    /// be dropped half read and may outlive the reader.
    virtual ReadStreamPtr read_binary() = 0;

    /// One binary block as a list, never null. A form may share its memory with the list; this
    /// version copies from `read_binary()`.
    virtual vxcore::RefCountPtr<MemoryList> read_binary_as_memory_list();

    /// Enters a list and gives its count, or 0 where that is not known. It is a hint: read by
    /// `has_next()`, and do not reserve more for it than a modest amount.
    ///
    /// The forms of this library say 0 below a count of 2, so that every list is left the same way.
    virtual unsigned int begin_list() = 0;

    /// True while another element of the open list follows. May be asked again until something of
    /// that element is read. False leaves the list.
    virtual bool has_next() = 0;

    virtual void begin_record() = 0;

    /// Leaves the open record, whose contents must have been read to the last.
    virtual void end_record() = 0;

  protected:
    Reader() = default;
    Reader(Reader const &) = default;
    Reader & operator=(Reader const &) = default;
};

template <std::same_as<bool> T>
Reader & operator>>(Reader & reader, T & value) {
    value = reader.read_bool();
    return reader;
}

/// 64-bit integers, by either name.
template <typename T>

requires((std::same_as<T, long> || std::same_as<T, long long>)&&sizeof(T) == 8) Reader &
operator>>(Reader & reader, T & value) {
    value = reader.read_integer();
    return reader;
}

/// As `read_uint`.
inline Reader & operator>>(Reader & reader, unsigned int & value) {
    value = reader.read_uint();
    return reader;
}

inline Reader & operator>>(Reader & reader, double & value) {
    value = reader.read_double();
    return reader;
}

inline Reader & operator>>(Reader & reader, std::string & value) {
    reader.read_string(value);
    return reader;
}

inline Reader & operator>>(Reader & reader, vxcore::Uuid & value) {
    // A temporary first: g++ 12 takes the result of a call for stored even when the call raises,
    // and drops what the caller's local variable held before.
    vxcore::Uuid const result = reader.read_uuid();
    value = result;
    return reader;
}

inline Reader & operator>>(Reader & reader, vxcore::AbsoluteTime & value) {
    // A temporary first, as for Uuid.
    vxcore::AbsoluteTime const result = reader.read_absolute_time();
    value = result;
    return reader;
}

inline Reader & operator>>(Reader & reader, vxcore::RelativeTime & value) {
    // A temporary first, as for Uuid.
    vxcore::RelativeTime const result = reader.read_relative_time();
    value = result;
    return reader;
}

/// Reads one binary block as a list, never null: an empty block gives an empty list.
VXSERIALIZE_API vxcore::RefCountPtr<MemoryList> read_memory_list_as_binary(Reader & reader);

} // namespace vxserialize
