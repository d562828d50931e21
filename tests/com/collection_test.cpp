// The general collection: keys, positions, neighbours, enumeration.
#include "component.h"

#include <vector>

namespace com_test
{

namespace
{

constexpr HRESULT kInvalidCall = static_cast<HRESULT>(0x800A0005);
constexpr HRESULT kOverflow = static_cast<HRESULT>(0x800A0006);
constexpr HRESULT kOutOfRange = static_cast<HRESULT>(0x800A0009);
constexpr HRESULT kMismatch = static_cast<HRESULT>(0x800A000D);
constexpr HRESULT kNotSet = static_cast<HRESULT>(0x800A005B);
constexpr HRESULT kNull = static_cast<HRESULT>(0x800A005E);
constexpr HRESULT kDuplicateKey = static_cast<HRESULT>(0x800A01C9);

class CollectionTest : public ComponentTest
{
protected:
    CollectionTest()
    {
        const auto headings = component.Create<_colHeadings, colHeadings>();
        EXPECT_EQ(headings->get_ColHeadingInfo(&collection), S_OK);
    }

    ComPtr<_clsHeadings> Heading(const wchar_t *name)
    {
        auto heading = component.Create<_clsHeadings, clsHeadings>();
        Text text(name);
        EXPECT_EQ(heading->put_HeadingName(text.Reference()), S_OK);
        return heading;
    }

    HRESULT Add(const wchar_t *name, VARIANT key = Value::Missing(), VARIANT before = Value::Missing(),
                VARIANT after = Value::Missing())
    {
        return collection->Add(Value(Heading(name).Get()), key, before, after);
    }

    static std::string NameOf(IDispatch *object)
    {
        ComPtr<_clsHeadings> heading;
        Text text;
        if (!object ||
            FAILED(object->QueryInterface(__uuidof(_clsHeadings), reinterpret_cast<void **>(heading.GetAddressOf()))))
            return "?";
        EXPECT_EQ(heading->get_HeadingName(&text), S_OK);
        return Narrow(text.str());
    }

    // The names in order, separated by blanks.
    std::string Order()
    {
        LONG count = 0;
        EXPECT_EQ(collection->get_Count(&count), S_OK);
        std::string names;
        for (LONG i = 1; i <= count; ++i)
        {
            Value item;
            EXPECT_EQ(collection->get_Item(Value(i), &item), S_OK);
            names += (i > 1 ? " " : "") + NameOf(item->pdispVal);
        }
        return names;
    }

