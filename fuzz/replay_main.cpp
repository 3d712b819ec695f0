/// Replaces the fuzzer where there is none: runs the named files and all files in the named
/// folders, and prints their number. An input that breaks a rule ends the process.

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(unsigned char const * data, std::size_t size);

namespace {

namespace fs = std::filesystem;

bool add_files(fs::path const & path, std::vector<fs::path> & files) {
    if (fs::is_regular_file(path)) {
        files.push_back(path);
        return true;
    }
    if (!fs::is_directory(path)) {
        std::fprintf(stderr, "%s: no such file or folder\n", path.c_str());
        return false;
    }
    for (fs::directory_entry const & entry : fs::recursive_directory_iterator(path)) {
        if (entry.is_regular_file()) {
            files.push_back(entry.path());
        }
    }
    return true;
}

bool run_file(fs::path const & path) {
    std::ifstream file(path, std::ios::binary);
    std::string const bytes((std::istreambuf_iterator<char>(file)), {});
    if (file.bad() || !file.is_open()) {
        std::fprintf(stderr, "%s: cannot be read\n", path.c_str());
        return false;
    }
    // A heap block of exactly this size, so that sanitizers notice a read past its end.
    std::vector<unsigned char> const data(bytes.begin(), bytes.end());
    LLVMFuzzerTestOneInput(data.data(), data.size());
    return true;
}

} // namespace

int main(int argc, char ** argv) {
    std::vector<fs::path> files;
    for (int i = 1; i < argc; ++i) {
        if (!add_files(argv[i], files)) {
            return 2;
        }
    }
    std::sort(files.begin(), files.end());
    for (fs::path const & file : files) {
        if (!run_file(file)) {
            return 2;
        }
    }
    std::printf("%zu inputs replayed\n", files.size());
    return files.empty() ? 2 : 0;
}
