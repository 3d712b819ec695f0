#include "vxcore/text_conversion.h"
#include "vxjson/position_message_internal.h"

namespace vxjson::impl {

vxcore::ErrorInfo::Ptr create_positioned(vxcore::ErrorCode const & code, std::string_view message,
                                         vxcore::ErrorParams params,
                                         vxcore::SourceLocation location,
                                         SourcePosition const & position,
                                         vxcore::ErrorInfo::Ptr nested) {
    auto const set = [&params](char const * name, std::string value) {
        params.insert_ref(vxcore::SourceString(name, true)) = std::move(value);
    };
    set("uri", position.uri.text());
    set("line", vxcore::to_string(position.line));
    set("linePos", vxcore::to_string(position.linePos));
    set("sourcePos", vxcore::to_string(position.sourcePos));
    std::string text = "[line {@line}, pos {@linePos}";
    text += position.uri.empty() ? "" : ", uri <{@uri}>";
    text += "]: ";
    text += message;
    return vxcore::ErrorInfo::create(code, vxcore::SourceString(std::string_view(text)),
                                     std::move(params), std::move(location), std::move(nested));
}

} // namespace vxjson::impl
