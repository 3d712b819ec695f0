#pragma once

/// Declarations without definitions of the classes of vxuri.

namespace vxuri {

class UriReference;

namespace impl {
class UriParseData;
}

} // namespace vxuri
