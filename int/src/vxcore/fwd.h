#pragma once

/// Declarations without definitions of everything that other headers of the family name.

namespace vxcore {

class AbsoluteTime;
class AtomicRefCount;
class ErrorCode;
class ErrorComposer;
class ErrorException;
class ErrorInfo;
class ErrorParams;
class IReadStream;
class NonAtomicRefCount;
class RelativeTime;
class SimpleDateTime;
class SourceLocation;
class SourceString;
class StringKey;
class StringTraceData;
class Uuid;

template <typename Count>
class RefCounted;
template <typename T>
class RefCountPtr;
template <typename I, typename Owner>
class InterfacePtr;
template <typename T>
class StaticInstance;
template <typename T>
class TransferSource;

} // namespace vxcore
