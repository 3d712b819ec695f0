#pragma once

/// Marks the exported symbols of vxfile. All other symbols of the library are hidden.
#if defined(__GNUC__)
#define VXFILE_API __attribute__((visibility("default")))
#else
#define VXFILE_API
#endif
