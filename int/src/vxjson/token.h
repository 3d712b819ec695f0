#pragma once

#include "vxjson/export.h"

#include <iosfwd>
#include <string>

namespace vxjson {

/// The kinds of tokens that JSON text is cut into. The numbers are fixed: others may be handed in
/// by a tokenizer that is out of order, and print as what they are.
///
/// A quoted string is `eToken_StringBegin`, any number of `eToken_CharData`, `eToken_StringEnd`; an
/// unquoted name the same between the two identifier tokens. The data joined is the decoded text.
/// Literals, numbers and punctuators are one token each, with their text.
enum EToken : int {
    eToken_Unknown = 0, ///< never in a document
    eToken_DocumentStart = 1,
    eToken_DocumentEnd = 2,
    eToken_Error = 3, ///< the scan failed, `ITokenizer::error` tells why
    eToken_IdentifierBegin = 4,
    eToken_IdentifierEnd = 5,
    eToken_StringBegin = 6,
    eToken_StringEnd = 7,
    eToken_CharData = 8,
    eToken_True = 9,
    eToken_False = 10,
    eToken_Number = 11,
    eToken_Null = 12,
    eToken_Punctuator = 13, ///< one of { } [ ] , :
};

/// The name of the token as above, "##InvalidToken(14)##" for a number that is none.
VXJSON_API std::string to_string(EToken token);
VXJSON_API std::ostream & operator<<(std::ostream & stream, EToken token);

} // namespace vxjson
