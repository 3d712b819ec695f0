#pragma once

/// Marks what vxcore exports. Everything else of the library is hidden.
#if defined(__GNUC__)
#define VXCORE_API __attribute__((visibility("default")))
#else
#define VXCORE_API
#endif

/// On a function whose result points into the object it is called on: clang then warns about a
/// reference into a temporary. g++ does not know the attribute.
#if defined(__clang__)
#define VXCORE_LIFETIMEBOUND [[clang::lifetimebound]]
#else
#define VXCORE_LIFETIMEBOUND
#endif
