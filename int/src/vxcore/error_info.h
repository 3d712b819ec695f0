#pragma once

#include "vxcore/error_code.h"
#include "vxcore/error_params.h"
#include "vxcore/ref_count_ptr.h"
#include "vxcore/source_location.h"

#include <exception>
#include <iosfwd>
#include <string>

namespace vxcore {

/// One failure as data: a code, a message with its parameters, the place, and what led to it.
///
/// Immutable and shared: any number of threads may hold and read one. The message is a template in
/// which `{@name}` is a placeholder for the parameter `name`. Placeholders of unknown names stay,
/// and parameter values are not searched for placeholders. The constructor fills the text, so that
/// reading it never fails. The text is at most 16 times as long as message and values together;
/// placeholders that would exceed that stay.
///
/// A chain of nested infos may be of any length and is destroyed without recursion.
///
/// Cost. Creating one allocates it, its parameters and the text. Passing one on is one reference
/// count.
///
///     ErrorParams params;
///     params.insert_ref(SourceString("id", true)) = "7";
///     auto info = ErrorInfo::create(error::unknown, SourceString("Unknown id {@id}", true),
///                                   std::move(params), VXCORE_LOCATION("shop::find()"));
///     info->text(); // Unknown id 7
class VXCORE_API ErrorInfo : public RefCounted<AtomicRefCount> {
  public:
    using Ptr = RefCountPtr<ErrorInfo const>;

    /// Makes an info and fills its text.
    ///
    /// @param code    Its name must outlive the info, as that of a constant does.
    /// @param nested  The failure that caused this one, or null.
    /// @raises std::bad_alloc: no memory.
    /// @cost   One pass over the message. Its text is bounded for hostile messages too, as above.
    static Ptr create(ErrorCode const & code, SourceString message, ErrorParams params,
                      SourceLocation location, Ptr nested = nullptr);

    /// As above, for a code that is not a constant of the program (one that came in a stream, say):
    /// the info owns the name, and `code()` is valid as long as the info lives.
    static Ptr create_with_own_code(SourceString code, SourceString message, ErrorParams params,
                                    SourceLocation location, Ptr nested = nullptr);

    /// Returns the info of an ErrorException itself; for any other exception a new info with the
    /// code "error.vxcore.exception" and the text `e.what()`.
    static Ptr from_exception(std::exception const & e, SourceLocation location);

    /// The parts as given. References are valid as long as the info.
    ErrorCode const & code() const noexcept VXCORE_LIFETIMEBOUND { return m_code; }

    /// The message as written, with its placeholders.
    SourceString const & message() const noexcept VXCORE_LIFETIMEBOUND { return m_message; }

    /// The message with its placeholders filled.
    std::string const & text() const noexcept VXCORE_LIFETIMEBOUND { return m_text; }

    ErrorParams const & params() const noexcept VXCORE_LIFETIMEBOUND { return m_params; }

    SourceLocation const & location() const noexcept VXCORE_LIFETIMEBOUND { return m_location; }

    /// The failure that caused this one; may be null.
    Ptr const & nested() const noexcept VXCORE_LIFETIMEBOUND { return m_nested; }

    /// True when this info's own code is `code` or below it by a dot. Nested infos do not count.
    bool matches(ErrorCode const & code) const noexcept { return m_code.is_within(code); }

    /// Over code, message, parameters and the nested chain, with `hash_mix` and `hash_bytes`; equal
    /// infos have equal hashes. Computed at each call.
    unsigned int hash() const noexcept;

    /// Order by code, message and parameters, then down the nested chain; a chain that ends first
    /// is less. Negative, 0 or positive. The location does not count.
    int compare(ErrorInfo const & other) const noexcept;

    /// True if `compare` returns 0.
    bool operator==(ErrorInfo const & other) const noexcept { return compare(other) == 0; }

    /// Writes one line for the failure and one for its place, unless its function is empty; then
    /// the same for each nested info after "caused by ".
    virtual void write_trace(std::ostream & stream) const;

  protected:
    /// For classes that add to an info. `code` is the name, which the info owns.
    ErrorInfo(SourceString code, SourceString message, ErrorParams params, SourceLocation location,
              Ptr nested);
    ~ErrorInfo() override;

  private:
    SourceString const m_codeName;
    ErrorCode const m_code;
    SourceString const m_message;
    ErrorParams const m_params;
    SourceLocation const m_location;
    Ptr m_nested;
    std::string const m_text;
};

/// `write_trace` of the info.
VXCORE_API std::ostream & operator<<(std::ostream & stream, ErrorInfo const & info);

} // namespace vxcore
