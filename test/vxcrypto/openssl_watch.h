#pragma once

#include <cstddef>
#include <vector>

/// Stands between the library and OpenSSL: the calls named here come through the test program,
/// which notes them and passes them on.
namespace vxtest {

struct Wiped {
    void const * data;
    std::size_t size;
};

struct OpensslCalls {
    unsigned long encrypted = 0;   ///< calls of AES_encrypt
    unsigned long added = 0;       ///< calls of RAND_add
    double credit = 0;             ///< what they claimed in all
    unsigned long requested = 0;   ///< calls of RAND_bytes
    bool refuse = false;           ///< lets RAND_bytes fail
    std::vector<Wiped> wiped = {}; ///< calls of OPENSSL_cleanse, in order
};

/// Watches this thread from its making to its end; one at a time.
class OpensslWatch {
  public:
    OpensslWatch();
    OpensslWatch(OpensslWatch const &) = delete;
    OpensslWatch & operator=(OpensslWatch const &) = delete;
    ~OpensslWatch();

    OpensslCalls calls;
};

} // namespace vxtest
