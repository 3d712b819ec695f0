#pragma once

namespace vxserialize {

/// The kinds of elements, which `Reader::next_type()` returns. The numbers are part of the stream
/// format of values.
enum EElementKind : int {
    /// No element: the end of the data or of the open container, or bytes that are no element. Any
    /// read raises an error that names the fault.
    eElement_None = 0,
    eElement_Null = 1,
    eElement_Boolean = 2,

    /// Signed, 64 bits.
    eElement_Integer = 3,

    /// Unsigned, 32 bits. Not read as an integer, nor an integer as this.
    eElement_Unsigned = 4,
    eElement_Double = 5,

    /// Any bytes; names are strings too.
    eElement_String = 6,
    eElement_AbsoluteTime = 7,
    eElement_RelativeTime = 8,
    eElement_Uuid = 9,
    eElement_Binary = 10,

    /// A counted container.
    eElement_List = 11,

    /// A container of a fixed sequence.
    eElement_Record = 12
};

} // namespace vxserialize
