#pragma once

/// Declarations without definitions of the classes of vxmoduleregistry.

namespace vxmoduleregistry {

class ModuleInfo;

} // namespace vxmoduleregistry
