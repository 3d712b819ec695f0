#include "program_run.h"

#include "check.h"

#include "vxattr/run.h"

#include <cstdio>
#include <cstdlib>
#include <sys/mman.h>
#include <unistd.h>
#include <utility>

namespace vxfuzz {

MemoryFile::MemoryFile(char const * name)
    : m_file(::memfd_create(name, MFD_CLOEXEC)), m_path("/proc/self/fd/" + std::to_string(m_file)) {
    check(m_file >= 0, "a file in memory is created");
}

MemoryFile::~MemoryFile() {
    ::close(m_file);
}

void MemoryFile::assign(std::string_view bytes) {
    check(::ftruncate(m_file, 0) == 0 && ::lseek(m_file, 0, SEEK_SET) == 0 &&
              ::write(m_file, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()),
          "a file in memory is written");
}

std::string MemoryFile::content() const {
    std::string bytes(static_cast<std::size_t>(::lseek(m_file, 0, SEEK_CUR)), '\0');
    check(::pread(m_file, bytes.data(), bytes.size(), 0) == static_cast<ssize_t>(bytes.size()),
          "a file in memory is read");
    return bytes;
}

namespace {

/// Redirects the standard streams to memory while it lives.
///
/// Redirects the C stream `stderr` but not its descriptor, so that sanitizers and the fuzzer can
/// still print.
class Streams {
  public:
    Streams() : m_errors(::open_memstream(&m_errorText, &m_errorSize)) {
        check(m_errors != nullptr, "a stream in memory is created");
        output().assign("");
        ::dup2(output().descriptor(), STDOUT_FILENO);
        stderr = m_errors;
    }

    Streams(Streams const &) = delete;
    Streams & operator=(Streams const &) = delete;

    ~Streams() {
        restore();
        std::free(m_errorText);
    }

    void restore() {
        if (m_errors != nullptr) {
            std::fflush(stdout);
            ::dup2(sm_oldOutput, STDOUT_FILENO);
            stderr = sm_oldErrors;
            std::fclose(std::exchange(m_errors, nullptr));
        }
    }

    std::string errors() const { return {m_errorText, m_errorSize}; }

    static MemoryFile & output() {
        static MemoryFile file("output");
        return file;
    }

  private:
    static inline int const sm_oldOutput = ::dup(STDOUT_FILENO);
    static inline std::FILE * const sm_oldErrors = stderr;

    std::FILE * m_errors;
    char * m_errorText = nullptr;
    std::size_t m_errorSize = 0;
};

} // namespace

ProgramResult run_program(std::vector<std::string> const & arguments) {
    std::vector<char const *> argv{"vxattr"};
    for (std::string const & argument : arguments) {
        argv.push_back(argument.c_str());
    }
    Streams streams;
    int const exit = vxattr::run(static_cast<int>(argv.size()), argv.data());
    streams.restore();
    return {exit, Streams::output().content(), streams.errors()};
}

} // namespace vxfuzz
