#pragma once

#include "vxcore/source_string.h"

#include <map>
#include <string>

namespace vxcore {

/// The parameters of a failure: texts by name, in the order of the names' bytes.
class VXCORE_API ErrorParams {
    /// Compares by bytes. Transparent, so that a lookup by view makes no SourceString.
    struct NameOrder {
        using is_transparent = void;

        static std::string_view view(SourceString const & name) noexcept { return name.view(); }

        static std::string_view view(std::string_view name) noexcept { return name; }

        bool operator()(auto const & a, auto const & b) const noexcept { return view(a) < view(b); }
    };

  public:
    using Map = std::map<SourceString, std::string, NameOrder>;
    using const_iterator = Map::const_iterator;

    ErrorParams() = default;

    ErrorParams(TransferSource<ErrorParams> source) noexcept { swap(source.get()); }

    /// Returns the value of `key`; inserts an empty one if there is none. The reference is valid
    /// until the next change.
    std::string & insert_ref(SourceString key) VXCORE_LIFETIMEBOUND;

    /// Returns `end()` if there is no such parameter.
    const_iterator find(SourceString const & key) const;

    /// Returns the value of the parameter `name`, or null if there is none.
    std::string const * find_value(std::string_view name) const VXCORE_LIFETIMEBOUND;

    const_iterator begin() const noexcept { return m_values.begin(); }

    const_iterator end() const noexcept { return m_values.end(); }

    unsigned int size() const noexcept { return static_cast<unsigned int>(m_values.size()); }

    bool empty() const noexcept { return m_values.empty(); }

    void swap(ErrorParams & other) noexcept { m_values.swap(other.m_values); }

    TransferSource<ErrorParams> transfer() noexcept { return TransferSource<ErrorParams>(*this); }

    friend bool operator==(ErrorParams const &, ErrorParams const &) = default;

  private:
    Map m_values;
};

} // namespace vxcore
