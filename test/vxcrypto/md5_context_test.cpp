#include "vectors.h"

#include "vxcrypto/md5_context.h"

namespace {

using namespace vxtest;

TEST(Md5Context, GivesThePublishedDigestsCutAnywhere) {
    for (auto & vector : read_vectors("md5.txt")) {
        for (Pieces const & pieces : cuts_of(vector[0].size())) {
            vxcrypto::Md5Context md5;
            in_pieces(vector[0], pieces, [&](auto * data, unsigned int n) { md5.update(data, n); });
            std::string digest(16, '\0');
            md5.final(mutable_bytes(digest));
            EXPECT_EQ(digest, vector[1]);
        }
    }
}

} // namespace
