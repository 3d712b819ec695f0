#pragma once

#include "vxserialize/containers_impl.h"
#include "vxserialize/memory_list.h"
#include "vxserialize/writer.h"

namespace vxserialize {

/// Writes the binary form, which docs/formats/binary.md specifies, into memory.
///
///     MemoryWriter writer;
///     writer << "port" << 8080;
///     auto list = writer.close_and_detach_memory_list();
///
/// Cost. A small element is one check of the remaining room and a few stores. Memory grows by
/// segments of 256 bytes, doubling up to 64 KiB, or by what the rest of one element needs. Written
/// bytes never move.
///
/// Errors. Besides those of Writer: `std::length_error` beyond 2^32 - 1 bytes in all. Each call
/// allocates first: if memory runs out, the writer is as before the call.
class VXSERIALIZE_API MemoryWriter final : public Writer {
  public:
    /// An open writer without elements. The first block is allocated by the first write.
    ///
    /// @raises std::bad_alloc: no memory for the list object.
    MemoryWriter();
    MemoryWriter(MemoryWriter const &) = delete;
    MemoryWriter & operator=(MemoryWriter const &) = delete;
    ~MemoryWriter() override;

    /// Bytes written so far; 0 after `close_and_detach_memory_list()`.
    unsigned int size() const noexcept {
        return (m_list ? m_list->size() : 0) + static_cast<unsigned int>(m_cursor - m_begin);
    }

    /// A reader of what is written so far, open lists and records included. It shares the memory;
    /// later writes do not show in it.
    ///
    /// @raises std::bad_alloc: no memory. The writer is as it was.
    /// @cost   O(segments); no byte is copied.
    MemoryReader reader() const;

    /// Closes the writer and returns what was written. Lists may still be open, so that a caller
    /// that failed half-way can wipe the bytes. Later writes raise `error.vxserialize.usage`; a
    /// second call returns an empty list.
    ///
    /// @cost  Constant: the list gets the memory, not a copy. The first call allocates nothing.
    vxcore::RefCountPtr<MemoryList> close_and_detach_memory_list();

    /// The writes, as in Writer. Strings and blocks are copied; only they may need more than one
    /// segment. Sizes in the stream, in bytes: 1 for null, a boolean, an integer of -8 to 55 and an
    /// unsigned one up to 31; 2 to 9 for other integers, 2 to 5 for other unsigned ones; 9 for a
    /// double or a time; 17 for a UUID. A string has 1 byte before its own if these are at most 63,
    /// a block if they are at most 23, and 2 to 5 otherwise.
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

    /// Copies the bytes of `list`, which is not kept. Segment by segment: no buffer of their size
    /// is made in between.
    void write_memory_list(MemoryListBase const & list) override;

    /// A list takes 1 to 5 bytes before its elements. Separators and ends take none.
    void begin_list(unsigned int count) override;
    void next_list_item() override;
    void end_list() override;

    /// The two ends of a record take one byte each.
    void begin_record() override;
    void end_record() override;

  private:
    friend class impl::MemoryWriterView;

    /// Returns the cursor, after which there is now room for `size` bytes in one piece.
    unsigned char * room(unsigned int size) {
        if (static_cast<unsigned int>(m_limit - m_cursor) < size) [[unlikely]] {
            start_block(size);
        }
        return m_cursor;
    }

    // Blocks are created before any byte of an element is written. Entering them cannot fail.
    using BlockPtr = vxcore::RefCountPtr<impl::MemoryBlock>;

    BlockPtr create_block(unsigned int needed); // raises; changes nothing that was written
    void finish_block() noexcept;
    void enter_block(BlockPtr block) noexcept;
    void start_block(unsigned int needed);
    void check_open() const;

    // Parts of strings and blocks.
    BlockPtr put_head(unsigned int size, impl::binary::NumberTags const & tags);
    void put_bytes(void const * data, unsigned int size, BlockPtr & next) noexcept;
    void put_block(void const * data, unsigned int size, impl::binary::NumberTags const & tags);

    vxcore::RefCountPtr<MemoryList> m_list; // full blocks; null when closed
    BlockPtr m_block;

    // The bytes written to `m_block` start at `m_begin`; the cursor is at their end.
    unsigned char * m_begin = nullptr;
    unsigned char * m_cursor = nullptr;
    unsigned char * m_limit = nullptr;
    impl::WriteContainers m_containers;
};

} // namespace vxserialize
