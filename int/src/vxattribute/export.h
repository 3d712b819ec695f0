#pragma once

/// Marks what vxattribute exports. Everything else of the library is hidden.
#if defined(__GNUC__)
#define VXATTRIBUTE_API __attribute__((visibility("default")))
#else
#define VXATTRIBUTE_API
#endif
