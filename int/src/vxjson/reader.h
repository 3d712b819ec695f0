#pragma once

#include "vxcore/error_info.h"
#include "vxcore/read_stream.h"
#include "vxcore/ref_count_ptr.h"
#include "vxjson/itokenizer.h"
#include "vxjson/lazy_text_impl.h"

#include <iosfwd>
#include <string>

namespace vxjson {

class Tokenizer;

namespace impl {
class DirectRead;
} // namespace impl

/// Turns tokens into values, one at a time in document order. No tree is built: only the current
/// value and the containers around it are kept.
///
///     Reader reader(tokenizer);
///     auto const object = reader.next_value();
///     while (auto const child = reader.next_child(object)) {
///         use(child->name(), child->as_string());
///     }
///
/// The top level is an object or an array (see Options for scalars), and any number of documents
/// may follow one another.
/// Commas are optional, but a trailing or doubled one is refused. Names may be unquoted when the
/// tokenizer allows it; empty names and reserved words are refused unless an option accepts them.
/// See docs/formats/json.md.
///
/// After the closing bracket of a nested value the reader reads one more token, to see whether a
/// comma follows. A call of `next_value()` at the end of a document reads the start of the next
/// one. Over a live connection both calls wait for the sender.
///
/// Cost. One block for each depth of the document: the next value reuses the object of the value
/// before it, unless a caller still holds that one; then it takes a block too. Over text in memory,
/// names and numbers are copied only for callers that ask for them or keep the value. Memory grows
/// with the depth of the document, not with its size.
///
/// Threads. A reader and its values belong to one thread at a time.
///
/// Errors. A failure of the reader or of one of its values ends the reader; a failed conversion
/// does not. After that `current()` is null, `error()` returns the last failure, and each further
/// call raises "Value cannot be read after a parse error" with the code `error.vxjson.reader`, or
/// `error.vxjson.reader.value` for a value that has failed. Messages start with the place in the
/// text; the parameters `uri`, `line`, `linePos` and `sourcePos` hold it too.
class VXJSON_API Reader {
  public:
    class Value;
    using ValuePtr = vxcore::RefCountPtr<Value>;

    struct Options {
        bool allow_reserved_names = false; ///< accept names such as "class"
        bool allow_empty_names = false;    ///< accept ""
        bool allow_scalars = false;        ///< accept documents such as 5, as RFC 8259 does
    };

    /// @param tokenizer  Must outlive the reader, and so must a text that it reads from memory.
    explicit Reader(ITokenizer & tokenizer);
    Reader(ITokenizer & tokenizer, Options const & options);
    explicit Reader(Tokenizer & tokenizer);
    Reader(Tokenizer & tokenizer, Options const & options);
    Reader(Reader const &) = delete;
    Reader & operator=(Reader const &) = delete;

    /// Values may outlive the reader. Only their type, name and text that was already read may be
    /// used then.
    ~Reader();

    /// The value that the reader is at: one of type Root at first, null after the end of the
    /// document and after a failure.
    ValuePtr current() const;

    /// Moves to the next value at any depth and returns it; null at the end. Closing brackets are
    /// skipped. Unread text of the previous value is lost.
    ///
    /// @raises error.vxjson.reader.unexpected.token: the token fits nowhere.
    /// @raises error.vxjson.reader: a name is refused, or the text ends too early.
    /// @raises error.vxjson.reader.unexpected.size: a name of more than 134217728 bytes.
    ValuePtr next_value();

    /// Moves to the next value directly inside `parent` and returns it; null when there is none.
    /// Unread parts of earlier children are skipped. The value after the end of `parent` stays for
    /// the next call, so that of nested loops over children each gets its own values.
    ///
    /// @raises as `next_value`; error.vxjson.reader: `parent` is null.
    ValuePtr next_child(ValuePtr parent);

    /// Reads the next element of `array` into `number` when it is a number. This is the fast way
    /// through a long array of numbers: it creates no Value, and `current()` becomes the array.
    /// False when the reader is not inside `array` or no number follows; call `next_child` then.
    ///
    /// @raises as `next_value`.
    bool next_number(ValuePtr const & array, double & number);

    /// The last failure; null before the first one.
    vxcore::ErrorInfo::Ptr const & error() const noexcept { return m_error; }

