#include "vxserialize/error_info_stream.h"

#include "vxcore/error_exception.h"
#include "vxserialize/error_codes.h"
#include "vxserialize/failures_internal.h"
#include "vxserialize/limits.h"
#include "vxserialize/reader.h"
#include "vxserialize/writer.h"
#include "vxuri/uri_parse_data.h"

#include <vector>

namespace vxserialize {

namespace {

/// One error without its cause. The innermost error must be created first but comes last in a
/// stream, so a chain is collected in this form.
struct Link {
    vxcore::SourceString code;
    vxcore::SourceString message;
    vxcore::ErrorParams params;
    vxcore::SourceLocation location;
};

void write_params(Writer & writer, vxcore::ErrorParams const & params) {
    writer.begin_list(params.size());
    bool first = true;
    for (auto const & [key, value] : params) {
        if (!first) {
            writer.next_list_item();
        }
        first = false;
        writer << key.view() << value;
    }
    writer.end_list();
}

void write_link(Writer & writer, vxcore::ErrorInfo const & info) {
    writer << info.code().view() << info.message().view();
    write_params(writer, info.params());
    writer << info.location().function().view() << info.location().file().view();
    writer.write_uint(info.location().line());
}

std::string read_string(Reader & reader) {
    std::string text;
    reader >> text;
    return text;
}

vxcore::SourceString read_text(Reader & reader) {
    std::string const text = read_string(reader);
    return vxcore::SourceString(std::string_view(text));
}

vxcore::ErrorParams read_params(Reader & reader) {
    vxcore::ErrorParams params;
    reader.begin_list();
    while (reader.has_next()) {
        vxcore::SourceString key = read_text(reader);
        // Of equal names the last one counts.
        reader >> params.insert_ref(std::move(key));
    }
    return params;
}

Link read_link(Reader & reader) {
    Link link;
    link.code = read_text(reader);
    link.message = read_text(reader);
    link.params = read_params(reader);
    // In variables: the order in which arguments are evaluated is not specified.
    vxcore::SourceString function = read_text(reader);
    vxcore::SourceString file = read_text(reader);
    unsigned int const line = reader.read_uint();
    link.location = vxcore::SourceLocation(std::move(function), std::move(file), line);
    return link;
}

/// Returns the undefined reference with that text: split as usual, then marked as undefined.
vxuri::UriReference undefined_uri(std::string text) {
    using vxuri::impl::UriParseData;
    // Parse data is immutable: the words are copied, marked, and put into data of their own.
    auto const data = UriParseData::split(std::move(text));
    UriParseData::Parts parts = data->parts;
    parts[0] = ~0u;
    return vxuri::UriReference(vxcore::make_ref_counted<UriParseData>(data->text, parts));
}

} // namespace

void write_error_info(Writer & writer, vxcore::ErrorInfo const * info) {
    if (info == nullptr) {
        writer.write_null();
        return;
    }
    // Counted before anything is written: a chain that is too long must not be written in part.
    unsigned int links = 0;
    for (auto const * link = info; link != nullptr; link = link->nested().get()) {
        if (++links > max_error_chain) {
            impl::throw_chain_too_long("vxserialize::write_error_info()");
        }
    }
    writer.begin_record();
    writer.begin_list(links);
    for (auto const * link = info; link != nullptr; link = link->nested().get()) {
        if (link != info) {
            writer.next_list_item();
        }
        write_link(writer, *link);
    }
    writer.end_list();
    writer.end_record();
}

void write_error_info(Writer & writer, vxcore::ErrorInfo::Ptr const & info) {
    write_error_info(writer, info.get());
}

vxcore::ErrorInfo::Ptr read_error_info(Reader & reader) {
    if (reader.read_if_null()) {
        return nullptr;
    }
    std::vector<Link> links;
    reader.begin_record();
    reader.begin_list();
    while (reader.has_next()) {
        if (links.size() == max_error_chain) {
            impl::throw_chain_too_long("vxserialize::read_error_info()");
        }
        links.push_back(read_link(reader));
    }
    reader.end_record();
    if (links.empty()) {
        vxcore::throw_error(error::vxserialize_data,
                            vxcore::SourceString("An error without a link", true),
                            VXCORE_LOCATION("vxserialize::read_error_info()"));
    }
    // From the innermost outwards: an info gets its cause when it is made, and is immutable then.
    vxcore::ErrorInfo::Ptr info;
    for (auto link = links.rbegin(); link != links.rend(); ++link) {
        info = vxcore::ErrorInfo::create_with_own_code(
            std::move(link->code), std::move(link->message), std::move(link->params),
            std::move(link->location), std::move(info));
    }
    return info;
}

void write_simple_date_time(Writer & writer, vxcore::SimpleDateTime value) {
    writer << vxcore::AbsoluteTime(value.ticks());
}

vxcore::SimpleDateTime read_simple_date_time(Reader & reader) {
    return vxcore::SimpleDateTime(reader.read_absolute_time().ticks());
}

void write_uri(Writer & writer, vxuri::UriReference const & value) {
    if (!value.is_undefined()) {
        writer << value.text();
    } else if (value.empty()) {
        writer.write_null();
    } else {
        writer.begin_record();
        writer << value.text();
        writer.end_record();
    }
}

vxuri::UriReference read_uri(Reader & reader) {
    if (reader.read_if_null()) {
        return vxuri::UriReference();
    }
    if (reader.next_type() != eElement_Record) {
        return vxuri::UriReference::parse(read_string(reader));
    }
    reader.begin_record();
    std::string text = read_string(reader);
    reader.end_record();
    return undefined_uri(std::move(text));
}

} // namespace vxserialize
