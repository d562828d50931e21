// A host bound early: the interfaces as C++ sees them.
#include "component.h"

#include <type_traits>
#include <vector>

namespace com_test
{

namespace
{

class Vtable : public ComponentTest
{
};

// Sets a value by the setter of a property and gives what its getter then says.
template <class Object, class Type>
Type There(const ComPtr<Object> &object, HRESULT (STDMETHODCALLTYPE Object::*put)(Type),
           HRESULT (STDMETHODCALLTYPE Object::*get)(Type *), Type value)
{
    Type back = {};
    EXPECT_EQ((object.Get()->*put)(value), S_OK);
    EXPECT_EQ((object.Get()->*get)(&back), S_OK);
    return back;
}
template <class Object, class Type>
Type There(const ComPtr<Object> &object, HRESULT (STDMETHODCALLTYPE Object::*put)(Type *),
           HRESULT (STDMETHODCALLTYPE Object::*get)(Type *), Type value)
{
    Type back = {};
    EXPECT_EQ((object.Get()->*put)(&value), S_OK);
    EXPECT_EQ((object.Get()->*get)(&back), S_OK);
    return back;
}

// The same for texts, with characters beyond the code page and a zero inside; by value or by reference.
template <class Object, class Argument>
void ExpectText(const ComPtr<Object> &object, HRESULT (STDMETHODCALLTYPE Object::*put)(Argument),
                HRESULT (STDMETHODCALLTYPE Object::*get)(BSTR *))
{
    constexpr std::wstring_view kText(L"M\u00e9ni\u00e8re \u03a9 \U0001F600 a\0b", 17);
    const auto set = [&](Text &text)
    {
        if constexpr (std::is_same_v<Argument, BSTR>)
            return (object.Get()->*put)(text.get());
        else
            return (object.Get()->*put)(text.Reference());
    };
    Text text(kText);
    Text none;
    Text back;
    EXPECT_EQ(set(text), S_OK);
    EXPECT_EQ((object.Get()->*get)(&back), S_OK);
    EXPECT_EQ(back.str(), kText);
    EXPECT_EQ(text.str(), kText) << "the argument stays as it is";
    EXPECT_EQ(set(none), S_OK) << "a null text is the empty one";
    EXPECT_EQ((object.Get()->*get)(&back), S_OK);
    EXPECT_EQ(back.str(), L"");
    EXPECT_EQ((object.Get()->*get)(nullptr), E_POINTER);
}

#define THERE(object, name, value) There(object, &Interface::put_##name, &Interface::get_##name, value)

TEST_F(Vtable, Config)
{
    using Interface = _clsConfig;
    const auto config = component.Create<_clsConfig, clsConfig>();
    LONG partition = 0;
    EXPECT_EQ(config->get_PartitionID(&partition), S_OK);
    EXPECT_EQ(partition, -1) << "until the host sets it";
    EXPECT_EQ(THERE(config, User_ID, SHORT{-32768}), -32768);
    EXPECT_EQ(THERE(config, PartitionID, LONG{2147483647}), 2147483647);
    EXPECT_EQ(THERE(config, DebugMode, SHORT{32767}), 32767);
    EXPECT_EQ(THERE(config, SqlTimeout, SHORT{15}), 15);
    ExpectText(config, &Interface::put_LogFile, &Interface::get_LogFile);
    ExpectText(config, &Interface::put_SqlServerName, &Interface::get_SqlServerName);
    ExpectText(config, &Interface::put_Password, &Interface::get_Password);
    ExpectText(config, &Interface::put_SqlUserName, &Interface::get_SqlUserName);
    ExpectText(config, &Interface::put_SqlDbName, &Interface::get_SqlDbName);
    ExpectText(config, &Interface::put_SQLDSN, &Interface::get_SQLDSN);
    ExpectText(config, &Interface::put_Zentra_INIFile, &Interface::get_Zentra_INIFile);
    EXPECT_EQ(config->get_User_ID(nullptr), E_POINTER);
    EXPECT_EQ(config->get_Version(nullptr), E_POINTER);
    EXPECT_EQ(config->ShowForm(nullptr), E_POINTER);
    EXPECT_EQ(Told(E_POINTER), "0x80004003: Invalid pointer (KVHEADERS)");
}

TEST_F(Vtable, VersionIsThatOfTheVersionResource)
{
    const auto config = component.Create<_clsConfig, clsConfig>();
    Text version;
    ASSERT_EQ(config->get_Version(&version), S_OK);
    const HMODULE module = LoadLibraryExW(ComponentFile().c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
    const HRSRC place = FindResourceW(module, MAKEINTRESOURCEW(1), MAKEINTRESOURCEW(16));
    ASSERT_NE(place, nullptr);
    const auto *bytes = static_cast<const WORD *>(LockResource(LoadResource(module, place)));
    // Behind the length, the type and the name "VS_VERSION_INFO" stands the fixed part: signature, structure version,
    // then minor and major, build and revision of the file's version.
    const WORD *fixed = bytes + 20;
    EXPECT_EQ(fixed[0] | fixed[1] << 16, static_cast<int>(0xFEEF04BD));
    const std::wstring expected =
        std::to_wstring(fixed[5]) + L"." + std::to_wstring(fixed[4]) + L"." + std::to_wstring(fixed[7]);
    EXPECT_EQ(version.str(), expected);
    FreeLibrary(module);
}

TEST_F(Vtable, TheConfigurationIsOneForAllInstances)
{
    const auto first = component.Create<_clsConfig, clsConfig>();
    EXPECT_EQ(first->put_User_ID(7), S_OK);
    EXPECT_EQ(first->put_PartitionID(3), S_OK);
    const auto second = component.Create<_clsConfig, clsConfig>();
    SHORT user = 0;
    LONG partition = 0;
    EXPECT_EQ(second->get_User_ID(&user), S_OK);
    EXPECT_EQ(first->get_PartitionID(&partition), S_OK);
    EXPECT_EQ(user, 7);
    EXPECT_EQ(partition, -1) << "a new instance sets it back";
}

TEST_F(Vtable, Format)
{
    using Interface = _clsFormats;
    const auto format = component.Create<_clsFormats, clsFormats>();
    EXPECT_EQ(THERE(format, FormatID, SHORT{-1}), -1);
    ExpectText(format, &Interface::put_FormatName, &Interface::get_FormatName);
    EXPECT_EQ(THERE(format, InsertBefore, VARIANT_TRUE), VARIANT_TRUE);
    EXPECT_EQ(THERE(format, InsertAfter, VARIANT_TRUE), VARIANT_TRUE);
    EXPECT_EQ(THERE(format, InsertColon, VARIANT_TRUE), VARIANT_TRUE);
    EXPECT_EQ(THERE(format, Bold, VARIANT_BOOL{1}), VARIANT_TRUE) << "whatever is not 0 is true";
    EXPECT_EQ(THERE(format, Underline, VARIANT_TRUE), VARIANT_TRUE);
    EXPECT_EQ(THERE(format, Indent, VARIANT_TRUE), VARIANT_TRUE);
    EXPECT_EQ(THERE(format, NewFormat, VARIANT_TRUE), VARIANT_TRUE);
    EXPECT_EQ(THERE(format, SystemFormat, VARIANT_TRUE), VARIANT_TRUE);
    EXPECT_EQ(THERE(format, HasChanged, VARIANT_TRUE), VARIANT_TRUE);
    EXPECT_EQ(THERE(format, RemoveFormat, VARIANT_TRUE), VARIANT_TRUE);
    EXPECT_EQ(THERE(format, RemoveFormat, VARIANT_FALSE), VARIANT_FALSE);
    EXPECT_EQ(format->put_FormatID(nullptr), E_POINTER);
    EXPECT_EQ(format->put_FormatName(nullptr), E_POINTER);
}

TEST_F(Vtable, FormatIsFilledByReference)
{
    const auto format = component.Create<_clsFormats, clsFormats>();
    VARIANT_BOOL yes = VARIANT_TRUE;
    VARIANT_BOOL no = VARIANT_FALSE;
    EXPECT_EQ(format->put_RemoveFormat(&yes), S_OK);
    SHORT id = 12;
    Text name(L"Bold heading");
    EXPECT_EQ(format->FillFields(&id, name.Reference(), &yes, &no, &yes, &no, &yes, &no, &yes, &no, &yes), S_OK);
    EXPECT_EQ(id, 12);
    EXPECT_EQ(name.str(), L"Bold heading");
    struct Flag
    {
        HRESULT (STDMETHODCALLTYPE _clsFormats::*get)(VARIANT_BOOL *);
        VARIANT_BOOL expected;
    };
    int position = 0;
    for (const Flag &flag : {Flag{&_clsFormats::get_InsertBefore, yes}, Flag{&_clsFormats::get_InsertAfter, no},
                             Flag{&_clsFormats::get_InsertColon, yes}, Flag{&_clsFormats::get_Bold, no},
                             Flag{&_clsFormats::get_Underline, yes}, Flag{&_clsFormats::get_Indent, no},
                             Flag{&_clsFormats::get_SystemFormat, yes}, Flag{&_clsFormats::get_NewFormat, no},
                             Flag{&_clsFormats::get_HasChanged, yes}, Flag{&_clsFormats::get_RemoveFormat, yes}})
    {
        VARIANT_BOOL value = 5;
        EXPECT_EQ((format.Get()->*flag.get)(&value), S_OK);
        EXPECT_EQ(value, flag.expected) << "flag " << position++;
    }
    EXPECT_EQ(format->FillFields(nullptr, name.Reference(), &yes, &no, &yes, &no, &yes, &no, &yes, &no, &yes),
              E_POINTER);
    EXPECT_EQ(format->FillFields(&id, nullptr, &yes, &no, &yes, &no, &yes, &no, &yes, &no, &yes), E_POINTER);
    id = 13;
    EXPECT_EQ(format->FillFields(&id, name.Reference(), &yes, &no, &yes, &no, &yes, &no, &yes, &no, nullptr),
              E_POINTER);
    EXPECT_EQ(format->get_FormatID(&id), S_OK);
    EXPECT_EQ(id, 12) << "nothing is set by a call that fails";
}

TEST_F(Vtable, Heading)
{
    using Interface = _clsHeadings;
    const auto heading = component.Create<_clsHeadings, clsHeadings>();
    ExpectText(heading, &Interface::put_HeadingName, &Interface::get_HeadingName);
    EXPECT_EQ(THERE(heading, NewHeading, VARIANT_TRUE), VARIANT_TRUE);
    EXPECT_EQ(THERE(heading, SystemHeading, VARIANT_TRUE), VARIANT_TRUE);
    EXPECT_EQ(THERE(heading, HasChanged, VARIANT_TRUE), VARIANT_TRUE);
    EXPECT_EQ(THERE(heading, HeadID, SHORT{32767}), 32767);
    EXPECT_EQ(THERE(heading, RemoveHeader, VARIANT_TRUE), VARIANT_TRUE);
    SHORT id = 9;
    Text name(L"FINDINGS");
    VARIANT_BOOL yes = VARIANT_TRUE;
    VARIANT_BOOL no = VARIANT_FALSE;
    EXPECT_EQ(heading->FillHeadings(&id, name.Reference(), &no, &yes, &no), S_OK);
    VARIANT_BOOL flag = no;
    EXPECT_EQ(heading->get_NewHeading(&flag), S_OK);
    EXPECT_EQ(flag, VARIANT_FALSE);
    EXPECT_EQ(heading->get_SystemHeading(&flag), S_OK);
    EXPECT_EQ(flag, VARIANT_TRUE);
    EXPECT_EQ(heading->get_RemoveHeader(&flag), S_OK);
    EXPECT_EQ(flag, VARIANT_TRUE) << "left as it is";
    EXPECT_EQ(heading->FillHeadings(&id, name.Reference(), &no, nullptr, &no), E_POINTER);
}

TEST_F(Vtable, Setting)
{
    using Interface = _clsSettings;
    const auto setting = component.Create<_clsSettings, clsSettings>();
    EXPECT_EQ(THERE(setting, HospitalID, SHORT{-1}), -1);
    EXPECT_EQ(THERE(setting, ReportType, SHORT{4}), 4);
    EXPECT_EQ(THERE(setting, FormatID, SHORT{5}), 5);
    EXPECT_EQ(THERE(setting, PartitionID, LONG{-2147483647 - 1}), -2147483647 - 1);
    EXPECT_EQ(THERE(setting, NewSetting, VARIANT_TRUE), VARIANT_TRUE);
    EXPECT_EQ(THERE(setting, HasChanged, VARIANT_TRUE), VARIANT_TRUE);
    EXPECT_EQ(THERE(setting, SettingID, SHORT{6}), 6);
    EXPECT_EQ(THERE(setting, RemoveSetting, VARIANT_TRUE), VARIANT_TRUE);
    SHORT numbers[] = {1, 2, 3, 4};
    LONG partition = 70000;
    VARIANT_BOOL yes = VARIANT_TRUE;
    VARIANT_BOOL no = VARIANT_FALSE;
    EXPECT_EQ(setting->FillSettings(&numbers[0], &numbers[1], &numbers[2], &numbers[3], &partition, &no, &yes), S_OK);
    SHORT heading = 0;
    SHORT account = 0;
    SHORT reportType = 0;
    SHORT format = 0;
    EXPECT_EQ(setting->get_SettingID(&heading), S_OK);
    EXPECT_EQ(setting->get_HospitalID(&account), S_OK);
    EXPECT_EQ(setting->get_ReportType(&reportType), S_OK);
    EXPECT_EQ(setting->get_FormatID(&format), S_OK);
    EXPECT_EQ(std::vector<int>({heading, account, reportType, format}), std::vector<int>({1, 2, 3, 4}));
    EXPECT_EQ(setting->FillSettings(&numbers[0], &numbers[1], &numbers[2], &numbers[3], nullptr, &no, &yes), E_POINTER);
}

TEST_F(Vtable, Partition)
{
    using Interface = _clsPartition;
    const auto partition = component.Create<_clsPartition, clsPartition>();
    ExpectText(partition, &Interface::put_m_strPartitionName, &Interface::get_m_strPartitionName);
    ExpectText(partition, &Interface::put_m_strLineage, &Interface::get_m_strLineage);
    EXPECT_EQ(THERE(partition, m_lngPartitionID, LONG{8}), 8);
    EXPECT_EQ(THERE(partition, m_blnParent, VARIANT_TRUE), VARIANT_TRUE);
    EXPECT_EQ(THERE(partition, m_blnTagKnownHeadings, VARIANT_TRUE), VARIANT_TRUE);
    EXPECT_EQ(THERE(partition, m_blnKnownFound, VARIANT_TRUE), VARIANT_TRUE);
    EXPECT_EQ(THERE(partition, m_blnAllowMixedCaseHeadings, VARIANT_TRUE), VARIANT_TRUE);
    EXPECT_EQ(THERE(partition, m_blnMixFound, VARIANT_TRUE), VARIANT_TRUE);

    ComPtr<_colFormats> formats;
    ComPtr<_colHeadings> headings;
    ASSERT_EQ(partition->get_m_objcolFormats(&formats), S_OK);
    ASSERT_EQ(partition->get_m_objcolHeadings(&headings), S_OK);
    LONG id = 7;
    EXPECT_EQ(formats->get_m_lngPartitionID(&id), S_OK);
    EXPECT_EQ(id, 0) << "until SetPartitionID is called";
    id = -1;
    EXPECT_EQ(partition->SetPartitionID(&id), S_OK);
    id = 7;
    EXPECT_EQ(formats->get_m_lngPartitionID(&id), S_OK);
    EXPECT_EQ(id, -1);
    id = 7;
    EXPECT_EQ(headings->get_m_lngPartitionID(&id), S_OK);
    EXPECT_EQ(id, -1);
    EXPECT_EQ(partition->SetPartitionID(nullptr), E_POINTER);

    const auto other = component.Create<_colFormats, colFormats>();
    EXPECT_EQ(partition->putref_m_objcolFormats(other.Get()), S_OK);
    ComPtr<_colFormats> back;
    EXPECT_EQ(partition->get_m_objcolFormats(&back), S_OK);
    EXPECT_EQ(back.Get(), other.Get());
    EXPECT_EQ(partition->putref_m_objcolFormats(nullptr), static_cast<HRESULT>(0x800A005B));
    EXPECT_EQ(Told(0), "0x00000000: Object variable or With block variable not set (KVHEADERS)");
}

TEST_F(Vtable, CollectionsHoldObjectsOfTheirClassAlone)
{
    const auto formats = component.Create<_colFormats, colFormats>();
    const auto settings = component.Create<_colSettings, colSettings>();
    const auto partitions = component.Create<_colPartitions, colPartitions>();
    ComPtr<_Collection> inFormats;
    ComPtr<_Collection> inSettings;
    ComPtr<_Collection> inPartitions;
    ASSERT_EQ(formats->get_ColFormatInfo(&inFormats), S_OK);
    ASSERT_EQ(settings->get_ColSettingInfo(&inSettings), S_OK);
    ASSERT_EQ(partitions->get_colPartitions(&inPartitions), S_OK);

    const HRESULT mismatch = 0x800A000D;
    EXPECT_EQ(formats->putref_ColFormatInfo(inSettings.Get()), mismatch);
    EXPECT_EQ(Told(mismatch), "0x800A000D: Type mismatch (KVHEADERS)");
    EXPECT_EQ(partitions->putref_colPartitions(inFormats.Get()), mismatch);
    const auto heading = component.Create<_clsHeadings, clsHeadings>();
    const VARIANT missing = Value::Missing();
    EXPECT_EQ(inFormats->Add(Value(heading.Get()), missing, missing, missing), mismatch);
    LONG count = 5;
    EXPECT_EQ(inFormats->get_Count(&count), S_OK);
    EXPECT_EQ(count, 0);

    // A host in C++ can pass any pointer for any other.
    _clsSettings *wrong = reinterpret_cast<_clsSettings *>(heading.Get());
    EXPECT_EQ(settings->AddSettingtoCollection(&wrong), mismatch);
    wrong = nullptr;
    EXPECT_EQ(settings->AddSettingtoCollection(&wrong), static_cast<HRESULT>(0x800A005B));
    EXPECT_EQ(settings->AddSettingtoCollection(nullptr), E_POINTER);
    const auto setting = component.Create<_clsSettings, clsSettings>();
    _clsSettings *argument = setting.Get();
    EXPECT_EQ(settings->AddSettingtoCollection(&argument), S_OK);
    EXPECT_EQ(argument, setting.Get()) << "refers to the same object on return";
    ComPtr<_clsSettings> first;
    EXPECT_EQ(settings->get_Item(&Value(1), &first), S_OK);
    EXPECT_EQ(first.Get(), setting.Get());
}

TEST_F(Vtable, ItemIsPositionalAndSuppressesErrors)
{
    const auto formats = component.Create<_colFormats, colFormats>();
    ComPtr<_Collection> elements;
    ASSERT_EQ(formats->get_ColFormatInfo(&elements), S_OK);
    const auto format = component.Create<_clsFormats, clsFormats>();
    const VARIANT missing = Value::Missing();
    ASSERT_EQ(elements->Add(Value(format.Get()), Value(L"12"), missing, missing), S_OK);

    Value null;
    null->vt = VT_NULL;
    Value array;
    array->vt = VT_ARRAY | VT_I4;
    array->parray = SafeArrayCreateVector(VT_I4, 0, 3);
    Value foreign(format.Get());
    Value yes;
    yes->vt = VT_BOOL;
    yes->boolVal = VARIANT_TRUE;
    for (VARIANT *key : {&null, &array, &foreign, &yes})
    {
        ComPtr<_clsFormats> item;
        EXPECT_EQ(formats->get_Item(key, &item), S_OK);
        EXPECT_EQ(item.Get(), nullptr);
    }
    struct Case
    {
        const wchar_t *key;
        bool found;
    };
    for (const Case &known :
         {Case{L"1", true}, Case{L" 1 ", true}, Case{L"12", false}, Case{L"0", false}, Case{L"-1", false},
          Case{L"one", false}, Case{L"", false}, Case{L"40000", false}, Case{L"1.4", true}})
    {
        ComPtr<_clsFormats> item;
        EXPECT_EQ(formats->get_Item(&Value(known.key), &item), S_OK);
        EXPECT_EQ(item.Get() == format.Get(), known.found) << Narrow(known.key);
    }
    EXPECT_EQ(formats->get_Item(&Value(1), nullptr), E_POINTER);
    ComPtr<_clsFormats> item;
    EXPECT_EQ(formats->get_Item(nullptr, &item), E_POINTER);
}

} // namespace

} // namespace com_test
