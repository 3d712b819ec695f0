#pragma once

#include "vxserialize/containers_impl.h"
#include "vxserialize/memory_list.h"
#include "vxserialize/writer.h"

namespace vxserialize {

/// Writes the binary form into memory. The form itself is told in docs/formats/binary.md.
///
///     MemoryWriter writer;
///     writer << "port" << 8080;
///     auto list = writer.close_and_detach_memory_list();
///
/// Cost. Small elements are a few stores behind one check of the room left. Memory grows in
/// segments of 256 bytes, then twice as much each time up to 64 KiB, or what the rest of one
/// element needs; bytes once written never move.
///
/// Errors. Beside those of Writer: `std::length_error` beyond 2^32 - 1 bytes in all. Each call
/// makes its room first: when memory runs out, the writer is as before the call.
class VXSERIALIZE_API MemoryWriter final : public Writer {
  public:
    MemoryWriter();
    MemoryWriter(MemoryWriter const &) = delete;
    MemoryWriter & operator=(MemoryWriter const &) = delete;
    ~MemoryWriter() override;

    /// Bytes written so far.
    unsigned int size() const noexcept {
        return (m_list ? m_list->size() : 0) + static_cast<unsigned int>(m_cursor - m_begin);
    }

    /// A reader over what stands so far, open lists and records included. It shares the memory;
    /// what is written later does not show in it.
    ///
    /// @cost O(segments); no byte is copied.
    MemoryReader reader() const;

    /// Ends the writer and hands over what was written, also in the middle of open lists: the bytes
    /// may need wiping. Every later write raises `error.vxserialize.usage`; a second call gives an
    /// empty list.
    vxcore::RefCountPtr<MemoryList> close_and_detach_memory_list();

    void write_null() override;
    void write_bool(bool value) override;
    void write_integer(long long value) override;
    void write_uint(unsigned int value) override;
    void write_double(double value) override;
    void write_string(char const * data, unsigned int size) override;
    void write_string_key(vxcore::StringKey const & key) override;
    void write_absolute_time(vxcore::AbsoluteTime value) override;
    void write_relative_time(vxcore::RelativeTime value) override;
    void write_uuid(vxcore::Uuid const & value) override;
    void write_binary(void const * data, unsigned int size) override;
    void write_memory_list(MemoryListBase const & list) override;
    void begin_list(unsigned int count) override;
    void next_list_item() override;
    void end_list() override;
    void begin_record() override;
    void end_record() override;

  private:
    /// Place for `size` bytes in one piece, at the cursor, which stays where it is.
    unsigned char * room(unsigned int size) {
        if (static_cast<unsigned int>(m_limit - m_cursor) < size) [[unlikely]] {
            start_block(size);
        }
        return m_cursor;
    }

    using BlockPtr = vxcore::RefCountPtr<impl::MemoryBlock>;

    BlockPtr create_block(unsigned int needed);
    void enter_block(BlockPtr block) noexcept;
    void start_block(unsigned int needed);
    void check_open() const;
    void put_tag(unsigned int tag);
    void put_tag_and_bits(unsigned int tag, unsigned long long bits);
    void put_small_or_wide(unsigned int value, unsigned int smallTag, unsigned int smallMax,
                           unsigned int wideTag);
    BlockPtr put_head(unsigned int size, unsigned int smallTag, unsigned int smallMax,
                      unsigned int wideTag);
    void put_bytes(void const * data, unsigned int size, BlockPtr & next) noexcept;

    vxcore::RefCountPtr<MemoryList> m_list; // null when closed; without the present block
    BlockPtr m_block;
    unsigned char * m_begin = nullptr; // of what was written to the present block
    unsigned char * m_cursor = nullptr;
    unsigned char * m_limit = nullptr;
    impl::WriteContainers m_containers;
};

} // namespace vxserialize
