#pragma once

/// The limits that keep hostile data from exhausting memory or stack. Exceeding one raises
/// `error.vxserialize.depth`.
namespace vxserialize {

/// The most lists and records that may be open at once, in readers and writers alike: what can be
/// written can be read, and no stream makes its reader recurse deeper.
inline constexpr unsigned int max_open_containers = 512;

/// The most links of a chain of ErrorInfo in a stream.
inline constexpr unsigned int max_error_chain = 64;

} // namespace vxserialize
