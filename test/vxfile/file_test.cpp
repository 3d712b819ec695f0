// The rules under test: what is written is read; a file is replaced as a whole or not at all; a key
// that others can read is refused, and its bytes are nowhere but in its file and in keys.

#include "support/allocation.h"
#include "support/expect_error.h"

#include "vxattribute/error_codes.h"
#include "vxattribute/make_value.h"
#include "vxfile/vxfile.h"

#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using namespace vxattribute;
using namespace vxfile;
using vxcrypto::Key;
using vxtest::expect_error;
namespace codes = vxfile::error;

/// Each case has an empty folder, which is removed with all that is in it.
class File : public testing::Test {
  protected:
    File() { std::filesystem::create_directory(m_folder); }

    ~File() override { std::filesystem::remove_all(m_folder); }

    std::string path(char const * name) const { return m_folder + '/' + name; }

    std::string const m_folder = testing::TempDir() + "vxfile." + std::to_string(::getpid());
    AttributeMap const m_map = make_map({{"host", "a"}, {"ports", make_list<long long>({1, 2})}});
};

unsigned int mode_of(std::string const & path) {
    return static_cast<unsigned int>(std::filesystem::status(path).permissions());
}

TEST_F(File, IsReadAsItWasWrittenInEachForm) {
    write_name_list_file(path("names"),
                         *AttributeNamePackage::Composer().add("host").add("ports").compose());
    auto const package = read_name_list_file(path("names"));
    auto const packages = AttributeNamePackageSet::create(package);

    struct {
        char const * name;
        WriteFileOptions options;
        char const * bytes;
    } const cases[] = {
        {"a.json", {}, "{\n  \"host\": \"a\",\n  \"ports\": [\n    1,\n    2\n  ]\n}\n"},
        {"a.txt", {.indent = 0}, "12u"},
        {"a.bin", {.packages = packages}, "\x8C"},
        {"guessed", {.form = EFileForm::eText}, "12u"},
    };

    for (auto const & [name, options, bytes] : cases) {
        write_file_atomically(path(name), m_map, options);
        EXPECT_TRUE(read_bytes_file(path(name)).starts_with(bytes)) << name;
        EXPECT_EQ(read_map_file(path(name), {.packages = packages}), m_map) << name;
    }
    EXPECT_FALSE(read_map_file(path("a.bin"), {.allow_unknown_packages = true}).exists("host"));
    auto const info =
        expect_error([&] { read_file(path("a.bin")); }, codes::vxfile_content,
                     path("a.bin") + ": Reference to unknown attribute name package.  PackageId: " +
                         package->id().as_string(0) + " (before byte 22)");
    EXPECT_EQ(info->nested()->code(),
              vxattribute::error::vxattribute_name_decoder_packageRef_unknown);
}

TEST_F(File, FailuresNameItAndTheReason) {
    std::string const file = path("a.json");
    expect_error([&] { read_file(file); }, codes::vxfile_open_notFound,
                 file + ": cannot be opened: No such file or directory");
    expect_error([&] { write_file_atomically(path("a"), m_map); }, codes::vxfile_form,
                 path("a") +
                     ": no form is given, and the name does not end in .json, .bin or .txt");
    write_bytes_file_atomically(file, std::string("[2]"));
    expect_error([&] { read_file(file, {.max_size = 2}); }, codes::vxfile_size,
                 file + ": has more than 2 bytes, which max_size allows");
    expect_error([&] { read_map_file(file); }, codes::vxfile_content,
                 file + ": its value is not one map");
    DescriptorSink full(::open("/dev/full", O_WRONLY | O_CLOEXEC), {.name = "full"});
    expect_error([&] { full.write(file); }, codes::vxfile_write,
                 "full: cannot be written: No space left on device");
}

TEST_F(File, IsReplacedOnlyWhenTheNewOneIsComplete) {
    std::string const file = path("a.json");
    write_bytes_file_atomically(file, std::string("old"));
    std::filesystem::permissions(file, std::filesystem::perms(0640));
    std::filesystem::create_symlink("a.json", path("link.json"));
    auto const is_old = [&] {
        EXPECT_EQ(read_bytes_file(file), "old");
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(m_folder), {}), 2);
    };
    EXPECT_GT(vxtest::fail_each_allocation([&] { write_file_atomically(path("link.json"), m_map); },
                                           is_old),
              10u);
    EXPECT_EQ(read_map_file(file), m_map);
    EXPECT_TRUE(std::filesystem::is_symlink(path("link.json")));
    EXPECT_EQ(mode_of(file), 0640u);
    AtomicFile finished(file);
    finished.finish();
    EXPECT_THROW(finished.write(file), vxcore::ErrorException);
    EXPECT_EQ(read_map_file(file), m_map);

    ::mode_t const mask = ::umask(027);
    write_bytes_file_atomically(path("first"), std::string(100000, 'x'));
    ::umask(mask);
    EXPECT_EQ(mode_of(path("first")), 0640u);
    EXPECT_EQ(read_bytes_file(path("first")), std::string(100000, 'x'));
}

TEST_F(File, OfAKeyIsForItsOwner) {
    Key const key("\x01\xAB key of bytes", 15);
    std::string const file = path("key");
    for (auto const format : {EKeyFormat::eHex, EKeyFormat::eRaw}) {
        vxtest::watch_freed_memory(key.data(), key.size());
        write_key_file(file, key, {.format = format, .replace = true});
        EXPECT_EQ(mode_of(file), 0600u);
        EXPECT_TRUE(read_key_file(file).equal(key));
        EXPECT_EQ(vxtest::freed_with_bytes(), 0u);
        vxtest::watch_freed_memory(nullptr, 0);
    }
    expect_error([&] { write_key_file(file, key); }, codes::vxfile_write_exists,
                 file + ": is there already, and is not replaced");
    for (unsigned int const mode : {0640u, 0604u}) {
        std::filesystem::permissions(file, std::filesystem::perms(mode));
        expect_error([&] { read_key_file(file); }, codes::vxfile_key_access,
                     file + ": holds a key, and others than its owner may read it");
        EXPECT_TRUE(read_key_file(file, {.allow_others = true}).equal(key));
    }
}

} // namespace
