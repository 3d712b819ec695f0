#pragma once

/// Forward declarations of the classes of this library.

namespace vxserialize {

namespace impl {
class MemoryReaderView;
class MemoryWriterView;

namespace binary {
struct NumberTags;
}
} // namespace impl

class FrameReader;
class MemoryList;
class MemoryListBase;
class MemoryListCursor;
class MemoryReader;
class MemorySegment;
class MemoryWriter;
class Reader;
class StringTarget;
class TextReader;
class TextWriter;
class Writer;

} // namespace vxserialize
