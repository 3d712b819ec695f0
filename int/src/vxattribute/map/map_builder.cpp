#include "vxattribute/map/map_builder_internal.h"

namespace vxattribute {

AttributeMap impl::MapBuilder::take(std::size_t start) {
    auto holder = vxcore::make_ref_counted<AttributeMapBase::MapHolder>();
    holder->m_arena.expect(m_elements.size() - start);
    for (auto element = m_elements.begin() + static_cast<std::ptrdiff_t>(start);
         element != m_elements.end(); ++element) {
        // For a repeated name this assigns to the present value, so the last one is kept.
        holder->find_or_make(std::move(element->first)) = std::move(element->second);
    }
    m_elements.resize(start);
    return AttributeMap(holder);
}

} // namespace vxattribute
