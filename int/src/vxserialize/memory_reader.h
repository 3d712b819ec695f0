#pragma once

#include "vxcore/byte_view.h"
#include "vxserialize/containers_impl.h"
#include "vxserialize/memory_list.h"
#include "vxserialize/name_cache_impl.h"
#include "vxserialize/reader.h"

#include <string>

namespace vxserialize {

/// Reads the binary form, which docs/formats/binary.md specifies, from memory.
///
/// A copy of a reader is an independent reader at the same position. It shares the bytes.
///
///     MemoryReader reader(list); // or any bytes: a string, a vector, a pointer and a size
///     std::string name;
///     reader >> name;
///     reader.expect_end();
///
/// Cost. Elements are read directly from the segments. Up to 2,048 names are remembered, so a name
/// that comes again costs a comparison and an atomic count.
///
/// Errors. Besides those of Reader: `error.vxserialize.data.count` for a list that announces more
/// elements than bytes are left for it, `error.vxserialize.data.version` for a stream of a later
/// version. Sizes are checked before memory is allocated, so a false size makes no large
/// allocation.
class VXSERIALIZE_API MemoryReader final : public Reader {
  public:
    /// A reader without data: it is at the end, and its `memory_list()` is null.
    MemoryReader();

    /// Starts at the beginning of the list, or after the version that it may start with.
    ///
    /// @param list  May be null, which reads as an empty list. The reader keeps it alive. It must
    ///              not change while a reader uses it.
    explicit MemoryReader(vxcore::RefCountPtr<MemoryList const> list);

    /// Reads borrowed bytes without a copy of them. Starts as above.
    ///
    /// What is read never refers to the bytes: blocks are copied, so that results may outlive them.
    ///
    /// @param bytes  Must stay in place, and unchanged, while this reader or a copy of it is used.
    /// @raises std::length_error: more than 2^32 - 1 bytes.
    explicit MemoryReader(vxcore::ByteView bytes);

    /// A temporary string would be gone before the first read: keep it in a variable.
    template <std::same_as<std::string> T>
    explicit MemoryReader(T && bytes) = delete;

    /// A copy starts without remembered names, but inside the same open lists and records.
    MemoryReader(MemoryReader const & other);
    MemoryReader & operator=(MemoryReader const & other);
    ~MemoryReader() override;

    /// The whole list, whatever the position of the reader. Null if the reader has no data or
    /// borrows it.
    ///
    /// @keeps  The reference holds until the reader is assigned to or destroyed.
    vxcore::RefCountPtr<MemoryList const> const &
    memory_list() const noexcept VXCORE_LIFETIMEBOUND {
        return m_list;
    }

    /// The whole data as a list that does not depend on borrowed bytes: `memory_list()`, or a copy
    /// if the reader borrows.
    ///
    /// @raises std::bad_alloc: no memory for the copy.
    vxcore::RefCountPtr<MemoryList const> own_memory_list() const;

    /// Bytes that are not read yet.
    unsigned int bytes_left() const noexcept { return m_at.bytes_left(); }

    /// Bytes from the start of the data to the next element; the version of the form counts.
    unsigned int position() const noexcept { return m_at.position(); }

    /// True if no byte is left.
    bool at_end() const noexcept { return bytes_left() == 0; }

    /// Raises unless the reader is at the end, so that bytes after the last element are not lost
    /// without notice.
    ///
    /// @raises error.vxserialize.data: bytes follow, from the one that the message names.
    void expect_end() const;

    /// Looks at one byte. Never raises.
    EElementKind next_type() override;

    /// The reads of single elements, as in Reader. No case but strings, names and blocks allocates.
    /// Those that lie across two segments are slower.
    void read_null() override;
    bool read_if_null() override;
    bool read_bool() override;
    long long read_integer() override;
    unsigned int read_uint() override;
    double read_double() override;
    void read_string(std::string & value) override;
    vxcore::StringKey read_string_key() override;
    vxcore::AbsoluteTime read_absolute_time() override;
    vxcore::RelativeTime read_relative_time() override;
    vxcore::Uuid read_uuid() override;

    /// Both share the bytes of the block with the reader's list. They copy borrowed bytes.
    ReadStreamPtr read_binary() override;
    vxcore::RefCountPtr<MemoryList> read_binary_as_memory_list() override;

    /// Returns the announced count, or 0 below 2.
    ///
    /// @raises error.vxserialize.data.count: fewer bytes are left for the list than the announced
    ///         elements need at least.
    unsigned int begin_list() override;

    /// Looks at no byte: the count of the list says how many elements follow.
    ///
    /// @raises error.vxserialize.usage: the innermost container is no list, or more was read in it
    ///         than it has elements.
    bool has_next() override;

    /// As in Reader. The begin of a record is one byte.
    void begin_record() override;

    /// @raises error.vxserialize.data: the next byte is not the end of the record.
    void end_record() override;

  private:
    friend class impl::MemoryReaderView;

    void skip_version() noexcept;

    // What elements across two segments need. Both raise at the end of the data.
    unsigned long long take_bits_slowly(unsigned int width);
    void take_bytes(void * buffer, unsigned int size);

    [[noreturn]] void fail_type(EElementKind expected) const;
    [[noreturn]] void fail_truncated() const;
    [[noreturn]] void fail_count() const;

    vxcore::RefCountPtr<MemoryList const> m_list; // null: borrowed bytes, in one segment, or none
    MemoryListCursor m_at;
    impl::ReadContainers m_containers;
    impl::NameCache m_names;
};

} // namespace vxserialize
