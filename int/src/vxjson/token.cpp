#include "vxjson/token.h"

#include "vxcore/text_conversion.h"

#include <ostream>

namespace vxjson {

std::string to_string(EToken token) {
    static constexpr char const * names[] = {
        "eToken_Unknown",     "eToken_DocumentStart",   "eToken_DocumentEnd",
        "eToken_Error",       "eToken_IdentifierBegin", "eToken_IdentifierEnd",
        "eToken_StringBegin", "eToken_StringEnd",       "eToken_CharData",
        "eToken_True",        "eToken_False",           "eToken_Number",
        "eToken_Null",        "eToken_Punctuator"};
    if (token >= eToken_Unknown && token <= eToken_Punctuator) {
        return names[token];
    }
    return "##InvalidToken(" + vxcore::to_string(static_cast<int>(token)) + ")##";
}

std::ostream & operator<<(std::ostream & stream, EToken token) {
    return stream << to_string(token);
}

} // namespace vxjson
