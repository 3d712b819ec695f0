#pragma once

#include "vxjson/export.h"

#include <iosfwd>
#include <string>

namespace vxjson {

/// The kinds of tokens in JSON text. The numbers are fixed. A faulty tokenizer may return others;
/// `to_string` shows such numbers as they are.
///
/// A quoted string is `eToken_StringBegin`, any number of `eToken_CharData` and `eToken_StringEnd`.
/// An unquoted name has the two identifier tokens in place of the string tokens. The pieces of data
/// joined are the decoded text. Literals, numbers and punctuators are one token each, whose text is
/// that of the source.
enum EToken : int {
    eToken_Unknown = 0,         ///< never part of a document
    eToken_DocumentStart = 1,   ///< once, before all others; without text
    eToken_DocumentEnd = 2,     ///< once, after all others; without text
    eToken_Error = 3,           ///< the scan failed; see `ITokenizer::error`
    eToken_IdentifierBegin = 4, ///< around the pieces of an unquoted name; without text
    eToken_IdentifierEnd = 5,
    eToken_StringBegin = 6, ///< around the pieces of a quoted string; without text
    eToken_StringEnd = 7,
    eToken_CharData = 8, ///< a piece of a string or unquoted name, decoded
    eToken_True = 9,
    eToken_False = 10,
    eToken_Number = 11, ///< with the digits of the source, not converted
    eToken_Null = 12,
    eToken_Punctuator = 13, ///< one of { } [ ] , :
};

/// The name of the enumerator, such as "eToken_Null"; "##InvalidToken(14)##" for any other number.
/// For messages and tests.
VXJSON_API std::string to_string(EToken token);
VXJSON_API std::ostream & operator<<(std::ostream & stream, EToken token);

} // namespace vxjson
