#pragma once

#include "vxcore/export.h"
#include "vxcore/ref_count_ptr.h"
#include "vxcore/transfer_source.h"

#include <concepts>
#include <string_view>

namespace vxcore {

/// An immutable text that is either a literal, held by address, or a shared copy.
///
/// Settings, messages and source locations are mostly literals; holding them costs no memory. A
/// copy of any SourceString is at most one reference count and does not throw. The bytes are always
/// followed by a terminator.
class VXCORE_API SourceString {
  public:
    constexpr SourceString() noexcept = default;

    /// A text that lives as long as the program, such as a literal. Measured up to its terminator.
    ///
    /// @param isStatic  `true`: hold the address. `false`: take a copy.
    template <std::same_as<bool> Bool>
    SourceString(char const * text, Bool isStatic)
        : SourceString(isStatic ? static_text(text) : SourceString(std::string_view(text))) {}

    /// A copy of `size` bytes.
    SourceString(char const * data, unsigned int size);

    /// A copy of the bytes of `text`.
    explicit SourceString(std::string_view text);

    SourceString(SourceString const & other) noexcept;
    SourceString(SourceString && other) noexcept;
    SourceString(TransferSource<SourceString> source) noexcept;
    SourceString & operator=(SourceString other) noexcept;
    ~SourceString();

    char const * data() const noexcept VXCORE_LIFETIMEBOUND { return m_data; }

    unsigned int size() const noexcept { return m_size; }

    bool empty() const noexcept { return m_size == 0; }

    std::string_view view() const noexcept VXCORE_LIFETIMEBOUND { return {m_data, m_size}; }

    void swap(SourceString & other) noexcept;

    TransferSource<SourceString> transfer() noexcept { return TransferSource<SourceString>(*this); }

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
