// The rule under test: a package is what its names are, sorted by bytes and under an id that every
// process computes alike, and nothing that is read becomes a package that is not.

#include "support/allocation.h"
#include "support/expect_error.h"

#include "vxattribute/recording_writer.h"
#include "vxattribute/scripted_reader.h"
#include "vxattribute/value_forms.h"

namespace {

using namespace vxattribute;
using Package = AttributeNamePackage;
using PackageSet = AttributeNamePackageSet;
using Names = std::vector<AttributeName>;
using Operations = std::vector<std::string>;

// Computed from the rule by another program.
char const * const emptyId = "7dea362b3fac8e40956a4952a3d4f474";
char const * const abcId = "65b925db2ed76d4eb2fc2b8f016e69e8";
char const * const alphaBetaId = "938398afbaf5af4f824d0dfe89bcccb9";
char const * const bytesId = "ab7311102b8c244f9bd8693478bb3621";

template <typename T>
Operations script_of(T const & pointer) {
    vxtest::RecordingWriter writer;
    writer << pointer;
    return writer.script;
}

template <typename Pointer>
Pointer read_script(Operations const & script) {
    vxtest::ScriptedReader reader(script);
    Pointer pointer;
    reader >> pointer;
    EXPECT_EQ(reader.rest(), Operations());
    return pointer;
}

std::vector<std::string> texts(Package const & package) {
    std::vector<std::string> result;
    for (AttributeName const & name : package) {
        result.push_back(name.value());
    }
    return result;
}

TEST(NamePackage, IdsAndOrderComeFromTheBytesAlone) {
    struct {
        Names names;
        char const * id;
        Operations sorted;
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
        EXPECT_EQ(package->size(), row.sorted.size());
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
        EXPECT_EQ(*found, name);
        EXPECT_EQ(&package->at(static_cast<unsigned int>(found - package->begin())), found);
    }
    for (char const * absent : {"", "name", "name 1000"}) {
        EXPECT_EQ(package->find(absent), package->end());
        EXPECT_EQ(package->count(absent), 0u);
    }
    EXPECT_EQ(package->count("name 7"), 1u);
    try {
        (void)package->at(1000);
        ADD_FAILURE() << "nothing was raised";
    } catch (std::out_of_range const & e) {
        EXPECT_STREQ(e.what(), "vxattribute::AttributeNamePackage");
    }
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
    Package::Composer const copy = composer;
    EXPECT_EQ(copy.compose()->size(), 3u);
    vxtest::fail_each_allocation(
        [&] {
            composer.add(Package::create(Names{"x", "y", "z"}));
        },
        [&] { EXPECT_EQ(composer.compose()->size(), 3u); });
}

TEST(NamePackage, DuplicatesAreRefused) {
    auto const info = vxtest::expect_error(
        [] {
            Package::create(Names{"twin", "other", "twin"});
        },
        error::vxattribute_name_package_duplicateName,
        "Attempt to add duplicate attribute name (twin) to package.");
    EXPECT_EQ(*info->params().find_value("attributeName"), "twin");
}

TEST(NamePackage, StreamForm) {
    Operations const alphaBeta = {"record", std::string("uuid ") + alphaBetaId,
                                  "list 2", "key alpha",
                                  "next",   "key beta",
                                  "end",    "close"};
    auto const package = Package::create(Names{"alpha", "beta"});
    EXPECT_EQ(script_of(package), alphaBeta);
    EXPECT_EQ(script_of(Package::Ptr()), Operations{"null"});
    EXPECT_EQ(script_of(Package::create(Names())),
              (Operations{"record", std::string("uuid ") + emptyId, "list 0", "end", "close"}));

    auto const copy = read_script<Package::Ptr>(alphaBeta);
    EXPECT_EQ(copy->id(), package->id());
    EXPECT_EQ(texts(*copy), texts(*package));
    EXPECT_EQ(copy->count("beta"), 1u);
    EXPECT_EQ(read_script<Package::Ptr>({"null"}), nullptr);
    Operations const falseCount = {
        "record", std::string("uuid ") + abcId, "list 4000000000", "key abc", "end", "close"};
    EXPECT_EQ(read_script<Package::Ptr>(falseCount)->size(), 1u);
}

TEST(NamePackage, WhatIsNoPackageIsRefusedAndTheTargetKept) {
    std::string const idText = "938398af-baf5-af4f-824d-0dfe89bcccb9";
    std::string const mismatch = "Mismatch of deserialized package identifier (" + idText +
                                 ") and computed ID (65b925db-2ed7-6d4e-b2fc-2b8f016e69e8)";
    std::string const unsorted =
        "Names in deserialized package (id: " + idText + ") are not sorted";
    auto const & serialization = error::vxattribute_name_package_serialization;

    struct {
        char const * id;
        Operations names;
        vxcore::ErrorCode const & code;
        std::string text;
    } const rows[] = {
        {alphaBetaId, {"key abc"}, serialization, mismatch},
        {alphaBetaId, {"key beta", "next", "key alpha"}, serialization, unsorted},
        {alphaBetaId, {"key wrong", "next", "key id"}, serialization, unsorted},
        {"bac65dd4a4daf5469b7b3693319d2fc4", // the right one of these two
         {"key a", "next", "key a"},
         error::vxattribute_name_package_duplicateName,
         "Attempt to add duplicate attribute name (a) to package."},
    };

    auto const kept = Package::create(Names{"kept"});
    for (auto const & row : rows) {
        Operations script = {"record", std::string("uuid ") + row.id, "list 0"};
        script.insert(script.end(), row.names.begin(), row.names.end());
        script.insert(script.end(), {"end", "close"});
        vxtest::ScriptedReader reader(script);
        auto target = kept;
        auto const info =
            vxtest::expect_error([&] { reader >> target; }, row.code, row.text.c_str());
        EXPECT_EQ(target, kept);
        if (row.text == mismatch) {
            EXPECT_EQ(*info->params().find_value("packageId"), idText);
            EXPECT_EQ(*info->params().find_value("packageIdExpected"),
                      "65b925db-2ed7-6d4e-b2fc-2b8f016e69e8");
        }
    }
}

TEST(NamePackage, NullsComeFirstAndEqualIdsAreEqual) {
    Package::IdLess const less;
    Package::IdEquals const equals;
    Package::Ptr const null, abc = Package::create(Names{"abc"}),
                             twin = Package::create(Names{"abc"}),
                             high = Package::create(Names{"alpha", "beta"});
    EXPECT_TRUE(less(null, abc) && less(abc, high));
    EXPECT_FALSE(less(abc, null) || less(null, null) || less(abc, twin) || less(high, abc));
    EXPECT_TRUE(equals(null, null) && equals(abc, twin));
    EXPECT_FALSE(equals(null, abc) || equals(abc, null) || equals(abc, high));
}

TEST(NamePackageSet, HoldsEachIdOnceInOrder) {
    auto const abc = Package::create(Names{"abc"});
    auto const alphaBeta = Package::create(Names{"alpha", "beta"});
    auto const set = PackageSet::Composer(alphaBeta).add(abc).add(PackageSet::Ptr()).compose();
    auto const twin = Package::create(Names{"abc"});
    PackageSet::Ptr const sets[] = {
        set,
        set->create_union(set),
        set->create_union(twin),
        set->create_union(Package::Ptr()),
        set->create_union(PackageSet::Ptr()),
        PackageSet::create(abc)->create_union(set),
        PackageSet::create()->create_union(alphaBeta)->create_union(abc),
        PackageSet::Composer(set).add(twin).compose(),
        read_script<PackageSet::Ptr>(script_of(set)),
    };
    for (auto const & each : sets) {
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
        EXPECT_TRUE(empty->empty() && empty->find("abc") == empty->end());
    }
}

TEST(NamePackageSet, StreamForm) {
    auto const set =
        PackageSet::Composer(Package::create(Names{"abc"})).add(Package::create(Names())).compose();
    Operations const script = {
        "record", "list 2", "record", std::string("uuid ") + abcId,   "list 1", "key abc", "end",
        "close",  "next",   "record", std::string("uuid ") + emptyId, "list 0", "end",     "close",
        "end",    "close"};
    EXPECT_EQ(script_of(set), script);
    EXPECT_EQ(script_of(PackageSet::Ptr()), Operations{"null"});
    EXPECT_EQ(read_script<PackageSet::Ptr>({"null"}), nullptr);
    vxtest::ScriptedReader reader(script);
    EXPECT_EQ(PackageSet::create(Package::create(Names{"abc"}))->create_union(reader)->size(), 2u);

    auto target = set;
    vxtest::ScriptedReader broken({"record", "list 1", "record", std::string("uuid ") + abcId,
                                   "list 1", "key other", "end", "close", "end", "close"});
    EXPECT_THROW(broken >> target, vxcore::ErrorException);
    EXPECT_EQ(target, set);
}

TEST(NamePackageSet, TellsNamesThatStandInSeveralPackages) {
    auto const set = PackageSet::Composer(Package::create(Names{"a", "b", "c"}))
                         .add(Package::create(Names{"b", "c", "d"}))
                         .add(Package::create(Names{"d", "e"}))
                         .compose();
    std::set<AttributeName> duplicates = {"old"};
    EXPECT_TRUE(set->check_duplicate_names(&duplicates));
    EXPECT_EQ(duplicates, (std::set<AttributeName>{"b", "c", "d"}));
    EXPECT_TRUE(set->check_duplicate_names(nullptr));
    auto const apart = PackageSet::Composer(Package::create(Names{"a"}))
                           .add(Package::create(Names{"b"}))
                           .compose();
    EXPECT_FALSE(apart->check_duplicate_names(&duplicates) || !duplicates.empty());
    EXPECT_FALSE(apart->check_duplicate_names(nullptr));
}

} // namespace
