#pragma once

/// Forward declarations of the classes of vxjson.

namespace vxjson {

class Document;
class ITokenizer;
class Reader;
class StringSlice;
class StringTarget;
class TextWriter;
class Tokenizer;
class Writer;
struct SourcePosition;

} // namespace vxjson
