#pragma once

/// Marks what vxserialize exports. Everything else of the library is hidden.
#if defined(__GNUC__)
#define VXSERIALIZE_API __attribute__((visibility("default")))
#else
#define VXSERIALIZE_API
#endif
