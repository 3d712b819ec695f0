#pragma once

#include <exception>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>

namespace vxattr {

/// The exit codes of the program.
enum EExit : int {
    eExit_Good = 0,
    eExit_Data = 1,  ///< bad data, a file that cannot be used, a difference, a failed check
    eExit_Usage = 2, ///< the command line makes no sense
};

/// Data or a file that cannot be used. `what()` is one line that starts with the place.
class Failure : public std::runtime_error {
  public:
    /// @param place  The file, or the file and a path in it.
    Failure(std::string_view place, std::string_view what);

    /// @param what  The whole line.
    explicit Failure(std::string const & what);
};

/// A command line that makes no sense.
class UsageFailure : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// The text of an exception and of the errors nested in it, as one line.
std::string message_of(std::exception const & e);

/// Raises a Failure at `place`. An error of vxfile has its place already.
[[noreturn]] void throw_failure(std::string_view place, std::exception const & e);

/// Runs `action`. Turns what it raises into a Failure at `place`, except for lack of memory and for
/// failures of this program, which have their places already.
template <typename Action>
decltype(auto) with_place(std::string_view place, Action && action) {
    try {
        return action();
    } catch (Failure const &) {
        throw;
    } catch (UsageFailure const &) {
        throw;
    } catch (std::bad_alloc const &) {
        throw;
    } catch (std::exception const & e) {
        throw_failure(place, e);
    }
}

} // namespace vxattr
