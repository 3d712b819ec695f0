// The rule under test: a package is determined by its names, sorted by bytes, under an id that
// every process computes alike. Reading accepts no package that breaks this.

#include "support/allocation.h"
#include "support/expect_error.h"

#include "vxattribute/stream/recording_writer.h"
#include "vxattribute/stream/scripted_reader.h"
#include "vxattribute/value_forms.h"

namespace {

using namespace vxattribute;
using vxtest::expect_error;
using Package = AttributeNamePackage;
using PackageSet = AttributeNamePackageSet;
using Names = std::vector<AttributeName>;
using Texts = std::vector<std::string>;

// Computed from the rule by another program.
char const * const emptyId = "7dea362b3fac8e40956a4952a3d4f474";
char const * const abcId = "65b925db2ed76d4eb2fc2b8f016e69e8";
char const * const alphaBetaId = "938398afbaf5af4f824d0dfe89bcccb9";
char const * const bytesId = "ab7311102b8c244f9bd8693478bb3621";

template <typename T>
std::string script_of(T const & pointer) {
    vxtest::RecordingWriter writer;
    writer << pointer;
    return writer.script;
}

template <typename Pointer>
Pointer read_script(std::string const & script) {
    vxtest::ScriptedReader reader(script);
    Pointer pointer;
    reader >> pointer;
    EXPECT_EQ(reader.rest(), 0u);
    return pointer;
}

Texts texts(Package const & package) {
    Texts result;
    for (AttributeName const & name : package) {
        result.push_back(name.value());
    }
    return result;
}

TEST(NamePackage, IdsAndOrderComeFromTheBytesAlone) {
    struct {
        Names names;
        char const * id;
        Texts sorted;
    } const rows[] = {
        {{}, emptyId, {}},
        {{"abc"}, abcId, {"abc"}},
        {{""}, "285d5fed06dc524ea04a13cc9426616b", {""}},
        {{"alpha", "beta"}, alphaBetaId, {"alpha", "beta"}},
        {{"beta", "alpha"}, alphaBetaId, {"alpha", "beta"}},
        {{"b", "\xFF", "ab", "Z", "a"}, bytesId, {"Z", "a", "ab", "b", "\xFF"}},
    };

    for (auto const & row : rows) {
        auto const package = Package::create(row.names);
        EXPECT_EQ(package->id().as_string(1), row.id);
        EXPECT_EQ(texts(*package), row.sorted);
        EXPECT_EQ(package->empty(), row.sorted.empty());
    }
}

TEST(NamePackage, FindsEveryNameAndNoOther) {
    Names names;
    for (int i = 0; i < 1000; ++i) {
        names.push_back("name " + std::to_string(i));
    }
    auto const package = Package::create(names);
    for (AttributeName const & name : names) {
        AttributeName const * const found = package->find(name);
        ASSERT_NE(found, package->end());
        EXPECT_EQ(package->count(name), 1u);
        EXPECT_EQ(package->at(static_cast<unsigned int>(found - package->begin())), name);
    }
    for (char const * absent : {"", "name", "name 1000"}) {
        EXPECT_EQ(package->find(absent), package->end()) << absent;
        EXPECT_EQ(package->count(absent), 0u) << absent;
    }
    EXPECT_THROW((void)package->at(1000), std::out_of_range);
    EXPECT_EQ(Package::create(Names())->find("x"), Package::create(Names())->end());
}

TEST(NamePackage, ComposersTakeNamesOnce) {
    auto const first = Package::Composer("beta").add("alpha").add("beta").compose();
    EXPECT_EQ(first->id().as_string(1), alphaBetaId);
    Package::Composer composer;
    composer("abc").add(Package::Ptr());
    auto const single = composer.compose();
    EXPECT_EQ(single->id().as_string(1), abcId);
    EXPECT_EQ(composer.add(first).add(single).compose()->size(), 3u) << "may go on after compose";
    auto const more = Package::create(Names{"x", "y", "z"});
    vxtest::fail_each_allocation([&] { composer.add(more); },
                                 [&] { EXPECT_EQ(composer.compose()->size(), 3u); });
}

/// Returns the operations of a package in a stream. `names` are the operations of the list.
std::string form(std::string const & id, std::string const & names) {
    return "record; uuid " + id + "; " + names + "end; close";
}

TEST(NamePackage, StreamForm) {
    std::string const alphaBeta = form(alphaBetaId, "list 2; key alpha; next; key beta; ");
    auto const package = Package::create(Names{"alpha", "beta"});
    EXPECT_EQ(script_of(package), alphaBeta);
    EXPECT_EQ(script_of(Package::Ptr()), "null");
    EXPECT_EQ(script_of(Package::create(Names())), form(emptyId, "list 0; "));

    EXPECT_EQ(texts(*read_script<Package::Ptr>(alphaBeta)), texts(*package));
    EXPECT_EQ(read_script<Package::Ptr>("null"), nullptr);
    std::string const falseCount = form(abcId, "list 4000000000; key abc; ");
    EXPECT_EQ(read_script<Package::Ptr>(falseCount)->size(), 1u);
}

TEST(NamePackage, WhatIsNoPackageIsRefusedAndTheTargetKept) {
    std::string const id = "938398af-baf5-af4f-824d-0dfe89bcccb9"; // alphaBetaId
    std::string const mismatch =
        "Mismatch of deserialized package identifier (" + id + ") and computed ID (";
    std::string const unsorted = "Names in deserialized package (id: " + id + ") are not sorted";
    std::string const duplicate = "Attempt to add duplicate attribute name (a) to package.";
    auto const & serialization = error::vxattribute_name_package_serialization;
    auto const & twice = error::vxattribute_name_package_duplicateName;

    struct {
        std::string script;
        vxcore::ErrorCode const & code;
        std::string text;
    } const rows[] = {
        {form(alphaBetaId, "list 0; key abc; "), serialization,
         mismatch + "65b925db-2ed7-6d4e-b2fc-2b8f016e69e8)"},
        {form(alphaBetaId, "list 0; key abc; next; key abc; "), serialization, // and a name twice
         mismatch + "8fb8cb4c-bbff-0b44-aa05-f29e2d695b81)"},
        {form(alphaBetaId, "list 0; key beta; next; key alpha; "), serialization, unsorted},
        {form(alphaBetaId, "list 0; key wrong; next; key id; "), serialization, unsorted},
        {form("bac65dd4a4daf5469b7b3693319d2fc4", "list 2; key a; next; key a; "), // its own id
         twice, duplicate},
    };

    Names const twins = {"a", "b", "a"};
    char const create[] = "vxattribute::AttributeNamePackage::create()";
    expect_error([&] { Package::create(twins); }, twice, duplicate, create);
    auto const kept = Package::create(Names{"kept"});
    for (auto const & row : rows) {
        vxtest::ScriptedReader reader(row.script);
        auto target = kept;
        expect_error([&] { reader >> target; }, row.code, row.text, create);
        EXPECT_EQ(target, kept);
    }
}

TEST(NamePackage, NullsComeFirstAndEqualIdsAreEqual) {
    Package::IdLess const less;
    Package::IdEquals const equals;
    auto const make = [](int order) { // of those of a higher order the id is higher
        return order == 0   ? Package::Ptr()
               : order == 1 ? Package::create(Names{"abc"})
                            : Package::create(Names{"alpha", "beta"});
    };
    for (int a = 0; a < 3; ++a) {
        for (int b = 0; b < 3; ++b) {
            EXPECT_EQ(less(make(a), make(b)), a < b) << a << ' ' << b;
            EXPECT_EQ(equals(make(a), make(b)), a == b) << a << ' ' << b;
        }
    }
}

TEST(NamePackageSet, HoldsEachIdOnceInOrder) {
    auto const abc = Package::create(Names{"abc"});
    auto const alphaBeta = Package::create(Names{"alpha", "beta"});
    auto const set = PackageSet::Composer(alphaBeta).add(abc).add(PackageSet::Ptr()).compose();
    auto const twin = Package::create(Names{"abc"});
    for (PackageSet::Ptr const & each :
         {set, set->create_union(set), set->create_union(twin), set->create_union(Package::Ptr()),
          set->create_union(PackageSet::Ptr()), PackageSet::create(abc)->create_union(set),
          PackageSet::create()->create_union(alphaBeta)->create_union(abc),
          PackageSet::Composer(set).add(twin).compose(),
          read_script<PackageSet::Ptr>(script_of(set))}) {
        ASSERT_EQ(each->size(), 2u);
        EXPECT_EQ(each->begin()[0]->id().as_string(1), abcId);
        EXPECT_EQ(each->begin()[1]->id().as_string(1), alphaBetaId);
        EXPECT_EQ(each->find(alphaBeta->id()), each->begin() + 1);
        EXPECT_EQ(each->find("beta"), each->begin() + 1);
        EXPECT_EQ(each->find("other"), each->end());
        EXPECT_EQ(each->find(vxcore::Uuid()), each->end());
    }
    for (auto const & empty : {PackageSet::create(), PackageSet::create(Package::Ptr()),
                               PackageSet::Composer(Package::Ptr()).compose()}) {
        EXPECT_TRUE(empty->empty());
        EXPECT_EQ(empty->find("abc"), empty->end());
    }
}

TEST(NamePackageSet, StreamForm) {
    auto const abc = Package::create(Names{"abc"});
    auto const set = PackageSet::create(abc)->create_union(Package::create(Names()));
    std::string const script = "record; list 2; " + form(abcId, "list 1; key abc; ") + "; next; " +
                               form(emptyId, "list 0; ") + "; end; close";
    EXPECT_EQ(script_of(set), script);
    EXPECT_EQ(script_of(PackageSet::Ptr()), "null");
    EXPECT_EQ(read_script<PackageSet::Ptr>("null"), nullptr);
    std::string falseCount = script;
    vxtest::ScriptedReader reader(falseCount.replace(script.find('2'), 1, "4000000000"));
    EXPECT_EQ(PackageSet::create(abc)->create_union(reader)->size(), 2u);
}

TEST(NamePackageSet, TellsNamesThatStandInSeveralPackages) {
    auto const pair = PackageSet::Composer(Package::create(Names{"a", "b", "c"}))
                          .add(Package::create(Names{"b", "c", "d"}))
                          .compose();
    auto const set = pair->create_union(Package::create(Names{"d", "e"}));
    std::set<AttributeName> duplicates = {"old"};
    EXPECT_TRUE(set->check_duplicate_names(&duplicates));
    EXPECT_TRUE(pair->check_duplicate_names(nullptr));
    EXPECT_EQ(duplicates, (std::set<AttributeName>{"b", "c", "d"}));
    auto const apart =
        PackageSet::create(Package::create(Names{"a"}))->create_union(Package::create(Names{"b"}));
    EXPECT_FALSE(apart->check_duplicate_names(&duplicates));
    EXPECT_TRUE(duplicates.empty());
    EXPECT_FALSE(apart->check_duplicate_names(nullptr));
}

} // namespace
