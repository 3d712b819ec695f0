#pragma once

#include "vxcore/error_info.h"
#include "vxcore/read_stream.h"
#include "vxcore/ref_count_ptr.h"
#include "vxjson/itokenizer.h"

#include <iosfwd>
#include <string>

namespace vxjson {

class Tokenizer;

/// Turns tokens into values, one after the other in the order of the document. No tree is built:
/// only the value at hand and what encloses it are kept.
///
///     Reader reader(tokenizer);
///     auto const object = reader.next_value();
///     while (auto const child = reader.next_child(object)) {
///         use(child->name(), child->as_string());
///     }
///
/// The top level is an object or an array, and any number of them may follow one another. Commas
/// are taken and not demanded, but a trailing or doubled one is refused. Names may be unquoted when
/// the tokenizer allows it; empty ones and reserved words are refused. See docs/formats/json.md.
///
/// Behind the closing bracket of a nested value one more token is read to see whether a comma
/// follows, and a call of `next_value()` at the end of a document reads the start of the next one:
/// over a live connection these wait.
///
/// Cost. One small block per container, and per scalar that a caller still holds when the reader
/// moves on; else the object of the scalar before is used again. Memory grows with the depth, not
/// with the document.
///
/// Threads. A reader and its values belong to one thread at a time.
///
/// Errors. A failure of the reader, or of a value but for a failed conversion, ends the reader:
/// `current()` is null, `error()` tells the last failure and each further call raises
/// `error.vxjson.reader`, or `error.vxjson.reader.value` for a value that has failed, "Value cannot
/// be read after a parse error". Messages start with the place in the text, and the parameters
/// `uri`, `line`, `linePos` and `sourcePos` tell it too.
class VXJSON_API Reader {
  public:
    class Value;
    using ValuePtr = vxcore::RefCountPtr<Value>;

    struct Options {
        bool allow_reserved_names = false; ///< takes names such as "class"
    };

    /// @param tokenizer  Must outlive the reader.
    explicit Reader(ITokenizer & tokenizer);
    Reader(ITokenizer & tokenizer, Options const & options);
    Reader(Reader const &) = delete;
    Reader & operator=(Reader const &) = delete;

    /// Values may live on. Of those only type, name and text that was read before may be asked for.
    ~Reader();

    /// Where the reader stands: a value of type Root at first, null behind the end of the document
    /// and after a failure.
    ValuePtr current() const;

    /// The next value at any depth; null at the end. Closing brackets are passed silently. What was
    /// not read of the value before is gone.
    ///
    /// @raises error.vxjson.reader.unexpected.token: the token fits nowhere.
    /// @raises error.vxjson.reader: a name is refused, or the text ends too early.
    /// @raises error.vxjson.reader.unexpected.size: a name of more than 134217728 bytes.
    ValuePtr next_value();

    /// The next value directly inside `parent`; null when it has no more. The rest of children that
    /// were not read to their end is passed over. A parent that has ended keeps the reader from
    /// moving on, so that nested loops over children leave each value to the loop it belongs to.
    ///
    /// @raises as `next_value`; error.vxjson.reader: `parent` is null.
    ValuePtr next_child(ValuePtr parent);

    /// The next element of an array when it is a number, without an object for it: the fast way
    /// through a long array of numbers. `current()` is the array then. False when the reader stands
    /// elsewhere or something else comes, which `next_child` tells.
    ///
    /// @raises as `next_value`.
    bool next_number(ValuePtr const & array, double & number);

    /// The last failure; null while there was none.
    vxcore::ErrorInfo::Ptr const & error() const noexcept { return m_error; }

    /// Ends the reader with a failure of its caller's, at the current place: the way for code on
    /// top of the reader to refuse what it reads. The code is `error.vxjson.reader` where none is
    /// given.
    [[noreturn]] void fail(std::string_view message, vxcore::ErrorParams params,
                           vxcore::SourceLocation location,
                           vxcore::ErrorInfo::Ptr nested = nullptr);
    [[noreturn]] void fail(vxcore::ErrorCode const & code, std::string_view message,
                           vxcore::ErrorParams params, vxcore::SourceLocation location,
                           vxcore::ErrorInfo::Ptr nested = nullptr);

  private:
    /// Longest name, and longest string that is read as a whole, in bytes.
    static constexpr unsigned int sm_maxStringSize = 0x8000000;

