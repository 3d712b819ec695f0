#pragma once

/// Marks what vxjson exports. Everything else of the library is hidden.
#if defined(__GNUC__)
#define VXJSON_API __attribute__((visibility("default")))
#else
#define VXJSON_API
#endif
