#pragma once

#include "vxcore/export.h"

/// Declarations without definitions of everything that other headers of the family name.

namespace vxcore {

class AbsoluteTime;
class AtomicRefCount;
class ByteView;
class ErrorCode;
class ErrorComposer;
class ErrorException;
class ErrorInfo;
class ErrorParams;
class IReadStream;
class NonAtomicRefCount;
class OutputSink;
class RelativeTime;
class SimpleDateTime;
class SourceLocation;
class SourceString;
class StringKey;
class StringSource;
class StringTraceData;
class Uuid;

// Exported from the first declaration on: clang takes the visibility of a template from there, and
// with it that of everything instantiated over it.
template <typename Count>
class VXCORE_API RefCounted;
template <typename T>
class VXCORE_API RefCountPtr;
template <typename I, typename Owner>
class VXCORE_API InterfacePtr;
template <typename T>
class StaticInstance;
template <typename T>
class TransferSource;

} // namespace vxcore
