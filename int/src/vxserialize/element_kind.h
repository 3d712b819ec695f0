#pragma once

namespace vxserialize {

/// What `Reader::next_type()` says of the next element. The numbers are part of the stream format
/// of values.
enum EElementKind : int {
    /// Nothing that can be read: the end of the data or of the open container, or bytes that are no
    /// element. A read there raises and names the fault.
    eElement_None = 0,
    eElement_Null = 1,
    eElement_Boolean = 2,
    eElement_Integer = 3,
    eElement_Unsigned = 4,
    eElement_Double = 5,
    eElement_String = 6,
    eElement_AbsoluteTime = 7,
    eElement_RelativeTime = 8,
    eElement_Uuid = 9,
    eElement_Binary = 10,
    eElement_List = 11,
    eElement_Record = 12
};

} // namespace vxserialize
