#pragma once

#include "vxcore/source_string.h"

#include <map>
#include <string>

namespace vxcore {

/// The parameters of a failure: texts by name, in the order of the names' bytes.
///
/// An ErrorInfo puts them into its message, where `{@name}` is the placeholder of `name`, and keeps
/// them for programs that handle the failure. Names are unique and usually literals, which are held
/// by address.
///
/// Cost. A tree node per parameter. Lookups are O(log n) and allocate nothing.
///
/// Threads. One object: many readers or one writer.
///
///     ErrorParams params;
///     params.insert_ref(SourceString("id", true)) = "1001";
///     std::string const * id = params.find_value("id");
class VXCORE_API ErrorParams {
    /// Compares by bytes. Transparent, so that a lookup by view makes no SourceString.
    struct NameOrder {
        using is_transparent = void;

        static std::string_view view(SourceString const & name) noexcept { return name.view(); }

        static std::string_view view(std::string_view name) noexcept { return name; }

        bool operator()(auto const & a, auto const & b) const noexcept { return view(a) < view(b); }
    };

  public:
    /// Iterators visit pairs of name and value. They are valid until the next change.
    using Map = std::map<SourceString, std::string, NameOrder>;
    using const_iterator = Map::const_iterator;

    /// No parameters.
    ErrorParams() = default;

    /// Takes over all parameters of the source, which is empty afterwards.
    ErrorParams(TransferSource<ErrorParams> source) noexcept { swap(source.get()); }

    /// Returns the value of `key`; inserts an empty one if there is none. The reference is valid
    /// until the next change.
    ///
    /// @raises std::bad_alloc: no memory; nothing is inserted.
    std::string & insert_ref(SourceString key) VXCORE_LIFETIMEBOUND;

    /// Returns `end()` if there is no such parameter.
    const_iterator find(SourceString const & key) const;

    /// Returns the value of the parameter `name`, or null if there is none. The pointer is valid
    /// until the next change.
    std::string const * find_value(std::string_view name) const VXCORE_LIFETIMEBOUND;

    /// All parameters, ordered by name.
    const_iterator begin() const noexcept { return m_values.begin(); }

    const_iterator end() const noexcept { return m_values.end(); }

    /// The number of parameters.
    unsigned int size() const noexcept { return static_cast<unsigned int>(m_values.size()); }

    bool empty() const noexcept { return m_values.empty(); }

    /// Exchanges all parameters in constant time.
    void swap(ErrorParams & other) noexcept { m_values.swap(other.m_values); }

    /// Lets a constructor take these parameters over: `ErrorParams taken(params.transfer());`.
    TransferSource<ErrorParams> transfer() noexcept { return TransferSource<ErrorParams>(*this); }

    /// True if names and values are the same, byte by byte.
    friend bool operator==(ErrorParams const &, ErrorParams const &) = default;

  private:
    Map m_values;
};

} // namespace vxcore
