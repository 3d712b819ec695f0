#pragma once

#include "vxcore/export.h"
#include "vxcore/ref_count_ptr.h"
#include "vxcore/transfer_source.h"

#include <concepts>
#include <string_view>

namespace vxcore {

/// An immutable text that is either a literal, held by address, or a shared copy.
///
/// Settings, messages and source locations are mostly literals; holding them costs no memory. The
/// bytes are any bytes, with a terminator after the last one that the size does not count.
///
/// Cost. A literal is measured once. A copied text is one shared object with its characters. A copy
/// of any SourceString is at most one reference count and does not throw.
///
/// Threads. Separate objects may be used in separate threads even when they share a text. One
/// object: many readers or one writer.
///
///     SourceString const fixed("Unknown id {@id}", true); // the address of the literal
///     SourceString const copied{std::string_view(line)};  // owns its bytes
class VXCORE_API SourceString {
  public:
    /// The empty text.
    constexpr SourceString() noexcept = default;

    /// The text up to its terminator.
    ///
    /// @param text      Not null.
    /// @param isStatic  `true`: hold the address of a text that lives as long as the program, such
    ///                  as a literal. `false`: take a copy.
    /// @raises std::bad_alloc: no memory for a copy.
    template <std::same_as<bool> Bool>
    SourceString(char const * text, Bool isStatic)
        : SourceString(isStatic ? static_text(text) : SourceString(std::string_view(text))) {}

    /// Both copy the bytes. An empty text needs no memory.
    ///
    /// @raises std::bad_alloc: no memory. std::length_error: `text` is beyond 2^32 - 1 bytes.
    SourceString(char const * data, unsigned int size);
    explicit SourceString(std::string_view text);

    /// A copy shares the text. A move or transfer leaves the source empty.
    SourceString(SourceString const & other) noexcept;
    SourceString(SourceString && other) noexcept;
    SourceString(TransferSource<SourceString> source) noexcept;
    SourceString & operator=(SourceString other) noexcept;
    ~SourceString();

    /// The bytes and their terminator; never null.
    ///
    /// @keeps  Of a literal for ever; of a copied text as long as this object or a copy of it holds
    ///         the text.
    char const * data() const noexcept VXCORE_LIFETIMEBOUND { return m_data; }

    /// Bytes, without the terminator.
    unsigned int size() const noexcept { return m_size; }

    bool empty() const noexcept { return m_size == 0; }

    /// The bytes as a view, valid as long as those of `data()`.
    std::string_view view() const noexcept VXCORE_LIFETIMEBOUND { return {m_data, m_size}; }

    void swap(SourceString & other) noexcept;

    /// Lets a constructor take the text over; this object is then empty.
    TransferSource<SourceString> transfer() noexcept { return TransferSource<SourceString>(*this); }

    /// Both compare by unsigned bytes; a prefix is less. Literal or copy makes no difference.

    friend bool operator==(SourceString const & a, SourceString const & b) noexcept {
        return a.view() == b.view();
    }

    friend bool operator<(SourceString const & a, SourceString const & b) noexcept {
        return a.view() < b.view();
    }

  private:
    static SourceString static_text(char const * text) noexcept;

    char const * m_data = "";
    unsigned int m_size = 0;
    /// What keeps a copied text; null for a literal. Of the base class, so that the type is
    /// complete wherever a SourceString is made.
    RefCountPtr<RefCounted<AtomicRefCount> const> m_buffer;
};

} // namespace vxcore
