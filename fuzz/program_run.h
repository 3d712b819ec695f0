#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vxfuzz {

/// A file in memory. It has a path that this process can open.
class MemoryFile {
  public:
    explicit MemoryFile(char const * name);
    MemoryFile(MemoryFile const &) = delete;
    MemoryFile & operator=(MemoryFile const &) = delete;
    ~MemoryFile();

    std::string const & path() const noexcept { return m_path; }

    int descriptor() const noexcept { return m_file; }

    /// Replaces the content; the next write appends to it.
    void assign(std::string_view bytes);

    std::string content() const;

  private:
    int const m_file;
    std::string const m_path;
};

struct ProgramResult {
    int exit;
    std::string output;
    std::string errors;
};

/// Runs the program vxattr in this process. Its output and its errors go to memory.
///
/// @param arguments  The command line without the name of the program.
ProgramResult run_program(std::vector<std::string> const & arguments);

} // namespace vxfuzz
