#include "vxattribute/redaction.h"

#include "vxattribute/make_value.h"
#include "vxattribute/map/nested_maps_internal.h"

#include <unordered_set>
#include <vector>

namespace vxattribute {

namespace {

using Element = impl::MapsCursor::Element;

/// The maps of one value that are being searched, and their copies once something was replaced.
class OpenMaps {
  public:
    explicit OpenMaps(std::span<AttributeMap const> maps) noexcept
        : m_originals(maps), m_cursor(maps) {}

    /// The next element of the maps; null at the end of the last one.
    Element const * next_element() {
        m_element = m_cursor.next_element();
        while (m_element == nullptr && m_cursor.next_map()) {
            ++m_opened;
            m_element = m_cursor.next_element();
        }
        return m_element;
    }

    /// Replaces the value of the element that was returned last, in the copy of its map. The first
    /// replacement makes the copies, so that values without one stay shared. The walk continues in
    /// the originals, which never change.
    void replace(AttributeValue value) {
        if (!is_changed()) {
            m_copies.assign(m_originals.begin(), m_originals.end());
        }
        WritableAttributeMapRef(m_copies[m_opened - 1]).add(m_element->first, std::move(value));
    }

    bool is_changed() const noexcept { return !m_copies.empty(); }

    /// All the maps after the replacements; empty when there were none.
    std::span<AttributeMap const> copies() const noexcept { return m_copies; }

  private:
    std::span<AttributeMap const> m_originals;
    impl::MapsCursor m_cursor;
    std::size_t m_opened = 0;
    Element const * m_element = nullptr;
    std::vector<AttributeMap> m_copies;
};

} // namespace

AttributeMap redacted(AttributeMapBase const & map, std::span<AttributeName const> names) {
    std::unordered_set<AttributeName> const hidden(names.begin(), names.end());
    AttributeMap const root(map);
    // A walk with a list in place of recursion. The bottom entry is the map itself, as if it were a
    // value of one map. A changed inner value replaces the element at which the outer walk is.
    std::vector<OpenMaps> open;
    open.emplace_back(std::span(&root, 1));
    while (true) {
        if (Element const * const element = open.back().next_element()) {
            if (hidden.contains(element->first)) {
                open.back().replace("(redacted)");
            } else if (impl::holds_maps(element->second)) {
                open.emplace_back(impl::maps_of(element->second));
            }
            continue;
        }
        OpenMaps const & done = open.back();
        if (open.size() == 1) {
            return done.is_changed() ? done.copies().front() : root;
        }
        AttributeValue copy;
        if (done.is_changed()) {
            copy = make_list(done.copies());
        }
        open.pop_back();
        if (!copy.is_null()) {
            open.back().replace(std::move(copy));
        }
    }
}

} // namespace vxattribute
