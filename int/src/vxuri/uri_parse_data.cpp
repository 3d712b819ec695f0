#include "vxuri/uri_parse_data.h"

#include "vxcore/text_size.h"

#include <algorithm>
#include <limits>
#include <string_view>

namespace vxuri::impl {

namespace {

/// Finds the first of `delimiters` from `begin` on; the end of the text when there is none.
unsigned int find_any(std::string_view text, std::string_view delimiters, unsigned int begin) {
    return static_cast<unsigned int>(std::min(text.find_first_of(delimiters, begin), text.size()));
}

/// Fills the words of an authority, which is the text from `begin` to `end`.
void split_authority(std::string_view text, unsigned int begin, unsigned int end,
                     UriParseData::Parts & parts) {
    constexpr auto none = std::string_view::npos;
    std::string_view const authority = text.substr(begin, end - begin);
    std::size_t const at = authority.rfind('@');
    parts[6] = at == none ? 0 : static_cast<unsigned int>(at + 1);
    parts[7] = begin + parts[6];

    // The colons of an IPv6 address are in brackets, so a "]" after a colon makes it none of a
    // port.
    std::string_view const host = authority.substr(parts[6]);
    std::size_t const colon = host.rfind(':');
    std::size_t const bracket = host.rfind(']');
    // A colon inside brackets is part of an IPv6 address.
    bool const port = colon != none && (bracket == none || bracket < colon);
    parts[9] = port ? static_cast<unsigned int>(host.size() - colon) : 0;
    parts[8] = end - parts[9];
}

/// Splits like the regular expression of RFC 3986, appendix B, component by component. Each search
/// begins where the last component ended, so the cost is linear.
UriParseData::Parts split_text(std::string_view text) {
    UriParseData::Parts parts{};
    auto const size = static_cast<unsigned int>(text.size());
    // A colon ends a scheme only before the first "/", "?" and "#", and never an empty one.
    unsigned int const schemeEnd = find_any(text, ":/?#", 0);
    if (schemeEnd > 0 && schemeEnd < size && text[schemeEnd] == ':') {
        parts[1] = schemeEnd + 1;
    }
    if (text.substr(parts[1]).starts_with("//")) {
        unsigned int const begin = parts[1] + 2;
        unsigned int const end = find_any(text, "/?#", begin);
        parts[2] = end - parts[1];
        split_authority(text, begin, end, parts);
    }
    parts[3] = find_any(text, "?#", parts[1] + parts[2]);
    unsigned int const queryEnd = find_any(text, "#", parts[3]);
    parts[4] = queryEnd - parts[3];
    parts[5] = size - queryEnd;
    return parts;
}

} // namespace

char const * UriParseData::TraceDataUriReference::trace_data(unsigned int & size) const {
    size = static_cast<unsigned int>(m_data.text.size());
    return m_data.text.data();
}

char const * UriParseData::TraceDataUri::trace_data(unsigned int & size) const {
    constexpr unsigned int max = std::numeric_limits<unsigned int>::max();
    unsigned int const path = m_data.parts[3];
    unsigned int const query = m_data.parts[4];
    size = query > max - path ? max : path + query; // all ones: the size is unknown
    return m_data.text.data();
}

UriParseData::UriParseData(std::string textOfReference, Parts const & words)
    : text(std::move(textOfReference)), parts(words), traceReference(*this), traceUri(*this) {
    vxcore::text_size(text.size());
}

UriParseData::~UriParseData() = default;

vxcore::RefCountPtr<UriParseData const> UriParseData::split(std::string text) {
    vxcore::text_size(text.size());
    Parts const parts = split_text(text);
    return vxcore::make_ref_counted<UriParseData>(std::move(text), parts);
}

} // namespace vxuri::impl
