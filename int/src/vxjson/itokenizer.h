#pragma once

#include "vxcore/error_info.h"
#include "vxjson/source_position.h"
#include "vxjson/string_slice.h"
#include "vxjson/token.h"

namespace vxjson {

/// A source of tokens for a Reader. Tokenizer is the implementation for JSON text.
///
/// A document is `eToken_DocumentStart` (optional), its tokens and `eToken_DocumentEnd`. A Reader
/// checks the grammar, so an implementation only has to tell tokens apart.
///
/// The destructor is protected: never delete through this interface.
class VXJSON_API ITokenizer {
  public:
    /// Moves to the next token and returns its kind. A failed scan returns `eToken_Error` or
    /// raises. After the end or a failure each further call returns the same again.
    virtual EToken next() = 0;

    /// Stores the text of the current token in `out` and returns `out`. The slice is empty for
    /// tokens without text.
    ///
    /// @keeps  The text stays valid until the next `next()`.
    virtual StringSlice & text(StringSlice & out) = 0;

    /// Stores the error of the failed scan in `out`; null when no scan has failed. If it is null
    /// after a failure, the reader creates an error.
    virtual void error(vxcore::ErrorInfo::Ptr & out) = 0;

    /// Stores the place of the current token, or of the failure, in `out`. The reader asks for it
    /// when it creates an error, also before the first token.
    virtual void position(SourcePosition & out) = 0;

  protected:
    ITokenizer() = default;
    ITokenizer(ITokenizer const &) = default;
    ITokenizer & operator=(ITokenizer const &) = default;
    ~ITokenizer() = default;
};

} // namespace vxjson
