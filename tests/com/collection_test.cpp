// The general collection: keys, positions, neighbours, enumeration; and the classes that have one.
#include "member_calls.h"

#include <utility>
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
        return object ? Narrow(CallByName(*object, L"HeadingName", kGet).value->bstrVal) : "?";
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

TEST_F(CollectionTest, KeepsOrderAndKeys)
{
    const VARIANT none = Value::Missing();
    EXPECT_EQ(Add(L"b", Value(L"Key")), S_OK);
    EXPECT_EQ(Add(L"d"), S_OK);
    EXPECT_EQ(Add(L"a", none, Value(1)), S_OK);
    EXPECT_EQ(Add(L"c", Value(L"c"), none, Value(L"KEY")), S_OK);
    EXPECT_EQ(Add(L"e", Value(L"e"), none, Value(4)), S_OK);
    EXPECT_EQ(Order(), "a b c d e");
    Value removed, again;
    EXPECT_EQ(collection->get_Item(Value(L"kEy"), &removed), S_OK);
    EXPECT_EQ(collection->Remove(Value(L"KEY")), S_OK);
    EXPECT_EQ(collection->Remove(Value(1)), S_OK);
    EXPECT_EQ(Order(), "c d e");
    EXPECT_EQ(NameOf(removed->pdispVal), "b") << "it lives on";
    EXPECT_EQ(collection->Add(removed, Value(L"Key"), none, none), S_OK);
    EXPECT_EQ(collection->Add(removed, Value(L"twice"), none, none), S_OK);
    EXPECT_EQ(Order(), "c d e b b");
    EXPECT_EQ(collection->get_Item(Value(L"twice"), &again), S_OK);
    EXPECT_EQ(again->pdispVal, removed->pdispVal) << "one record is one object";
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

// --- The classes that have a collection.

struct CollectionClass
{
    const char *name;
    const CLSID &id;
    const CLSID &element;
    const wchar_t *elements; // the member that gives the collection
    const wchar_t *load;
};
const CollectionClass kCollectionClasses[] = {
    {"colFormats", __uuidof(colFormats), __uuidof(clsFormats), L"ColFormatInfo", L"GetFormatInfo"},
    {"colHeadings", __uuidof(colHeadings), __uuidof(clsHeadings), L"ColHeadingInfo", L"GetHeadingInfo"},
    {"colSettings", __uuidof(colSettings), __uuidof(clsSettings), L"ColSettingInfo", L"GetSettingInfo"},
    {"colPartitions", __uuidof(colPartitions), __uuidof(clsPartition), L"colPartitions", nullptr},
};

class CollectionClasses : public Members
{
protected:
    static ComPtr<IDispatch> Elements(const CollectionClass &known, IDispatch &object)
    {
        const Outcome outcome = CallByName(object, known.elements, kGet);
        EXPECT_EQ(outcome.result, S_OK);
        return VARIANT(outcome.value).pdispVal;
    }

    // By the default member; null when it gives no object, which is no error.
    static ComPtr<IDispatch> Item(IDispatch &object, const VARIANT &position)
    {
        const Outcome outcome = CallByName(object, L"Item", kGet | kCall, {position});
        EXPECT_EQ(outcome.result, S_OK);
        EXPECT_EQ(VARIANT(outcome.value).vt, VT_DISPATCH);
        return VARIANT(outcome.value).pdispVal;
    }

    static HRESULT Add(IDispatch &elements, IDispatch &object, VARIANT key = Value::Missing())
    {
        return CallByName(elements, L"Add", kCall, {Value(&object), key}).error;
    }
};

TEST_F(CollectionClasses, GiveTheirElementsByPositionAlone)
{
    const Value twelve(L"12"), key(L"99"), text(L"abc");
    VARIANT variable = Value(2), half = OnStack(VT_R8, nullptr);
    half.dblVal = 2.5;
    for (const CollectionClass &known : kCollectionClasses)
    {
        const auto object = Create(known.id);
        const auto elements = Elements(known, *object.Get());
        std::vector<ComPtr<IDispatch>> added;
        for (int i = 1; i <= 12; ++i)
        {
            added.push_back(Create(known.element));
            EXPECT_EQ(Add(*elements.Get(), *added.back().Get(), Value(std::to_wstring(100 - i))), S_OK);
        }
        const std::pair<VARIANT, std::size_t> cases[] = {
            {Value(1), 1},
            {twelve, 12},
            {half, 2},
            {OnStack(VT_BYREF | VT_VARIANT, &variable), 2},
            {Value(0L), 0},
            {Value(13), 0},
            {Value(70000), 0},
            {key, 0},
            {text, 0},
            {OnStack(VT_NULL, nullptr), 0},
            {OnStack(VT_DISPATCH, object.Get()), 0},
        };
        for (const auto &[position, expected] : cases)
            EXPECT_EQ(Item(*object.Get(), position).Get(), expected ? added[expected - 1].Get() : nullptr)
                << known.name << " at a position of type " << position.vt << " that is to give " << expected;
        EXPECT_EQ(VARIANT(CallByName(*elements.Get(), L"Item", kGet, {key}).value).pdispVal, added[0].Get());
    }
}

TEST_F(CollectionClasses, AreAssignedCollectionsOfTheirElementsByReference)
{
    const VARIANT nothing = OnStack(VT_DISPATCH, nullptr);
    for (std::size_t i = 0; i < std::size(kCollectionClasses); ++i)
    {
        const CollectionClass &known = kCollectionClasses[i];
        const CollectionClass &foreign = kCollectionClasses[(i + 1) % std::size(kCollectionClasses)];
        SCOPED_TRACE(known.name);
        const auto object = Create(known.id), other = Create(known.id), stranger = Create(foreign.id);
        const auto element = Create(known.element), alien = Create(foreign.element);
        const auto assigned = Elements(known, *other.Get()), strange = Elements(foreign, *stranger.Get());
        EXPECT_NE(Elements(known, *object.Get()).Get(), assigned.Get());
        const auto assign = [&](const VARIANT &value, WORD kind = kPutReference)
        { return CallByName(*object.Get(), known.elements, kind, {value}); };
        EXPECT_EQ(assign(Value(assigned.Get())).result, S_OK);
        EXPECT_EQ(Elements(known, *object.Get()).Get(), assigned.Get());
        EXPECT_EQ(Add(*Elements(known, *other.Get()).Get(), *element.Get()), S_OK);
        EXPECT_EQ(Item(*object.Get(), Value(1)).Get(), element.Get()) << "it is shared";

        EXPECT_EQ(assign(nothing).told, "0x800A005B: Object variable or With block variable not set (KVHEADERS)");
        for (const VARIANT &wrong :
             {VARIANT(Value(1)), OnStack(VT_DISPATCH, element.Get()), OnStack(VT_DISPATCH, strange.Get())})
            EXPECT_EQ(assign(wrong).told, "0x800A000D: Type mismatch (KVHEADERS)");
        EXPECT_EQ(Add(*assigned.Get(), *alien.Get()), kMismatch);
        EXPECT_EQ(Add(*assigned.Get(), *object.Get()), kMismatch);
        EXPECT_EQ(Elements(known, *object.Get()).Get(), assigned.Get());
        EXPECT_EQ(Item(*object.Get(), Value(2)).Get(), nullptr);

        // The collection of partitions can be assigned without Set too.
        const bool byValue = known.id == __uuidof(colPartitions);
        for (const WORD kind : {kPut, static_cast<WORD>(kPut | kPutReference)})
        {
            const auto made = Create(__uuidof(Collection));
            const bool taken = byValue || kind != kPut;
            EXPECT_EQ(assign(Value(made.Get()), kind).result, taken ? S_OK : DISP_E_MEMBERNOTFOUND);
            EXPECT_EQ(Elements(known, *object.Get()).Get(), taken ? made.Get() : assigned.Get());
        }
    }
}

TEST_F(CollectionClasses, TellThatNobodyHasConnected)
{
    for (const CollectionClass &known : kCollectionClasses)
        if (known.load)
        {
            EXPECT_EQ(CallByName(*Create(known.id).Get(), known.load, kCall).told,
                      "0x800A005B: Object variable or With block variable not set (KVHEADERS)");
        }
}

} // namespace

} // namespace com_test
