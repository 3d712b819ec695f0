/// Tests the JSON tokenizer and reader with arbitrary bytes and all options, from memory and
/// through buffers of 1 to 64 bytes. Writes what the reader accepts and reads it once more.

#include "check.h"
#include "memory_watch.h"
#include "stream_checks.h"

#include "vxcore/error_exception.h"
#include "vxjson/vxjson.h"

#include <array>
#include <string>

using namespace vxjson;
using Value = Reader::Value;

namespace {

/// An input: two bytes that choose the options, then the text.
struct JsonInput {
    bool parse(unsigned char const * data, std::size_t size) {
        if (size < 2) {
            return false;
        }
        options.allow_comments = (data[0] & 1) != 0;
        options.allow_unquoted_names = (data[0] & 2) != 0;
        options.allow_single_quotes = (data[0] & 4) != 0;
        options.validate_utf8 = (data[0] & 8) != 0;
        options.max_depth = (data[0] & 16) != 0 ? 256 : 5;
        options.max_number_size = (data[0] & 32) != 0 ? 65536 : 20;
        options.buffer_size = 1 + (data[1] & 63u);
        road = data[0] / 64u + data[1] / 64u * 4u;
        text.assign(reinterpret_cast<char const *>(data) + 2, size - 2);
        return true;
    }

    Tokenizer::Options options;
    unsigned int road = 0; // four flags; see Walk and rewrite
    std::string text;
};

/// A token. All runs of a string are one token.
struct Lexeme {
    EToken token = eToken_Unknown;
    std::string text;
    unsigned int offset = 0;
    unsigned int line = 0;
    unsigned int linePos = 0;

    bool operator==(Lexeme const &) const = default;
};

/// Returns the token that `ahead` announces, and sets `ahead` to the one after it. Joins the runs
/// of a string into one token, at the place of the first.
Lexeme next_lexeme(Tokenizer & tokenizer, EToken & ahead) {
    auto const take = [&tokenizer, &ahead](Lexeme & lexeme) {
        StringSlice slice;
        lexeme.text += tokenizer.text(slice).view();
        ahead = tokenizer.next();
    };
    SourcePosition position;
    tokenizer.position(position);
    Lexeme lexeme{ahead, {}, position.sourcePos, position.line, position.linePos};
    take(lexeme);
    while (lexeme.token == eToken_CharData && ahead == eToken_CharData) {
        take(lexeme);
    }
    return lexeme;
}

std::string error_text(Tokenizer & tokenizer) {
    vxcore::ErrorInfo::Ptr error;
    tokenizer.error(error);
    vxfuzz::check(error != nullptr, "a failure has a reason");
    vxfuzz::check(error->text().size() < 200, "messages are of a modest size");
    return error->text();
}

/// Checks that the tokens, their places and the failure are the same from memory and from a stream.
void check_tokens(JsonInput const & input) {
    vxfuzz::MemoryWatch const watch;
    vxfuzz::ViewStream stream(input.text, false);
    Tokenizer memory(input.text.data(), input.text.size(), input.options);
    Tokenizer streamed(stream, input.options);
    EToken first = memory.next();
    EToken second = streamed.next();
    unsigned int last = 0;
    while (first != eToken_DocumentEnd && first != eToken_Error) {
        Lexeme const lexeme = next_lexeme(memory, first);
        vxfuzz::check(lexeme == next_lexeme(streamed, second),
                      "tokens do not depend on the buffer");
        vxfuzz::check(lexeme.offset >= last && lexeme.offset <= input.text.size(),
                      "tokens are in order");
        last = lexeme.offset;
    }
    vxfuzz::check(first == second && memory.next() == first && streamed.next() == first,
                  "the end and a failure repeat for ever");
    if (first == eToken_Error) {
        vxfuzz::check(error_text(memory) == error_text(streamed),
                      "failures do not depend on the buffer");
    }
    vxfuzz::check(watch.peak() <= 8 * input.text.size() + 16384,
                  "the tokenizer does not keep what it returned");
}

/// Reads all values of a document and writes them. Flags in `road`: 1 allows reserved names, 2
/// reads strings as streams, 4 writes numbers from doubles.
class Walk {
  public:
    Walk(Tokenizer & tokenizer, TextWriter & writer, unsigned int road)
        : m_reader(tokenizer, {(road & 1) != 0}), m_writer(writer), m_road(road) {}

