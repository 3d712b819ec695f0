#include "vectors.h"

#include "vxcrypto/md5_context.h"

namespace {

using namespace vxtest;

TEST(Md5Context, GivesThePublishedDigestsSplitAnywhere) {
    for (auto const & vector : read_vectors("md5.txt", 2)) {
        std::string const & message = vector[0];
        for (std::size_t split = 0; split <= message.size(); ++split) {
            vxcrypto::Md5Context md5;
            md5.update(message.data(), split);
            md5.update(message.data() + split, message.size() - split);
            std::string digest(vxcrypto::Md5Context::digest_size, '\0');
            md5.final(bytes(digest));
            EXPECT_EQ(to_hex(digest), to_hex(vector[1])) << split;
        }
    }
}

} // namespace
