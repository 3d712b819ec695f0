#include "vxattribute/text_form.h"

#include "vxattribute/stream/whole_stream_internal.h"
#include "vxcore/string_source.h"
#include "vxserialize/string_target.h"
#include "vxserialize/text_reader.h"

#include <algorithm>

namespace vxattribute {

namespace {

using PackagesPtr = AttributeNamePackageSet::Ptr;

template <typename Object>
std::string text_of(Object const & object, PackagesPtr const & packages,
                    TextFormOptions const & options) {
    std::string text;
    vxserialize::StringTarget target(text);
    vxserialize::TextWriter writer(target, {.indent = options.indent});
    impl::write_whole(writer, object, packages, options.sorted_names);
    writer.close();
    return text;
}

struct OpenedText {
    explicit OpenedText(std::string_view text)
        : source(text), reader(source, buffer_size(text.size())) {}

    /// Room for a short text and for one byte more, whose absence shows the end.
    static unsigned int buffer_size(std::size_t size) noexcept {
        return static_cast<unsigned int>(std::min<std::size_t>(size, 65535) + 1);
    }

    vxcore::StringSource source;
    vxserialize::TextReader reader;
};

} // namespace

std::string to_text_form(AttributeValue const & value, PackagesPtr const & packages,
                         TextFormOptions const & options) {
    return text_of(value, packages, options);
}

std::string to_text_form(AttributeMapBase const & map, PackagesPtr const & packages,
                         TextFormOptions const & options) {
    return text_of(map, packages, options);
}

AttributeValue value_from_text_form(std::string_view text, PackagesPtr const & packages) {
    return impl::read_whole_value<OpenedText>(text, packages);
}

AttributeMap map_from_text_form(std::string_view text, PackagesPtr const & packages) {
    return impl::read_whole_map<OpenedText>(text, packages);
}

} // namespace vxattribute