    ValuePtr advance();
    ValuePtr deliver(ValuePtr value) noexcept;
    ValuePtr open_container();
    ValuePtr read_value(std::string && name);
    std::string read_name();
    std::string read_char_data();
    void consume_comma();
    void step_up() noexcept;
    void leave_scalar() noexcept;
    void close_container();

    EToken next_token();
    char punctuator();
    void keep_tokenizer_error() noexcept;
    [[noreturn]] void stop(vxcore::ErrorInfo::Ptr info);
    [[noreturn]] void fail_after_error(vxcore::ErrorCode const & code,
                                       vxcore::SourceLocation location);
    [[noreturn]] void fail_unexpected(vxcore::SourceLocation location);
    [[noreturn]] void throw_string_size_error();

    std::string_view token_text();

    ITokenizer * const m_tokenizer;
    Tokenizer * const m_known; // the same when it is ours, for calls that are not virtual; or null
    EToken m_token = eToken_Unknown;
    bool m_tokenPushedBack = false; // the next token is m_token again
    bool m_currentPending = false;  // m_current is yet to be delivered
    bool m_failed = false;          // also where memory was too short for an ErrorInfo
    ValuePtr m_current;
    ValuePtr m_spare; // a scalar that has passed and that nobody else holds
    vxcore::ErrorInfo::Ptr m_error;
    Options const m_options;
};

/// One value of a document, or the root above it.
///
/// The text of a literal or number is in the value. That of a string stays in the tokenizer until
/// it is asked for, whole or as a stream (one of the two; what the one took, the other misses), and
/// is gone once the reader has moved on: read a string before the next `next_value()`. Whether it
/// is still there is told by the kind of the current token only, so a string that was left unread
/// may even take the text of the string that the reader stands on now.
///
/// Errors. With a null `error` a failure is raised; else it is stored in `*error`, and the call
/// gives what it has. Either way the value has failed. To ask a value for another type than its own
/// ends the reader too, so look at `type()` first; a failed conversion spares the reader.
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

    EType type() const noexcept { return m_type; }

    /// Empty for elements of arrays and at the top level.
    std::string const & name() const noexcept VXCORE_LIFETIMEBOUND { return m_name; }

    /// The text of a string, literal or number. A second call gives the same.
    ///
    /// @raises error.vxjson.reader.value: object, array or root; or the reader has moved on.
    /// @raises error.vxjson.reader.unexpected.size: more than 134217728 bytes.
    std::string const & as_string(ErrorSlot error = nullptr) VXCORE_LIFETIMEBOUND;

    /// As `as_string`, but the text moves to the caller, without a copy, and the value has an empty
    /// one from then on.
    std::string take_string();

    /// @raises error.vxjson.reader.value: not a number.
    /// @raises error.vxcore.conversion: beyond the range of a double.
    double as_double(ErrorSlot error = nullptr);

    /// @raises error.vxjson.reader.value: not a boolean.
    bool as_bool(ErrorSlot error = nullptr);

    /// The text of a string of any size, read straight off the tokenizer. The stream does not keep
    /// the value; it raises when it is used longer. Its `size()` is -1 unless the text was read by
    /// `as_string` before, or has ended. All calls give the same stream.
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

    Value(Reader & reader, ValuePtr parent, EType type, std::string && name);
    ~Value() override;

    static ValuePtr make(Reader & reader, EType type, std::string && name);
    bool is_reusable() const noexcept;
    void reuse(ValuePtr const & parent, EType type, std::string && name) noexcept;

    void read_token_value();
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
    ValuePtr m_parent;
    unsigned int m_depth; // number of ancestors
    EType m_type;
    std::string m_name;
    EState m_state = eState_Unread;
    bool m_wasLoaded = false;     // what is streamed is m_data
    unsigned int m_streamPos = 0; // in m_data or in the text of the current token
    std::string m_data;
    StreamPtr m_stream;
};

inline Reader::ValuePtr Reader::current() const {
    return m_current;
}

/// "Root", "Object", "Array", "Null", "Boolean", "Number" or "String"; "##InvalidType(7)##" for a
/// number that is none.
VXJSON_API std::string to_string(Reader::Value::EType type);
VXJSON_API std::ostream & operator<<(std::ostream & stream, Reader::Value::EType type);

} // namespace vxjson
