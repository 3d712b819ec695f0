// The rule under test: each message is decoded on its own, and a refused one does no harm to the
// next.

#include "support/allocation.h"
#include "support/expect_error.h"
#include "support/pages.h"

#include "vxattribute/error_codes.h"
#include "vxattribute/make_value.h"
#include "vxattribute/message.h"

namespace {

using namespace vxattribute;

std::string message_of(AttributeMap const & map,
                       AttributeNamePackageSet::Ptr const & packages = nullptr) {
    std::string bytes;
    vxcore::StringSink sink(bytes);
    write_message(sink, map, packages);
    return bytes;
}

std::string frame_of(std::string_view payload) {
    std::string bytes;
    vxcore::StringSink sink(bytes);
    vxserialize::write_frame(sink, payload);
    return bytes;
}

TEST(Message, IsDecodedWhateverBecameOfThoseBeforeIt) {
    EXPECT_EQ(vxtest::to_hex(message_of(make_map({{"on", true}})) + message_of(AttributeMap())),
              vxtest::to_hex(vxtest::from_hex(vxtest::page_block("frames.md", "hex-message"))));
    AttributeMap const map = make_map({{"host", "a"}, {"n", make_map({{"host", 1}})}});
    auto const package = AttributeNamePackage::Composer("host").compose();
    auto const packages = AttributeNamePackageSet::create(package);
    std::string const coded = message_of(map, packages);
    for (std::string const & refused :
         {frame_of(""), frame_of("\x03"), frame_of(coded.substr(4) + '\x80'),
          frame_of(coded.substr(4, coded.size() - 5))}) {
        MessageReader messages(packages);
        messages.feed(refused + coded + message_of(map));
        EXPECT_THROW(messages.next(), vxcore::ErrorException);
        EXPECT_EQ(messages.last_bytes().as_text(), refused.substr(4));
        EXPECT_EQ(messages.next(), map);
        EXPECT_EQ(messages.next(), map);
        EXPECT_EQ(messages.next(), std::nullopt);
    }

    MessageReader stranger;
    stranger.feed(coded);
    auto const info = vxtest::expect_error(
        [&] { stranger.next(); }, error::vxattribute_name_decoder_packageRef_unknown,
        "Reference to unknown attribute name package.  PackageId: " + package->id().as_string(0));
    EXPECT_EQ(*info->params().find_value("packageId"), package->id().as_string(0));
    stranger.set_packages(packages); // which the peer has sent
    stranger.feed(frame_of(stranger.last_bytes().as_text()));
    EXPECT_EQ(stranger.next(), map);
}

TEST(Message, IsWrittenAsAWholeOrNotAtAllWhateverLacksMemory) {
    AttributeMap const map = make_map({{"host", std::string(3000, 'x')}});

    struct Sink final : vxcore::OutputSink {
        void write(vxcore::ByteView bytes) override { size += bytes.size(); }

        std::size_t size = 0;
    } sink;

    EXPECT_GT(vxtest::fail_each_allocation([&] { write_message(sink, map); },
                                           [&] { EXPECT_EQ(sink.size, 0u); }),
              0u);
}

} // namespace