    /// Ends the reader with a failure at the current place and raises it. Code on top of the reader
    /// refuses documents this way. Without `code` the failure has `error.vxjson.reader`.
    [[noreturn]] void fail(std::string_view message, vxcore::ErrorParams params,
                           vxcore::SourceLocation location,
                           vxcore::ErrorInfo::Ptr nested = nullptr);
    [[noreturn]] void fail(vxcore::ErrorCode const & code, std::string_view message,
                           vxcore::ErrorParams params, vxcore::SourceLocation location,
                           vxcore::ErrorInfo::Ptr nested = nullptr);

  private:
    friend class impl::DirectRead; // reads whole containers from the text

    VXJSON_LOCAL Reader(ITokenizer & tokenizer, Tokenizer * known, Options const & options);

    /// Longest name, and longest string that is read as a whole, in bytes.
    static constexpr unsigned int sm_maxStringSize = 0x8000000;

    // The grammar: what a token means for the current value (reader_grammar.cpp).
    VXJSON_LOCAL void advance();
    VXJSON_LOCAL bool advance_to_number();
    VXJSON_LOCAL bool skip_text(EToken token);
    VXJSON_LOCAL void take_root_scalar(EToken token);
    VXJSON_LOCAL bool take_in_root(EToken token);
    VXJSON_LOCAL void take_end_of_object(EToken token);
    VXJSON_LOCAL bool take_in_array(EToken token);
    VXJSON_LOCAL void open_container();
    VXJSON_LOCAL Value & read_name();
    VXJSON_LOCAL Value & read_slow_name();
    VXJSON_LOCAL void read_value(Value & value, EToken token);
    VXJSON_LOCAL void read_char_data(std::string & text);
    VXJSON_LOCAL bool is_refused(std::string_view name) const noexcept;
    VXJSON_LOCAL void consume_comma();
    VXJSON_LOCAL void consume_slow_comma();
    VXJSON_LOCAL void close_container();

    // Tokens.
    VXJSON_LOCAL EToken next_token();
    VXJSON_LOCAL EToken scan_token();
    VXJSON_LOCAL std::string_view token_text();
    VXJSON_LOCAL char punctuator();

    // The objects of values (reader_steps_internal.h).
    VXJSON_LOCAL Value & new_value();
    VXJSON_LOCAL Value & make_value(ValuePtr & place);
    VXJSON_LOCAL void leave_value() noexcept;
    VXJSON_LOCAL void drop_values() noexcept;

    // Failures (reader_failures.cpp).
    void keep_tokenizer_error() noexcept;
    [[noreturn]] void stop(vxcore::ErrorInfo::Ptr info);
    [[noreturn]] void fail_after_error(vxcore::ErrorCode const & code,
                                       vxcore::SourceLocation location);
    [[noreturn]] void fail_unexpected(vxcore::SourceLocation location);
    [[noreturn]] void fail_name(std::string && name, vxcore::SourceLocation location);
    [[noreturn]] void throw_string_size_error();

    ITokenizer * const m_tokenizer;
    Tokenizer * const m_known; // m_tokenizer if it is a Tokenizer, for direct calls; or null
    bool const m_lends;        // the texts of tokens stay in memory after their token
    EToken m_token = eToken_Unknown;
    bool m_tokenPushedBack = false; // next_token() returns m_token once more
    bool m_currentPending = false;  // next_value() returns m_current once more
    bool m_failed = false;          // set even when no memory was left for m_error
    ValuePtr m_root;                // holds all values down to m_current, and objects for reuse
    Value * m_current;              // null at the end and after a failure
    vxcore::ErrorInfo::Ptr m_error;
    Options const m_options;
};

/// One value of a document, or the root above it.
///
/// A value holds the text of a literal or number. The text of a string stays in the tokenizer until
/// it is read, either whole or as a stream: text taken by one is missing from the other. It is lost
/// when the reader moves on, so read a string before the next `next_value()`. Only the kind of the
/// current token shows whether the text is still there: a string read too late may return the
/// text of the string that the reader is at now.
///
/// Errors. With a null `error` a failure is raised; otherwise it is stored in `*error`, and the
/// call returns what it has. The value has failed in both cases. Asking a value for a type other
/// than its own also ends the reader, so check `type()` first. A failed conversion does not.
class VXJSON_API Reader::Value final : public vxcore::RefCounted<vxcore::NonAtomicRefCount> {
  public:
    enum EType : int {
        eType_Root = 0,
        eType_Object = 1,
        eType_Array = 2,
        eType_Null = 3,
        eType_Boolean = 4,
        eType_Number = 5,
        eType_String = 6,
    };

