#pragma once

#include "vxserialize/containers_impl.h"
#include "vxserialize/memory_list.h"
#include "vxserialize/name_cache_impl.h"
#include "vxserialize/reader.h"

#include <string_view>

namespace vxserialize {

/// Reads the binary form from memory. The form itself is told in docs/formats/binary.md.
///
/// A copy of a reader is a reader of its own at the same place; it shares the bytes.
///
/// Cost. Elements are read straight from the segments. Names are remembered, some hundreds of them,
/// so a name that comes again costs a comparison and a count.
///
/// Errors. Beside those of Reader: `error.vxserialize.data.count` for a list that announces more
/// elements than bytes are left for it, `error.vxserialize.data.version` for a stream of a later
/// form. Sizes are checked before memory is taken.
class VXSERIALIZE_API MemoryReader final : public Reader {
  public:
    /// Reads nothing: it is at the end at once, and its `memory_list()` is null.
    MemoryReader();

    /// @param list  May be null, which reads as an empty one.
    explicit MemoryReader(vxcore::RefCountPtr<MemoryList const> list);

    MemoryReader(MemoryReader const & other);
    MemoryReader & operator=(MemoryReader const & other);
    ~MemoryReader() override;

    /// The whole list, wherever the reader stands.
    vxcore::RefCountPtr<MemoryList const> const &
    memory_list() const noexcept VXCORE_LIFETIMEBOUND {
        return m_list;
    }

    /// Bytes not read yet.
    unsigned int bytes_left() const noexcept { return m_at.bytes_left(); }

    EElementKind next_type() override;
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
    ReadStreamPtr read_binary() override;

    /// The block as a list that shares its bytes with this reader's.
    vxcore::RefCountPtr<MemoryList> read_binary_as_memory_list() override;

    unsigned int begin_list() override;
    bool has_next() override;
    void begin_record() override;
    void end_record() override;

  private:
    unsigned int offset() const noexcept;
    unsigned int peek_tag();
    void take_tag(unsigned int tag, EElementKind kind);
    unsigned long long take_bits(unsigned int width);
    unsigned long long take_bits_slowly(unsigned int width);
    unsigned int take_size(unsigned int smallTag, unsigned int smallCount, unsigned int wideTag,
                           EElementKind kind);
    unsigned int take_string_size();
    unsigned int take_block_size();
    void take_bytes(void * buffer, unsigned int size);

    [[noreturn]] void fail_type(EElementKind expected) const;
    [[noreturn]] void fail_truncated() const;
    [[noreturn]] void fail_count() const;

    vxcore::RefCountPtr<MemoryList const> m_list;
    MemoryListCursor m_at;
    impl::ReadContainers m_containers;
    impl::NameCache m_names;
};

} // namespace vxserialize
