#include "vxfile/bytes_file.h"

#include "vxfile/input_file.h"

namespace vxfile {

std::string read_bytes_file(std::string const & path, unsigned long long max_size) {
    return InputFile(path, {max_size}).read_all_text();
}

void write_bytes_file_atomically(std::string const & path, vxcore::ByteView bytes,
                                 AtomicFileOptions const & options) {
    AtomicFile file(path, options);
    file.write(bytes);
    file.commit();
}

} // namespace vxfile
