#include "vxfile/value_file.h"

#include "vxattribute/attribute_name_decoder.h"
#include "vxattribute/attribute_name_encoder.h"
#include "vxattribute/attribute_value_marshaler.h"
#include "vxattribute/bytes.h"
#include "vxcore/text_conversion.h"
#include "vxfile/failures_internal.h"
#include "vxserialize/error_codes.h"
#include "vxserialize/memory_reader.h"
#include "vxserialize/text_reader.h"
#include "vxserialize/text_writer.h"

namespace vxfile {

using namespace vxattribute;

namespace {

constexpr char readFunction[] = "vxfile::read_value()";

AttributeValue read_stream(vxserialize::Reader & reader, ReadFileOptions const & options) {
    AttributeNamePackageSet::Ptr packages = options.packages;
    if (!packages && !options.allow_unknown_packages) {
        packages = AttributeNamePackageSet::create(); // a decoder without a set accepts all
    }
    // A decoder reads coded and plain names alike.
    AttributeNameDecoder decoder(std::move(packages), !options.allow_unknown_packages);
    if (reader.next_type() == vxserialize::eElement_List) {
        return AttributeMap(reader, decoder); // no value starts with a list
    }
    AttributeValue value;
    read_attribute_value(reader, decoder, value);
    return value;
}

AttributeValue read_binary(InputFile & file, ReadFileOptions const & options) {
    vxserialize::MemoryReader reader(file.read_all());
    auto const place = [&reader] { return vxcore::to_string(reader.position()); };
    AttributeValue value;
    try {
        value = read_stream(reader, options);
    } catch (vxcore::ErrorException const & e) {
        if (e.info()->matches(vxserialize::error::vxserialize)) {
            throw; // its message has the place
        }
        impl::throw_content(file.name(),
                            impl::text_with_causes(e) + " (before byte " + place() + ')', &e,
                            readFunction);
    }
    if (!reader.at_end()) {
        impl::throw_content(file.name(), "the value ends at byte " + place() + ", and more follows",
                            nullptr, readFunction);
    }
    return value;
}

/// Raises when anything follows the value. The reader has read ahead, so only another read can show
/// whether the text ends here.
void check_end(vxserialize::TextReader & reader, InputFile const & file) {
    std::string reason = "null";
    try {
        reader.read_null();
    } catch (vxcore::ErrorException const & e) {
        if (e.info()->matches(vxserialize::error::vxserialize_data_truncated)) {
            return;
        }
        reason = impl::text_with_causes(e);
    }
    impl::throw_content(file.name(), "more follows the value: " + reason, nullptr, readFunction);
}

AttributeValue read_text(InputFile & file, ReadFileOptions const & options) {
    vxserialize::TextReader reader(file, 1 << 16);
    AttributeValue value = read_stream(reader, options);
    check_end(reader, file);
    return value;
}

/// Passes text on to a sink.
class SinkTarget final : public vxserialize::TextWriter::ITextTarget,
                         public vxjson::TextWriter::ITextTarget {
  public:
    explicit SinkTarget(vxcore::OutputSink & sink) noexcept : m_sink(sink) {}

    void write_char(char c) override { m_sink.write({&c, 1}); }

    void write_data(char const * data, unsigned int size) override { m_sink.write({data, size}); }

  private:
    vxcore::OutputSink & m_sink;
};

void write_text(SinkTarget & target, AttributeValue const & value,
                WriteFileOptions const & options) {
    vxserialize::TextWriter writer(target, {options.indent});
    AttributeNameEncoder encoder(options.packages);
    write_attribute_value(writer, encoder, value, StreamOptions{options.sorted_names});
    writer.close();
}

} // namespace

AttributeValue read_value(InputFile & file, EFileForm form, ReadFileOptions const & options) {
    return impl::with_content_of(file.name(), readFunction, [&] {
        switch (form) {
        case EFileForm::eJson:
            return value_from_json(file.read_all_text(), options.json); // faster than a stream
        case EFileForm::eText:
            return read_text(file, options);
        default:
            return read_binary(file, options);
        }
    });
}

AttributeValue read_file(std::string const & path, ReadFileOptions const & options) {
    InputFile file(path, {options.max_size});
    std::optional<EFileForm> const form = options.form ? options.form : form_of_ending(path);
    return read_value(file, form ? *form : guess_form(file.head()), options);
}

AttributeMap read_map_file(std::string const & path, ReadFileOptions const & options) {
    AttributeValue const value = read_file(path, options);
    if (value.type() != ValueTypeId::typeAttributeMap || value.size() != 1) {
        impl::throw_content(path, "its value is not one map", nullptr, "vxfile::read_map_file()");
    }
    return value.get<AttributeMap>();
}

void write_value(vxcore::OutputSink & sink, AttributeValue const & value, EFileForm form,
                 WriteFileOptions const & options) {
    SinkTarget target(sink);
    if (form == EFileForm::eJson) {
        JsonTextOptions layout;
        layout.indent = options.indent;
        layout.sorted_names = options.sorted_names;
        write_json(target, value, layout);
    } else if (form == EFileForm::eText) {
        write_text(target, value, options);
    } else {
        write_bytes(sink, value, options.packages, {options.sorted_names});
        return;
    }
    target.write_char('\n');
}

void write_file_atomically(std::string const & path, AttributeValue const & value,
                           WriteFileOptions const & options) {
    std::optional<EFileForm> const form = options.form ? options.form : form_of_ending(path);
    if (!form) {
        impl::throw_file(error::vxfile_form,
                         "{@path}: no form is given, and the name does not end in .json, .bin or "
                         ".txt",
                         path, "vxfile::write_file_atomically()");
    }
    AtomicFile file(path, options.file);
    write_value(file, value, *form, options);
    file.commit();
}

} // namespace vxfile