    using ErrorSlot = vxcore::ErrorInfo::Ptr *;
    using StreamPtr =
        vxcore::InterfacePtr<vxcore::IReadStream,
                             vxcore::RefCountPtr<vxcore::RefCounted<vxcore::AtomicRefCount>>>;

    /// The type as the text shows it. Never raises, also after a failure.
    EType type() const noexcept { return m_type; }

    /// The name in the enclosing object; empty for elements of arrays and at the top level.
    ///
    /// @keeps  The reference holds while the caller holds the value.
    std::string const & name() const noexcept VXCORE_LIFETIMEBOUND { return m_name.string(); }

    /// The text of a string, literal or number. Further calls return the same text.
    ///
    /// @keeps  The reference holds while the caller holds the value. `take_string` and reading the
    /// stream change the text.
    /// @raises error.vxjson.reader.value: object, array or root; or the reader has moved on.
    /// @raises error.vxjson.reader.unexpected.size: more than 134217728 bytes.
    std::string const & as_string(ErrorSlot error = nullptr) VXCORE_LIFETIMEBOUND;

    /// As `as_string`, but moves the text to the caller without a copy. The value's text is empty
    /// afterwards. A failure is always raised.
    std::string take_string();

    /// The value of a number; 0 when a failure is stored.
    ///
    /// @raises error.vxjson.reader.value: not a number.
    /// @raises error.vxcore.conversion: beyond the range of a double.
    double as_double(ErrorSlot error = nullptr);

    /// The value of a boolean; false when a failure is stored.
    ///
    /// @raises error.vxjson.reader.value: not a boolean.
    bool as_bool(ErrorSlot error = nullptr);

    /// The text of a string of any size as a stream, read directly from the tokenizer. The stream
    /// does not keep the value alive; using it after the value is gone raises. Its `size()` is -1
    /// unless `as_string` read the text before, or the text has ended. All calls return the same
    /// stream; null when a failure is stored.
    ///
    /// @raises error.vxjson.reader.value: not a string.
    StreamPtr as_stream(ErrorSlot error = nullptr);

  private:
    friend class Reader;
    class ValueReadStreamImpl;

    enum EState : int {
        eState_Unread = 0,
        eState_Loaded = 1,
        eState_Streaming = 2,
        eState_StreamEnded = 3,
        eState_Failed = 4,
    };

    static constexpr unsigned int sm_noPosition = 0xFFFFFFFF;

    Value(Reader & reader, Value * parent) noexcept
        : m_reader(&reader), m_parent(parent),
          m_depth(parent == nullptr ? 0 : parent->m_depth + 1) {}

    ~Value() override;

    VXJSON_LOCAL void begin(EType type);
    void load_string();
    void check_scalar(EType type, char const * message, char const * function);
    void take_failure(std::exception const & e, ErrorSlot error, char const * function);

    void check_stream_state();
    unsigned int read_stream(char * buffer, unsigned int size);
    unsigned int read_stream_pieces(char * buffer, unsigned int size);
    unsigned int take_piece(std::string_view text, char * buffer, unsigned int size) noexcept;
    bool has_stream_ended();
    long long stream_size();

    Reader * const m_reader;
    Value * m_parent;           // only to compare once the reader has left this value
    ValuePtr m_inner;           // the value inside this one, or its object for reuse
    unsigned int const m_depth; // number of ancestors
    EType m_type = eType_Root;
    mutable impl::LazyText m_name;
    EState m_state = eState_Unread;
    // Of the stream, once it has been read:
    bool m_wasLoaded = false;     // it reads m_data, not the tokenizer
    unsigned int m_streamPos = 0; // in m_data or in the text of the current token
    impl::LazyText m_data;        // lent only for literals and numbers
    StreamPtr m_stream;
};

inline Reader::ValuePtr Reader::current() const {
    return ValuePtr(m_current);
}

/// "Root", "Object", "Array", "Null", "Boolean", "Number" or "String"; "##InvalidType(7)##" for any
/// other number.
VXJSON_API std::string to_string(Reader::Value::EType type);
VXJSON_API std::ostream & operator<<(std::ostream & stream, Reader::Value::EType type);

} // namespace vxjson
