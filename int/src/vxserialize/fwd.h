#pragma once

/// Declarations without definitions of everything that other headers of the family name.

namespace vxserialize {

class MemoryList;
class MemoryListBase;
class MemoryListCursor;
class MemoryReader;
class MemorySegment;
class MemoryWriter;
class Reader;
class TextReader;
class TextWriter;
class Writer;

} // namespace vxserialize
