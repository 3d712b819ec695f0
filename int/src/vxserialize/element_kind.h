#pragma once

namespace vxserialize {

/// The kinds of elements, which `Reader::next_type()` returns. The numbers are part of the stream
/// format of values.
enum EElementKind : int {
    /// No element: the end of the data or of the open container, or bytes that are no element. Any
    /// read raises an error that names the fault.
    eElement_None = 0,

    /// No value, as of a null pointer.
    eElement_Null = 1,
    eElement_Boolean = 2,

    /// Signed, 64 bits.
    eElement_Integer = 3,

    /// Unsigned, 32 bits. Not read as an integer, nor an integer as this.
    eElement_Unsigned = 4,

    /// 64 bits, every bit pattern.
    eElement_Double = 5,

    /// Any bytes, up to 2^32 - 1; names are strings too.
    eElement_String = 6,

    /// Ticks of 100 ns, signed, 64 bits: a moment and a span.
    eElement_AbsoluteTime = 7,
    eElement_RelativeTime = 8,

    /// 16 bytes.
    eElement_Uuid = 9,

    /// A block of bytes that is no text.
    eElement_Binary = 10,

    /// A container of a counted number of elements: `Reader::begin_list()`.
    eElement_List = 11,

    /// A container of a fixed sequence: `Reader::begin_record()`.
    eElement_Record = 12
};

} // namespace vxserialize