    ComPtr<_Collection> collection;
};

TEST_F(CollectionTest, TellsWhatIsWrong)
{
    const VARIANT none = Value::Missing();
    ASSERT_EQ(Add(L"a", Value(L"Key")), S_OK);
    VARIANT null;
    VariantInit(&null);
    null.vt = VT_NULL;
    struct Case
    {
        const char *name;
        HRESULT result;
        HRESULT expected;
    };
    Value item;
    const Case cases[] = {
        {"a key twice, in another case", Add(L"b", Value(L"KEY")), kDuplicateKey},
        {"a key that is no text", Add(L"b", Value(7)), kMismatch},
        {"before and after", Add(L"b", none, Value(1), Value(1)), kInvalidCall},
        {"before a position out of range", Add(L"b", none, Value(2)), kOutOfRange},
        {"after a position out of range", Add(L"b", none, none, Value(0L)), kOutOfRange},
        {"before a key that is not there", Add(L"b", none, Value(L"nope")), kInvalidCall},
        {"no object", collection->Add(Value(1), none, none, none), kMismatch},
        {"an argument left out", collection->Add(none, none, none, none), kMismatch},
        {"Nothing", collection->Add(Value(static_cast<IDispatch *>(nullptr)), none, none, none), kNotSet},
        {"itself", collection->Add(Value(collection.Get()), none, none, none), kMismatch},
        {"item 0", collection->get_Item(Value(0L), &item), kOutOfRange},
        {"item behind the last", collection->get_Item(Value(2), &item), kOutOfRange},
        {"item of an unknown key", collection->get_Item(Value(L"1"), &item), kInvalidCall},
        {"item of Null", collection->get_Item(null, &item), kNull},
        {"item of an object", collection->get_Item(Value(collection.Get()), &item), kMismatch},
        {"no place for the item", collection->get_Item(Value(1), nullptr), E_POINTER},
        {"remove position 0", collection->Remove(Value(0L)), kOutOfRange},
        {"remove an unknown key", collection->Remove(Value(L"nope")), kInvalidCall},
        {"no place for the count", collection->get_Count(nullptr), E_POINTER},
        {"no place for the enumeration", collection->get__NewEnum(nullptr), E_POINTER},
    };
    for (const Case &known : cases)
        EXPECT_EQ(known.result, known.expected) << known.name;
    VARIANT large;
    VariantInit(&large);
    large.vt = VT_R8;
    large.dblVal = 1e10;
    EXPECT_EQ(collection->get_Item(large, &item), kOverflow);
    EXPECT_EQ(item->vt, VT_EMPTY);
    EXPECT_EQ(Order(), "a") << "nothing has been added or removed";
}

TEST_F(CollectionTest, EnumeratesItsElements)
{
    for (const wchar_t *name : {L"a", L"b", L"c"})
        ASSERT_EQ(Add(name), S_OK);
    ComPtr<IUnknown> unknown;
    ComPtr<IEnumVARIANT> elements;
    ASSERT_EQ(collection->get__NewEnum(&unknown), S_OK);
    ASSERT_EQ(unknown.As(&elements), S_OK);

    ULONG fetched = 7;
    Value values[4];
    EXPECT_EQ(elements->Next(2, &values[0], &fetched), S_OK);
    EXPECT_EQ(fetched, 2u);
    EXPECT_EQ(NameOf(values[0]->pdispVal) + NameOf(values[1]->pdispVal), "ab");

    ComPtr<IEnumVARIANT> copy;
    EXPECT_EQ(elements->Clone(&copy), S_OK);
    EXPECT_EQ(elements->Next(2, &values[2], &fetched), S_FALSE);
    EXPECT_EQ(fetched, 1u);
    EXPECT_EQ(NameOf(values[2]->pdispVal), "c");
    EXPECT_EQ(elements->Next(1, &values[3], nullptr), S_FALSE);
    EXPECT_EQ(values[3]->vt, VT_EMPTY);

    Value again;
    EXPECT_EQ(copy->Next(1, &again, nullptr), S_OK);
    EXPECT_EQ(NameOf(again->pdispVal), "c") << "a copy goes on where the first stood";

    EXPECT_EQ(elements->Reset(), S_OK);
    EXPECT_EQ(elements->Skip(2), S_OK);
    Value third;
    EXPECT_EQ(elements->Next(1, &third, nullptr), S_OK);
    EXPECT_EQ(NameOf(third->pdispVal), "c");
    EXPECT_EQ(elements->Skip(1), S_FALSE);
    EXPECT_EQ(elements->Clone(nullptr), E_POINTER);
    EXPECT_EQ(elements->Next(1, nullptr, nullptr), E_POINTER);
}

TEST_F(CollectionTest, EnumeratesWhileItChanges)
{
    for (const wchar_t *name : {L"a", L"b"})
        ASSERT_EQ(Add(name), S_OK);
    ComPtr<IUnknown> unknown;
    ComPtr<IEnumVARIANT> elements;
    ASSERT_EQ(collection->get__NewEnum(&unknown), S_OK);
    ASSERT_EQ(unknown.As(&elements), S_OK);
    ASSERT_EQ(Add(L"c"), S_OK);
    ASSERT_EQ(elements->Skip(2), S_OK);
    Value added;
    EXPECT_EQ(elements->Next(1, &added, nullptr), S_OK);
    EXPECT_EQ(NameOf(added->pdispVal), "c");
    while (collection->Remove(Value(1)) == S_OK)
        ;
    Value none;
    EXPECT_EQ(elements->Next(1, &none, nullptr), S_FALSE);
}

TEST_F(CollectionTest, IsSharedByTheObjectsItIsAssignedTo)
{
    ASSERT_EQ(Add(L"a", Value(L"1")), S_OK);
    const auto headings = component.Create<_colHeadings, colHeadings>();
    ASSERT_EQ(headings->putref_ColHeadingInfo(collection.Get()), S_OK);
    ASSERT_EQ(Add(L"b", Value(L"2")), S_OK);
    ComPtr<_clsHeadings> second;
    EXPECT_EQ(headings->get_Item(&Value(2), &second), S_OK);
    EXPECT_EQ(NameOf(second.Get()), "b");
}

TEST_F(CollectionTest, MadeByAHostTakesTheClassOfItsFirstUse)
{
    const VARIANT none = Value::Missing();
    const auto headings = component.Create<_colHeadings, colHeadings>();
    const auto formats = component.Create<_colFormats, colFormats>();
    const auto format = component.Create<_clsFormats, clsFormats>();
    collection = component.Create<_Collection, Collection>();
    EXPECT_EQ(Order(), "");
    EXPECT_EQ(collection->Remove(Value(1)), kOutOfRange);
    EXPECT_EQ(collection->Add(Value(formats.Get()), none, none, none), kMismatch);
    EXPECT_EQ(Add(L"a", Value(L"1")), S_OK);
    EXPECT_EQ(collection->Add(Value(format.Get()), none, none, none), kMismatch);
    EXPECT_EQ(formats->putref_ColFormatInfo(collection.Get()), kMismatch);
    EXPECT_EQ(headings->putref_ColHeadingInfo(collection.Get()), S_OK);
    ComPtr<_Collection> back;
    EXPECT_EQ(headings->get_ColHeadingInfo(&back), S_OK);
    EXPECT_EQ(back.Get(), collection.Get()) << "the very object that was assigned";
    back.Reset();
    collection.Reset();
    EXPECT_EQ(headings->get_ColHeadingInfo(&collection), S_OK);
    EXPECT_EQ(Order(), "a") << "its contents outlive it";

    collection = component.Create<_Collection, Collection>();
    EXPECT_EQ(formats->putref_ColFormatInfo(collection.Get()), S_OK);
    EXPECT_EQ(Add(L"a"), kMismatch);
    EXPECT_EQ(collection->Add(Value(format.Get()), none, none, none), S_OK);
}

} // namespace

} // namespace com_test
