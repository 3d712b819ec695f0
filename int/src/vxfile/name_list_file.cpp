#include "vxfile/name_list_file.h"

#include "vxattribute/name_list.h"
#include "vxfile/bytes_file.h"
#include "vxfile/failures_internal.h"
#include "vxfile/input_file.h"
#include "vxserialize/memory_reader.h"

namespace vxfile {

using vxattribute::AttributeNamePackage;

namespace {

/// A record. The stream of a package starts with it; a list of names hardly ever does.
constexpr char recordByte = '\xF7';

constexpr char function[] = "vxfile::read_name_list()";

} // namespace

AttributeNamePackage::Ptr read_name_list(InputFile & file) {
    if (!file.head().starts_with(recordByte)) {
        return vxattribute::name_list_from_text(file.read_all_text(), file.name());
    }
    return impl::with_content_of(file.name(), function, [&file] {
        vxserialize::MemoryReader reader(file.read_all());
        AttributeNamePackage::Ptr package = AttributeNamePackage::create(reader);
        if (!reader.at_end()) {
            impl::throw_content(file.name(), "more bytes follow the package", nullptr, function);
        }
        return package;
    });
}

AttributeNamePackage::Ptr read_name_list_file(std::string const & path,
                                              unsigned long long max_size) {
    InputFile file(path, {max_size});
    return read_name_list(file);
}

void write_name_list_file(std::string const & path, AttributeNamePackage const & package) {
    write_bytes_file_atomically(path, vxattribute::name_list_to_text(package, path));
}

} // namespace vxfile
