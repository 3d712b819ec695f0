#pragma once

/// Marks what vxmoduleregistry exports. Everything else of the library is hidden.
#if defined(__GNUC__)
#define VXMODULEREGISTRY_API __attribute__((visibility("default")))
#else
#define VXMODULEREGISTRY_API
#endif
