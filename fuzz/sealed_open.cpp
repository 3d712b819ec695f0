/// Opens sealed values of arbitrary bytes with keys of 0, 16 and 32 bytes. Also changes bytes of
/// good sealed values, which then must not open.

#include "check.h"
#include "input.h"
#include "known_key.h"
#include "memory_watch.h"
#include "stream_checks.h"

#include "vxcore/error_exception.h"
#include "vxserialize/memory_reader.h"
#include "vxserialize/memory_writer.h"

using namespace vxattribute;

extern "C" int LLVMFuzzerTestOneInput(unsigned char const * data, std::size_t size);

namespace {

/// Opens the value in every way with each key. Each attempt must end with a result or a failure.
void open_all_ways(SecuredValue const & value, SecuredValue::ICipherProvider const & provider) {
    SecuredValue const before = value;
    for (unsigned int size : {0u, 16u, 32u}) {
        vxcrypto::Key const key = vxfuzz::key_of_size(size);
        bool isGood = false;
        try {
            isGood = value.authenticate(key, provider);
        } catch (vxcore::ErrorException const &) {
        }
        SecuredValue::ErrorPtr error;
        (void)value.extract(key, provider, &error);
        vxfuzz::check(isGood || error, "a value that fails the check does not open");
        try {
            (void)value.extract_binary_as_key(key, provider, nullptr);
            vxfuzz::check(isGood, "a value that fails the check yields no key");
        } catch (vxcore::ErrorException const &) {
        }
    }
    vxfuzz::check(value == before, "opening leaves the value as it was");
}

void open_any(vxcore::RefCountPtr<vxserialize::MemoryList const> const & bytes) {
    vxfuzz::MemoryWatch const watch;
    vxserialize::MemoryReader reader(bytes);
    SecuredValue value;
    try {
        while (reader.next_type() != vxserialize::eElement_None) {
            value.read(reader);
            open_all_ways(value, SecuredValue::default_cipher_provider());
            open_all_ways(value, SecuredValue::strict_cipher_provider());
        }
    } catch (vxcore::ErrorException const &) {
    }
    vxfuzz::check(watch.peak() <= 256 * bytes->size() + 65536, "memory stays within the data");
}

/// Seals a text, changes bytes of the ciphertext, and checks that only the unchanged one opens.
void open_changed(vxfuzz::Input & input) {
    vxcrypto::Key const key = vxfuzz::key_of_size(16);
    vxfuzz::FixedRandom random;
    SecuredValue const good(AttributeValue(input.text(60)), input.text(10), {}, key,
                            SecuredValue::default_cipher(), random);
    std::string sealed(good.ciphertext()->size(), '\0');
    good.ciphertext()->read_at(0, sealed.data(), good.ciphertext()->size());
    std::string const before = sealed;
    while (!input.at_end()) {
        std::size_t const at = input.byte() % sealed.size();
        sealed[at] = static_cast<char>(sealed[at] ^ input.byte());
    }
    vxserialize::MemoryWriter writer;
    writer.begin_record();
    writer << good.annotation() << good.cipher_id();
    good.key_id().write(writer);
    writer.write_binary(sealed.data(), static_cast<unsigned int>(sealed.size()));
    writer.end_record();
    vxserialize::MemoryReader reader = writer.reader();
    SecuredValue const changed(reader);
    vxfuzz::check(changed.authenticate(key) == (sealed == before), "only what was sealed opens");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(unsigned char const * data, std::size_t size) {
    vxfuzz::Input input(data, size);
    unsigned int const mode = input.byte();
    if (mode % 2 == 0) {
        open_changed(input);
    } else if (size != 0) {
        open_any(vxfuzz::cut({reinterpret_cast<char const *>(data) + 1, size - 1}, 1 + mode % 64,
                             1 + mode / 64));
    }
    return 0;
}
