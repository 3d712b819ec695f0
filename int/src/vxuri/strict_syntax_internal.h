#pragma once

namespace vxuri {

class UriReference;

namespace impl {

/// True when the components of `reference` follow the grammar of RFC 3986, appendix A.
bool is_strict_syntax(UriReference const & reference) noexcept;

} // namespace impl
} // namespace vxuri
