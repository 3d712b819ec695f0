// The rule under test: frames come out as they were written, however the stream is cut, and one
// that is too large does no harm to the next.

#include "forms.h"
#include "support/streams.h"

#include <set>
#include <vector>

namespace {

using namespace vxtest;

TEST(Frame, ComesOutOfPiecesOfAnySizeUnlessItIsAboveTheLimit) {
    std::string text;
    std::set<std::size_t> ends;
    std::vector<std::string> allowed;
    vxcore::StringSink sink(text);
    for (std::size_t const size : {5u, 1020u, 0u, 3001u, 1021u, 3000u}) {
        std::string const payload(size, static_cast<char>(size));
        write_frame(sink, payload);
        ends.insert(text.size());
        write_frame(sink, *list_of(payload, 999));
        ends.insert(text.size());
        EXPECT_EQ(text.substr(text.size() - size), payload);
        allowed.insert(allowed.end(), size > 3000 ? 0 : 2, payload);
    }
    for (std::size_t const piece : {1u, 3u, 64u, 4000u, 20000u}) {
        FrameReader frames({.max_size = 3000});
        std::vector<std::string> taken;
        int refusals = 0;
        auto const take = [&] {
            while (auto const frame = frames.next()) {
                taken.emplace_back(frame->as_text());
                EXPECT_EQ(frames.last().as_text(), taken.back());
            }
        };
        for (std::size_t at = 0; at < text.size(); at += piece) {
            frames.feed(text.substr(at, piece));
            bool const isEnd = ends.count(std::min(at + piece, text.size())) != 0;
            auto const check_end = [&] {
                EXPECT_EQ(code_of([&] { frames.finish(); }),
                          isEnd ? "" : "error.vxserialize.data.truncated");
            };
            check_end();
            for (std::string code; (code = code_of(take)) != "";) {
                EXPECT_EQ(code, "error.vxserialize.data.size");
                EXPECT_TRUE(frames.last().empty());
                ++refusals;
            }
            check_end();
            EXPECT_LT(frames.buffered(), 3004u);
        }
        EXPECT_EQ(taken, allowed) << piece;
        EXPECT_EQ(refusals, 2) << piece;
    }
}

} // namespace
