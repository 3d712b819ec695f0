// The rule under test: a sealed value opens only with its key and its annotation, reports why it
// does not open, and leaves no key in freed memory.

#include "sealing.h"
#include "support/allocation.h"
#include "support/cases.h"
#include "support/expect_error.h"
#include "support/streams.h"

#include "vxcore/text_conversion.h"

#include <sstream>
#include <vector>

namespace {

using namespace vxattribute;
using namespace vxtest::sealing;
using vxtest::bytes_of;
using vxtest::expect_error;

TEST(SecuredValue, OpensToWhatWasSealed) {
    for (char const * id : {"EAX_AES128", "EAX_AES256"}) {
        Key const key = key_of_size(cipher(id).keysize());
        for (AttributeValue const & value :
             {AttributeValue(), AttributeValue(5), AttributeValue(std::string(100'000, 'x')),
              AttributeValue(make_map({{"a", make_list<double>({1, 2})}}))}) {
            SecuredValue const sealed = seal_note(value, key, id), copy = sealed;
            std::string const before = bytes_of(sealed.ciphertext());
            EXPECT_TRUE(sealed.authenticate(key, SecuredValue::strict_cipher_provider()));
            EXPECT_EQ(sealed.extract(key, nullptr), value);
            EXPECT_EQ(bytes_of(copy.ciphertext()), before);
            vxserialize::MemoryWriter writer;
            write_attribute_value(writer, value);
            EXPECT_EQ(before.size(), writer.size() + 32u);
            SecuredValue const again = seal_note(value, key, id); // with a nonce of its own
            EXPECT_FALSE(again == sealed);
            EXPECT_NE(again.hash(), sealed.hash());
        }
    }
}

TEST(SecuredValue, OnlyOneBinaryIsAKey) {
    Key const key = key_of_size(16), wrapped = key_of("wrapped");
    AttributeValue const binary = BinaryValue(wrapped.data(), wrapped.size());
    for (SecuredValue const & sealed : {seal_note(wrapped, key), seal_note(binary, key)}) {
        EXPECT_TRUE(sealed.extract_binary_as_key(key, nullptr).equal(wrapped));
        EXPECT_EQ(sealed.extract(key, nullptr), binary);
    }
    for (AttributeValue const & value :
         {AttributeValue(ValueTypeId::typeBinary),
          make_list<BinaryValue>({BinaryValue(1), BinaryValue(2)}), AttributeValue(),
          AttributeValue(true), AttributeValue(1), AttributeValue(1.5), AttributeValue("text"),
          AttributeValue(vxcore::Uuid()), AttributeValue(vxcore::AbsoluteTime(1)),
          AttributeValue(vxcore::RelativeTime(1)), AttributeValue(AttributeMap()),
          make_list<bool>({true, false})}) {
        bool const isBinary = value.type() == ValueTypeId::typeBinary;
        std::string const text =
            isBinary ? "Only scalar binary attributes can be read as Key"
                     : "Only Binary attribute values can be read as Key.  TypeFound=" +
                           value.type().name();
        SecuredValue const sealed = seal_note(value, key);
        SecuredValue::ErrorPtr error;
        auto const raised =
            expect_error([&] { (void)sealed.extract_binary_as_key(key, &error); },
                         isBinary ? error::vxattribute_value_cardinality_expectSingle
                                  : error::vxattribute_value_type_mismatch,
                         text, "vxattribute::impl::read_key_as_binary()");
        EXPECT_EQ(error, raised) << "reported and raised";
        if (!isBinary) {
            EXPECT_EQ(*raised->params().find_value("expectedType"), "Binary");
        }
        EXPECT_EQ(sealed.extract(key, nullptr), value);
    }
}

/// Returns the failure in the form of refusals.txt, or "" when there is none.
std::string line_of(SecuredValue::ErrorPtr const & error) {
    std::string line;
    if (error) {
        line = error->code().name() + (": " + error->text()) + " | ";
        for (auto const & [name, text] : error->params()) {
            line.append(name.view()).append("=").append(text).append(" ");
        }
        line.append("| ").append(error->location().function().view());
    }
    return line;
}

template <typename Action>
SecuredValue::ErrorPtr raised_by(Action action) {
    try {
        action();
    } catch (vxcore::ErrorException const & e) {
        return e.info();
    }
    return nullptr;
}

TEST(SecuredValue, SaysWhyItDoesNotOpen) {
    std::string const bytes = bytes_of(seal_note("secret", key_of_size(16)).ciphertext());
    auto const check = [&](std::string const & line, std::string const & expected,
                           std::string const & kind) {
        SCOPED_TRACE(line);
        std::istringstream words(line);
        std::string annotation, id, keyName;
        unsigned int size = 0;
        words >> annotation >> id >> size >> keyName;
        SecuredValue const value =
            id == "-" ? SecuredValue() : value_of(annotation, id, bytes.substr(0, size));
        Key const key = keyName == "wrong"
                            ? key_of("a wrong key, 16B")
                            : key_of_size(static_cast<unsigned int>(std::stoul(keyName)));
        EXPECT_EQ(line_of(raised_by([&] { (void)value.extract(key, nullptr); })), expected);
        EXPECT_EQ(line_of(raised_by([&] { (void)value.extract_binary_as_key(key, nullptr); })),
                  expected);
        SecuredValue::ErrorPtr error, keyError;
        EXPECT_TRUE(value.extract(key, &error).is_null());
        EXPECT_EQ(line_of(error), expected);
        auto const raised =
            raised_by([&] { EXPECT_TRUE(value.extract_binary_as_key(key, &keyError).empty()); });
        EXPECT_EQ(line_of(keyError), expected);
        EXPECT_EQ(raised, kind == "= unknown" ? nullptr : keyError) << "reported and raised";

        std::string inCheck = kind == "= refused" ? "" : expected;
        if (kind == "= unknown") {
            inCheck.replace(inCheck.rfind("extract"), 7, "authenticate");
        }
        auto const checked = raised_by([&] { EXPECT_FALSE(value.authenticate(key)); });
        EXPECT_EQ(line_of(checked), inCheck);
    };
    EXPECT_EQ(vxtest::for_each_case("vxattribute/sealed/refusals.txt", check), 8);
}

TEST(SecuredValue, TheKeyIdIsNotAuthenticated) {
    Key const key = key_of_size(16), wrapped = key_of("wrapped");
    SecuredValue const sealed = seal_note(wrapped, key);
    SecuredValue const other =
        value_of("note", "EAX_AES128", bytes_of(sealed.ciphertext()), {"other", vxcore::Uuid({1})});
    EXPECT_FALSE(other == sealed);
    EXPECT_TRUE(other.authenticate(key));
    SecuredValue::ErrorPtr stale, error;
    (void)sealed.extract(Key(), &stale);
    error = stale;
    EXPECT_TRUE(other.extract_binary_as_key(key, &error).equal(wrapped));
    EXPECT_FALSE(other.extract(key, &error).is_null());
    EXPECT_EQ(error.get(), stale.get()) << "success leaves the place alone";
}

TEST(SecuredValue, NoOtherCipherIdIsAWayIn) {
    std::string const ids[] = {"EAX_AES128", "EAX_AES256", "NULL"};
    SecuredValue::ErrorPtr error;
    for (std::string const & sealedWith : ids) {
        Key const key = key_of_size(cipher(sealedWith).keysize());
        SecuredValue const sealed = seal_note(7, key, sealedWith);
        EXPECT_EQ(sealed.extract(key, nullptr), AttributeValue(7));
        for (std::string const & id : ids) {
            SecuredValue const renamed = value_of("note", id, bytes_of(sealed.ciphertext()));
            // An attacker without the key may pass one of any size.
            for (unsigned int size = id == "NULL" ? 16 : 0; size <= 32; size += 16) {
                bool const mayOpen = id == sealedWith && size == key.size();
                EXPECT_EQ(renamed.extract(key_of_size(size), &error).is_null(), !mayOpen)
                    << sealedWith << ' ' << id << ' ' << size;
            }
        }
    }
    (void)value_of("", "NULL", "x").extract(Key(), SecuredValue::strict_cipher_provider(), &error);
    EXPECT_EQ(error->code(), error::vxattribute_value_secured_cipher_unknown);
}

/// The attack is explained in docs/guide/secrets.md, "Wrapped keys".
TEST(SecuredValue, AnUnknownCipherOfAWrappedKeyLeadsToForgedValuesUnlessOpenedStrictly) {
    auto const & strict = SecuredValue::strict_cipher_provider();
    Key const master = key_of_size(16);
    SecuredValue const wrapped = seal_note(key_of_size(32), master);
    SecuredValue const renamed = value_of("note", "no such", bytes_of(wrapped.ciphertext()));
    SecuredValue const forged = seal_note("forged", Key(), "NULL");
    SecuredValue::ErrorPtr keyError, error;
    Key const careless = renamed.extract_binary_as_key(master, &keyError);
    EXPECT_EQ(forged.extract(careless, &error), AttributeValue("forged"));
    EXPECT_TRUE(keyError) << "what a careful caller looks at";
    EXPECT_TRUE(careless.empty());
    EXPECT_TRUE(forged.extract(careless, strict, &error).is_null());
    EXPECT_EQ(error->code(), error::vxattribute_value_secured_cipher_unknown);
    EXPECT_THROW((void)renamed.extract_binary_as_key(master, strict, nullptr),
                 vxcore::ErrorException);
}

TEST(SecuredValue, AFailedSetLeavesTheOldValue) {
    Key const key = key_of_size(16);
    SecuredValue value = seal_note(1, key);
    SecuredValue const before = value;
    std::string const note(40, 'a');
    EXPECT_GT(vxtest::fail_each_allocation(
                  [&] { value.set(2, note, keyId, key, SecuredValue::default_cipher()); },
                  [&] { ASSERT_EQ(value, before); }),
              3u);
    EXPECT_EQ(value.extract(key, nullptr), AttributeValue(2));
}

TEST(SecuredValue, NoKeyStaysInMemory) {
    std::string secret; // two segments of a list; each run of 16 bytes occurs once
    secret.reserve(600);
    for (int i = 200; i < 400; ++i) {
        secret += vxcore::to_string(i);
    }
    // "NULL" keeps the secret in the clear. Freed early, it would be found in blocks made of its
    // memory later.
    std::vector<SecuredValue> kept;
    for (unsigned int const size : {16u, 250u, 600u}) {
        Key const wrapped(secret.data(), size);
        for (unsigned int const watched : {0u, 300u, size - 16}) {
            for (char const * id : {"EAX_AES128", "NULL"}) {
                if (watched + 16 > size) {
                    continue;
                }
                Key const key = key_of_size(cipher(id).keysize());
                SecuredValue sealed;
                vxtest::watch_freed_memory(secret.data() + watched, 16);
                vxtest::fail_each_allocation([&] { sealed = seal_note(wrapped, key, id); }, [] {});
                vxserialize::MemoryWriter writer;
                sealed.write(writer);
                vxserialize::MemoryReader reader = writer.reader();
                SecuredValue const values[] = {sealed, SecuredValue(reader)}; // in other segments
                for (SecuredValue const & value : values) {
                    Key opened;
                    vxtest::fail_each_allocation(
                        [&] { opened = value.extract_binary_as_key(key, nullptr); }, [] {});
                    EXPECT_TRUE(opened.equal(wrapped));
                    EXPECT_TRUE(value.extract_binary_as_key(key, nullptr).equal(wrapped)); // intact
                }
                EXPECT_EQ(vxtest::freed_with_bytes(), 0u) << id << ' ' << size << ' ' << watched;
                kept.insert(kept.end(), std::begin(values), std::end(values));
            }
        }
    }
    delete new std::string(
        secret); // the watch works: an ordinary string leaves its bytes in freed memory
    EXPECT_NE(vxtest::freed_with_bytes(), 0u);
    vxtest::watch_freed_memory(nullptr, 0);
}

TEST(SecuredValue, ComparesByAllItsParts) {
    vxcore::Uuid const low({1}), high({2});
    // In ascending order. The part that decides between two rows comes before parts that would
    // decide otherwise.
    SecuredValue const parts[] = {
        value_of("z", "z", "1", {"z", high}), value_of("a", "z", "2", {"z", high}),
        value_of("b", "a", "2", {"z", high}), value_of("b", "b", "2", {"z", low}),
        value_of("b", "b", "2", {"a", high}), value_of("b", "b", "2", {"b", high})};
    for (SecuredValue const & a : parts) {
        for (SecuredValue const & b : parts) {
            EXPECT_EQ(a.compare(b), int{&a > &b} - int{&a < &b});
            EXPECT_EQ(a == b, &a == &b);
            EXPECT_EQ(a < b, &a < &b);
            EXPECT_EQ(a <= b, &a <= &b);
            EXPECT_EQ(a > b, &a > &b);
            EXPECT_EQ(a >= b, &a >= &b);
            EXPECT_EQ(a.hash() == b.hash(), &a == &b);
        }
    }
    // No list of sealed bytes and an empty list are equal.
    vxserialize::MemoryWriter writer;
    SecuredValue().write(writer);
    vxserialize::MemoryReader reader = writer.reader();
    EXPECT_EQ(SecuredValue(reader), SecuredValue());
    EXPECT_EQ(value_of("\x80", "\x01", "\xff").hash(), 0xE0E1B4D6u);
    EXPECT_EQ(value_of("a", "c", "aaabacadecdced").hash(), 14u); // the sum is 0: the size is used
}

TEST(SecuredValue, NeverKeepsTheHashOfOtherContent) {
    auto const fresh = [] { return value_of("b", "c", "2"); };
    SecuredValue hashed = value_of("a", "c", "1"), source = fresh();
    (void)hashed.hash();
    SecuredValue copied = hashed, moved = hashed, swapped = hashed;
    copied = source;
    moved = fresh();
    swapped.swap(source);
    for (SecuredValue const & value : {copied, moved, swapped}) {
        EXPECT_EQ(value.hash(), fresh().hash());
    }
    SecuredValue const taken = std::move(hashed);
    EXPECT_EQ(hashed.hash(), SecuredValue().hash());
}

TEST(SecuredValue, ShowsItsFrameOnly) {
    std::ostringstream stream;
    stream << SecuredValue("secret", std::string(300, 'n'), keyId, key_of_size(16),
                           SecuredValue::default_cipher());
    EXPECT_EQ(stream.str(), "<\"" + std::string(256, 'n') +
                                "\"...(+44) (cipher=EAX_AES128, "
                                "keyid='category':00000000-0000-0000-0000-000000000000, "
                                "datasize=39)>");
    EXPECT_EQ(to_text(AttributeValue(SecuredValue())),
              "[Secured: {<\"\" (cipher=, keyid='':00000000-0000-0000-0000-000000000000, "
              "datasize=0)>}]");
}

} // namespace
