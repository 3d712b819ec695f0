#pragma once

#include "vxattribute/vxattribute.h"
#include "vxcore/error_exception.h"

/// The two ways in which JSON text becomes values, for comparison with each other: directly from
/// the text, or over the tokens and values of a reader.
namespace vxtest {

/// Hides from the reader that the tokens come from a text in memory.
class HidingTokenizer final : public vxjson::ITokenizer {
  public:
    explicit HidingTokenizer(vxjson::Tokenizer & tokenizer) : m_tokenizer(tokenizer) {}

    vxjson::EToken next() override { return m_tokenizer.next(); }

    vxjson::StringSlice & text(vxjson::StringSlice & out) override { return m_tokenizer.text(out); }

    void error(vxcore::ErrorInfo::Ptr & out) override { m_tokenizer.error(out); }

    void position(vxjson::SourcePosition & out) override { m_tokenizer.position(out); }

  private:
    vxjson::Tokenizer & m_tokenizer;
};

/// The code, text, place in the source and cause of a failure.
inline std::string story_of(vxcore::ErrorInfo const & info) {
    std::string const story =
        info.code().name() + (": " + info.text()) + " in " + info.location().function().data();
    return info.nested() ? story + " <- " + story_of(*info.nested()) : story;
}

/// A text that differs where values differ in a bit. Names are sorted, because their order in a map
/// changes when they are interned anew.
inline std::string bits_of(vxattribute::AttributeValue const & value) {
    return value_to_json(value, {.sorted_names = true, .max_depth = 1'000'000});
}

/// Everything that a caller can see of a read: moves `steps` values on, reads a value there, and
/// then each value after it by `read_attribute_value` too, until the end or a failure. Notes each
/// value to the last bit, and the place after it.
inline std::string story_of_reading(vxjson::Tokenizer & tokenizer, vxjson::ITokenizer & source,
                                    vxjson::Reader::Options const & options, unsigned int steps) {
    std::string story;
    try {
        vxjson::Reader reader(source, options);
        for (; steps != 0 && reader.next_value(); --steps) {
        }
        do {
            story += bits_of(vxattribute::read_attribute_value(reader));
            vxjson::SourcePosition place;
            tokenizer.position(place);
            story += " to " + std::to_string(place.line) + ':' + std::to_string(place.linePos) +
                     " = " + std::to_string(place.sourcePos) + '\n';
        } while (reader.next_value());
    } catch (vxcore::ErrorException const & e) {
        story += story_of(*e.info());
    }
    return story;
}

/// The result of `value_from_json`, or its failure.
template <typename Source>
std::string story_of_document(Source & source, vxjson::Document::Options const & options) {
    try {
        return bits_of(vxattribute::value_from_json(source, options));
    } catch (vxcore::ErrorException const & e) {
        return story_of(*e.info());
    }
}

/// Compares both ways for one text. Returns the first difference; empty if they agree.
///
/// @param stream  A stream over the text.
inline std::string difference_of_roads(std::string const & text, vxcore::IReadStream & stream,
                                       vxjson::Document::Options options, unsigned int steps) {
    vxjson::Tokenizer direct(text.data(), text.size(), options.tokenizer);
    vxjson::Tokenizer other(text.data(), text.size(), options.tokenizer);
    HidingTokenizer hiding(other);
    std::string found = story_of_reading(direct, direct, options.reader, steps);
    std::string expected = story_of_reading(other, hiding, options.reader, steps);
    if (found == expected) {
        options.tokenizer.buffer_size = 1; // too small for the direct way
        found = story_of_document(text, options);
        expected = story_of_document(stream, options);
    }
    return found == expected ? "" : found + "\n--- differs from ---\n" + expected;
}

} // namespace vxtest
