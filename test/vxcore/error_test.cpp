#include "support/expect_error.h"

#include "vxcore/error_codes.h"
#include "vxcore/error_composer.h"
#include "vxcore/static_instance.h"

#include <cstdlib>
#include <sstream>
#include <stdexcept>
#include <type_traits>

namespace {

using namespace vxcore;

constinit ErrorCode const queryCode("error.query", true);
constinit ErrorCode const tooManyCode("error.query.tooMany", true);
constinit ErrorCode const similarCode("error.queryX", true);

ErrorInfo::Ptr make_info(char const * message, ErrorInfo::Ptr nested = nullptr) {
    return ErrorComposer(message).param("a", "1").create(tooManyCode, SourceLocation(),
                                                         std::move(nested));
}

TEST(ErrorInfo, PlaceholdersAreReplacedOnce) {
    for (std::string const row :
         {"plain=plain", "{@a}{@a}=11", "x{@b}y=x{@a}y", "{@c}={@c}", "{@={@", "{@a={@a",
          "}{@a}}=}1}", "{@c{@a}={@c1", "{a}{@ a}={a}{@ a}", "{@}{@a}=nameless1", "{{@a}}={1}"}) {
        ErrorComposer composer(SourceString(row.substr(0, row.find('='))));
        composer.param("a", "1").param("b", "{@a}").param("", "nameless");
        EXPECT_EQ(composer.create(queryCode, {})->text(), row.substr(row.find('=') + 1));
    }
}

TEST(ErrorInfo, HostileMessagesCostNoMoreThanTheirSizeAllows) {
    std::string many, openings; // each opening must not search the rest anew
    for (int i = 0; i < 1'000'000; ++i) {
        many += i < 1000 ? "{@a}" : "";
        openings += "{@";
    }
    auto const filled = ErrorComposer(SourceString(many))
                            .param("a", std::string(100'000, 'x'))
                            .create(queryCode, SourceLocation());
    EXPECT_TRUE(filled->text().ends_with("{@a}{@a}"));
    EXPECT_LE(filled->text().size(), 16u * 104'000u);
    EXPECT_EQ(ErrorComposer(SourceString(openings + "}")).create(queryCode, {})->text().size(),
              2'000'001u);
}

TEST(ErrorInfo, MatchesItsOwnCodeAndThoseAbove) {
    std::string name = "error.query.tooMany";
    auto const info =
        ErrorInfo::create_with_own_code(SourceString(name), SourceString("m", true), ErrorParams(),
                                        {}, ErrorComposer("n").create(similarCode, {}));
    name.assign(name.size(), '?'); // the info keeps a name of its own
    EXPECT_TRUE(info->matches(tooManyCode));
    EXPECT_TRUE(info->matches(queryCode));
    EXPECT_FALSE(info->matches(similarCode)); // that of the nested info
    EXPECT_FALSE(ErrorComposer("m").create(queryCode, {})->matches(tooManyCode));
}

TEST(ErrorInfo, EqualityCoversAllButTheLocation) {
    auto const n = make_info("n");
    auto const info = make_info("m", make_info("n"));
    auto const elsewhere =
        ErrorComposer("m").param("a", "1").create(tooManyCode, VXCORE_LOCATION("f()"), n);
    EXPECT_EQ(*info, *elsewhere);
    EXPECT_EQ(info->hash(), elsewhere->hash());
    for (ErrorInfo::Ptr const & other :
         {make_info("m"), make_info("m", make_info("N")), make_info("M", n),
          ErrorComposer("m").param("a", "2").create(tooManyCode, {}, n),
          ErrorComposer("m").param("b", "1").create(tooManyCode, {}, n),
          ErrorComposer("m").param("a", "1").create(queryCode, {}, n)}) {
        EXPECT_FALSE(*info == *other);
        EXPECT_EQ(info->compare(*other) < 0, other->compare(*info) > 0);
    }
}

TEST(ErrorInfo, LongChainsAreComparedAndDestroyedWithoutRecursion) {
    ErrorInfo::Ptr chain, other;
    for (int i = 0; i < 200'000; ++i) {
        chain = make_info("m", std::move(chain));
        other = make_info("m", std::move(other));
    }
    EXPECT_EQ(*chain, *other);
    EXPECT_EQ(chain->hash(), other->hash());
    ErrorInfo::Ptr const middle = chain->nested()->nested();
    chain.reset(); // ends at the link that is still held
    EXPECT_NE(middle->nested(), nullptr);
}

TEST(ErrorInfo, WritesEveryLinkOnce) {
    auto const info = ErrorComposer("no {@a}")
                          .param("a", "way")
                          .create(queryCode, SourceLocation("f()", "file.cpp", 1234),
                                  ErrorComposer("n").create(tooManyCode, {}));
    EXPECT_EQ((std::ostringstream() << *info).str(),
              "error.query: no way\n  at f() (file.cpp:1234)\n"
              "caused by error.query.tooMany: n\n");
}

TEST(ErrorException, CarriesItsInfoThroughForeignHands) {
    static_assert(std::is_nothrow_copy_constructible_v<ErrorException>);
    static_assert(std::is_nothrow_copy_assignable_v<ErrorException>);
    ErrorException const own(make_info("value {@a}"));
    EXPECT_STREQ(own.what(), "value 1");
    EXPECT_EQ(ErrorInfo::from_exception(own, {}), own.info()); // that very info
    auto const foreign = ErrorInfo::from_exception(std::runtime_error("{@what} {@a}"), {});
    EXPECT_EQ(foreign->text(), "{@what} {@a}");
    EXPECT_EQ(foreign->code(), error::vxcore_exception);
}

TEST(ErrorException, KeepsWhatLedToItAndFillsTheCallersSlot) {
    std::runtime_error const cause("cause");
    auto const info = vxtest::expect_error(
        [&] { throw_with_nested_exception(queryCode, SourceString("outer", true), {}, cause); },
        queryCode, "outer");
    EXPECT_EQ(info->nested()->text(), "cause");
    ErrorInfo::Ptr slot;
    ErrorComposer("stored").create_transfer(&slot, queryCode, {});
    EXPECT_EQ(slot->text(), "stored");
    EXPECT_THROW(ErrorComposer("raised").create_transfer(nullptr, queryCode, {}), ErrorException);
}

TEST(SourceString, HoldsLiteralsByAddressAndCopiesTheRest) {
    static_assert(std::is_nothrow_copy_constructible_v<SourceString>);
    char buffer[] = "text";
    SourceString const literal(buffer, true);
    SourceString copied(buffer, 3u);
    buffer[0] = 'n';
    EXPECT_EQ(literal.view(), "next");
    EXPECT_STREQ(copied.data(), "tex"); // with a terminator of its own
    EXPECT_EQ(SourceString(copied.transfer()).view(), "tex");
    EXPECT_STREQ(copied.data(), "");
}

struct Counted : RefCounted<AtomicRefCount> {
    explicit Counted(int & counter) : alive(counter) { ++alive; }

    ~Counted() override { --alive; }

    int & alive;
};

TEST(RefCountPtr, EndsTheObjectWithItsLastReference) {
    using Ptr = RefCountPtr<Counted>;
    static_assert(!std::is_convertible_v<Counted *, Ptr> && !std::is_convertible_v<Ptr, bool>);
    int alive = 0;
    Ptr a = make_ref_counted<Counted>(alive);
    RefCountPtr<Counted const> b = a;
    a = *&a;
    EXPECT_FALSE(a->has_unique_ref());
    a.detach()->release_ref();
    EXPECT_TRUE(b->has_unique_ref());
    b = nullptr;
    EXPECT_EQ(alive, 0);
}

void say(void * text) noexcept {
    std::fputs(static_cast<char const *>(text), stderr);
}

/// Constructed before the list of clean-ups and so destroyed after it.
struct LastToGo {
    ~LastToGo() {
        if (active) {
            StaticInstance<std::string> const late("late");
            say(late->data());
        }
    }

    bool active = false;
} lastToGo;

TEST(StaticInstanceDeathTest, CleanUpsRunInReverseAndLateInstancesWork) {
    static char texts[3][10] = {"first ", "unloaded ", "second "};
    auto const run = [] {
        for (char * const text : texts) {
            impl::StaticInstanceBase::register_cleanup_aux(say, text);
        }
        impl::StaticInstanceBase::unregister_cleanup_aux(say, texts[1]);
        lastToGo.active = true;
        std::exit(0);
    };
    EXPECT_EXIT(run(), testing::ExitedWithCode(0), "^second first late$");
}

} // namespace