    /// Writes the first document. Returns false when there is none.
    bool run() {
        auto const value = m_reader.next_value();
        if (value) {
            write(value);
        }
        return value != nullptr;
    }

    Reader const & reader() const { return m_reader; }

  private:
    void write_string(Value & value) {
        if ((m_road & 2) == 0) {
            std::string const & text = value.as_string();
            m_writer.write_string(text.data(), static_cast<unsigned int>(text.size()));
            return;
        }
        auto const stream = value.as_stream();
        m_writer.begin_string();
        std::array<char, 5> piece;
        for (unsigned int size = 5; size == 5;) {
            size = stream->read(piece.data(), 5);
            m_writer.write_string_data(piece.data(), size);
        }
        vxfuzz::check(stream->size() == 0, "a stream that returned less than asked has ended");
        m_writer.end_string();
    }

    void write_children(Reader::ValuePtr const & parent) {
        while (auto const child = m_reader.next_child(parent)) {
            if (parent->type() == Value::eType_Object) {
                std::string const & name = child->name();
                m_writer.write_name(name.data(), static_cast<unsigned int>(name.size()));
            }
            write(child);
        }
    }

    void write(Reader::ValuePtr const & value) {
        switch (value->type()) {
        case Value::eType_Object:
            m_writer.begin_object();
            write_children(value);
            m_writer.end_object();
            break;
        case Value::eType_Array:
            m_writer.begin_array();
            write_children(value);
            m_writer.end_array();
            break;
        case Value::eType_String:
            write_string(*value);
            break;
        case Value::eType_Boolean:
            m_writer.write_bool(value->as_bool());
            break;
        case Value::eType_Number:
            write_number(*value);
            break;
        default:
            m_writer.write_null();
        }
    }

    void write_number(Value & value) {
        vxcore::ErrorInfo::Ptr error;
        double const number = value.as_double(&error);
        if ((m_road & 4) != 0) {
            m_writer.write_double(number); // 0 when out of range
        } else {
            std::string const text = error ? "0" : value.as_string();
            m_writer.write_number(text.data(), static_cast<unsigned int>(text.size()));
        }
    }

    Reader m_reader;
    TextWriter & m_writer;
    unsigned int const m_road;
};

/// Reads a text and writes it again. Returns false when the reader refuses the text or finds
/// nothing. Flag 8 in `road` indents what is written; Walk uses the others.
bool rewrite(std::string const & text, Tokenizer::Options const & options, unsigned int road,
             std::string & result) {
    TextWriter::Options layout;
    layout.indent = (road & 8) != 0 ? 3 : 0;
    TextWriter writer(result, layout);
    Tokenizer tokenizer(text.data(), text.size(), options);
    Walk walk(tokenizer, writer, road);
    try {
        if (!walk.run()) {
            return false;
        }
    } catch (vxcore::ErrorException const & e) {
        vxfuzz::check(walk.reader().current() == nullptr && walk.reader().error() == e.info(),
                      "a failure ends the reader");
        return false;
    }
    writer.finish();
    return true;
}

void check_reading(JsonInput const & input) {
    std::string first;
    {
        vxfuzz::MemoryWatch const watch;
        if (!rewrite(input.text, input.options, input.road, first)) {
            return;
        }
        // A double grows most: "1e20" is written in 23 bytes. Indented output has no such limit.
        vxfuzz::check((input.road & 8) != 0 || watch.peak() <= 32 * input.text.size() + 131072,
                      "the reader keeps only what is open");
    }
    std::string second;
    Tokenizer::Options strict;
    strict.max_number_size = 400;
    unsigned int const names = 1; // reserved ones, which the first text may contain
    vxfuzz::check(rewrite(first, strict, (input.road & 12) | names, second) && second == first,
                  "what is written reads back and writes the same");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(unsigned char const * data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(unsigned char const * data, std::size_t size) {
    JsonInput input;
    if (input.parse(data, size)) {
        check_tokens(input);
        check_reading(input);
    }
    return 0;
}
