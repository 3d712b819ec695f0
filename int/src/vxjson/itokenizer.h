#pragma once

#include "vxcore/error_info.h"
#include "vxjson/source_position.h"
#include "vxjson/string_slice.h"
#include "vxjson/token.h"

namespace vxjson {

/// Where a Reader gets its tokens from. Tokenizer is the one for JSON text.
///
/// A document is `eToken_DocumentStart` (which may be left out), its tokens, `eToken_DocumentEnd`.
///
/// An interface: it is not destroyed through.
class VXJSON_API ITokenizer {
  public:
    /// Moves to the next token. A failed scan gives `eToken_Error` or raises. The end and a failure
    /// are given again by every further call.
    virtual EToken next() = 0;

    /// Puts the text of the current token into `out` and gives `out`. Tokens without a text give an
    /// empty slice. The same until the next `next()`.
    virtual StringSlice & text(StringSlice & out) = 0;

    /// Puts the reason of a failed scan into `out`; null while none failed.
    virtual void error(vxcore::ErrorInfo::Ptr & out) = 0;

    /// Puts the place of the current token, or of the failure, into `out`.
    virtual void position(SourcePosition & out) = 0;

  protected:
    ITokenizer() = default;
    ITokenizer(ITokenizer const &) = default;
    ITokenizer & operator=(ITokenizer const &) = default;
    ~ITokenizer() = default;
};

} // namespace vxjson
