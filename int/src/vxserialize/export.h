#pragma once

/// Marks what vxserialize exports. All other symbols of the library are hidden.
#if defined(__GNUC__)
#define VXSERIALIZE_API __attribute__((visibility("default")))
#else
#define VXSERIALIZE_API
#endif
