#pragma once

#include "vxcore/error_exception.h"
#include "vxfile/error_codes.h"

#include <exception>
#include <new>
#include <string>

/// Raises the errors of this library. `function` is a literal: the qualified name of the operation.
namespace vxfile::impl {

/// Raises `code`. `message` is a literal with a placeholder for `path`.
[[noreturn]] void throw_file(vxcore::ErrorCode const & code, char const * message,
                             std::string const & path, char const * function);

/// Raises `code` for a failure that the system reported as `reason`, a value of `errno`. `message`
/// is a literal with placeholders for `path` and `reason`.
[[noreturn]] void throw_system(vxcore::ErrorCode const & code, char const * message,
                               std::string const & path, int reason, char const * function);

/// Raises the code for a file that cannot be opened.
[[noreturn]] void throw_open(std::string const & path, int reason, char const * function);

/// Raises `error.vxfile.content`.
///
/// @param cause  Is nested; may be null.
[[noreturn]] void throw_content(std::string const & path, std::string reason,
                                std::exception const * cause, char const * function);

/// The text of an error and of those nested in it.
std::string text_with_causes(vxcore::ErrorException const & e);

/// Runs `action`, which reads the content of the file `path`. Raises `error.vxfile.content` for
/// every failure except lack of memory and failures of a file, which name it already.
template <typename Action>
auto with_content_of(std::string const & path, char const * function, Action const & action) {
    try {
        return action();
    } catch (std::bad_alloc const &) {
        throw;
    } catch (vxcore::ErrorException const & e) {
        if (e.info()->matches(error::vxfile)) {
            throw;
        }
        throw_content(path, text_with_causes(e), &e, function);
    } catch (std::exception const & e) {
        throw_content(path, e.what(), &e, function);
    }
}

} // namespace vxfile::impl
