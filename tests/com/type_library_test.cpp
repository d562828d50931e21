// The type library inside the DLL, read back member by member.
#include "component.h"

#include <map>
#include <regex>
#include <utility>

namespace com_test
{

namespace
{

std::string TypeName(ITypeInfo &owner, const TYPEDESC &type)
{
    if (type.vt == VT_PTR)
        return TypeName(owner, *type.lptdesc) + "*";
    if (type.vt == VT_USERDEFINED)
    {
        ComPtr<ITypeInfo> referred;
        Text name;
        if (FAILED(owner.GetRefTypeInfo(type.hreftype, &referred)) ||
            FAILED(referred->GetDocumentation(MEMBERID_NIL, &name, nullptr, nullptr, nullptr)))
            return "?";
        return Narrow(name.str());
    }
    static const std::map<VARTYPE, const char *> kNames = {
        {VT_I2, "Integer"},   {VT_I4, "Long"},         {VT_UI1, "Byte"},        {VT_BSTR, "String"},
        {VT_BOOL, "Boolean"}, {VT_VARIANT, "Variant"}, {VT_UNKNOWN, "Unknown"}, {VT_HRESULT, "HRESULT"}};
    const auto name = kNames.find(type.vt);
    return name == kNames.end() ? "vt" + std::to_string(type.vt) : name->second;
}

const std::map<INVOKEKIND, std::string> kKinds = {
    {INVOKE_PROPERTYGET, "get"}, {INVOKE_PROPERTYPUT, "put"}, {INVOKE_PROPERTYPUTREF, "putref"}, {INVOKE_FUNC, "call"}};

std::string Direction(USHORT flags)
{
    std::string text;
    for (const auto &[flag, word] : {std::pair(PARAMFLAG_FIN, "in "),
                                     {PARAMFLAG_FOUT, "out "},
                                     {PARAMFLAG_FRETVAL, "result "},
                                     {PARAMFLAG_FOPT, "optional "}})
        text += flags & flag ? word : "";
    return text;
}

// A function as the vtable has it.
std::string Describe(ITypeInfo &type, const FUNCDESC &function)
{
    BSTR names[16] = {};
    UINT count = 0;
    EXPECT_EQ(type.GetNames(function.memid, names, 16, &count), S_OK);
    std::string text =
        std::to_string(function.memid) + " " + kKinds.at(function.invkind) + " " + Narrow(names[0]) + "(";
    for (int p = 0; p < function.cParams; ++p)
    {
        const ELEMDESC &parameter = function.lprgelemdescParam[p];
        const USHORT flags = parameter.paramdesc.wParamFlags;
        text += (p ? ", " : "") + Direction(flags) + TypeName(type, parameter.tdesc);
        if (function.invkind == INVOKE_FUNC && static_cast<UINT>(p) + 1 < count && !(flags & PARAMFLAG_FRETVAL))
            text += " " + Narrow(names[p + 1]);
    }
    for (UINT n = 0; n < count; ++n)
        SysFreeString(names[n]);
    EXPECT_EQ(TypeName(type, function.elemdescFunc.tdesc), "HRESULT");
    EXPECT_EQ(function.callconv, CC_STDCALL);
    return text + ")" + (function.wFuncFlags & FUNCFLAG_FRESTRICTED ? " restricted" : "") + "; ";
}

// The functions of an interface in the order of its vtable. A property of a plain value, put before get, is written as
// "1 Name Type", with an ampersand where it is put by reference.
std::string Members(ITypeLib &library, REFIID id)
{
    ComPtr<ITypeInfo> dispatch;
    if (FAILED(library.GetTypeInfoOfGuid(id, &dispatch)))
        return "no such interface";
    std::string text;
    VisitMembers(*dispatch.Get(), [&](ITypeInfo &type, const FUNCDESC &function) { text += Describe(type, function); });
    static const std::regex byValue(R"((-?\d+) put (\w+)\(in (\w+)\); \1 get \2\(out result \3\*\); )");
    static const std::regex byReference(R"((-?\d+) put (\w+)\(in out (\w+)\*\); \1 get \2\(out result \3\*\); )");
    text = std::regex_replace(text, byValue, "$1 $2 $3; ");
    return std::regex_replace(text, byReference, "$1 $2 $3&; ");
}

class TypeLibrary : public testing::Test
{
protected:
    void SetUp() override { ASSERT_EQ(LoadTypeLibEx(ComponentFile().c_str(), REGKIND_NONE, &library), S_OK); }

    ComPtr<ITypeLib> library;
};

// In the order of kClasses.
const char *const kMembers[] = {
    // clsConfig
    "1 User_ID Integer; 2 PartitionID Long; 3 DebugMode Integer; 4 LogFile String; "
    "5 SqlServerName String; 6 Password String; 7 SqlUserName String; 8 SqlDbName String; "
    "9 SQLDSN String; 10 SqlTimeout Integer; 11 Zentra_INIFile String; "
    "12 get Version(out result String*); 13 call ShowForm(out result Byte*); ",
    // clsFormats
    "1 FormatID Integer&; 2 FormatName String&; 3 InsertBefore Boolean&; 4 InsertAfter Boolean&; "
    "5 InsertColon Boolean&; 6 Bold Boolean&; 7 Underline Boolean&; 8 Indent Boolean&; "
    "9 NewFormat Boolean&; 10 SystemFormat Boolean&; 11 HasChanged Boolean&; 12 RemoveFormat Boolean&; "
    "13 call FillFields(in out Integer* p_format_id, in out String* p_format_name, in out Boolean* "
    "p_insert_before, in out Boolean* p_insert_after, in out Boolean* p_insert_colon, in out Boolean* "
    "p_bold, in out Boolean* p_underline, in out Boolean* p_indent, in out Boolean* p_system_format, in out "
    "Boolean* p_newformat, in out Boolean* p_haschanged); ",
    // colFormats
    "1 m_lngPartitionID Long; 2 putref ColFormatInfo(in _Collection*); "
    "2 get ColFormatInfo(out result _Collection**); "
    "0 get Item(in out Variant*, out result _clsFormats**); 3 call GetFormatInfo(); ",
    // clsHeadings
    "1 HeadingName String&; 2 NewHeading Boolean&; 3 SystemHeading Boolean&; 4 HasChanged Boolean&; "
    "5 HeadID Integer&; 6 RemoveHeader Boolean&; "
    "7 call FillHeadings(in out Integer* p_head_id, in out String* p_heading_name, in out Boolean* "
    "p_new_heading, in out Boolean* p_system_heading, in out Boolean* p_haschanged); ",
    // colHeadings
    "1 m_lngPartitionID Long; 2 putref ColHeadingInfo(in _Collection*); "
    "2 get ColHeadingInfo(out result _Collection**); "
    "0 get Item(in out Variant*, out result _clsHeadings**); 3 call GetHeadingInfo(); ",
    // clsSettings
    "1 HospitalID Integer&; 2 ReportType Integer&; 3 FormatID Integer&; 4 PartitionID Long&; "
    "5 NewSetting Boolean&; 6 HasChanged Boolean&; 7 SettingID Integer&; 8 RemoveSetting Boolean&; "
    "9 call FillSettings(in out Integer* p_setting_id, in out Integer* p_hosp_acct_id, in out Integer* "
    "p_report_type_nbr, in out Integer* p_format_id, in out Long* p_partition_id, in out Boolean* "
    "p_new_setting, in out Boolean* p_haschanged); ",
    // colSettings
    "1 m_lngPartitionID Long; 2 putref ColSettingInfo(in _Collection*); "
    "2 get ColSettingInfo(out result _Collection**); "
    "0 get Item(in out Variant*, out result _clsSettings**); "
    "3 call AddSettingtoCollection(in out _clsSettings** p_clsSetting); 4 call GetSettingInfo(); ",
    // clsPartition
    "1 m_strPartitionName String; 2 m_lngPartitionID Long; 3 m_blnParent Boolean; 4 m_strLineage String; "
    "5 m_blnTagKnownHeadings Boolean; 6 m_blnKnownFound Boolean; 7 m_blnAllowMixedCaseHeadings Boolean; "
    "8 m_blnMixFound Boolean; 9 putref m_objcolFormats(in _colFormats*); "
    "9 get m_objcolFormats(out result _colFormats**); 10 putref m_objcolHeadings(in _colHeadings*); "
    "10 get m_objcolHeadings(out result _colHeadings**); "
    "11 call SetPartitionID(in out Long* p_lngPartitionID); ",
    // colPartitions
    "1 putref colPartitions(in _Collection*); 1 put colPartitions(in _Collection*); "
    "1 get colPartitions(out result _Collection**); "
    "0 get Item(in out Variant*, out result _clsPartition**); ",
    // Collection
    "0 get Item(in Variant, out result Variant*); "
    "1 call Add(in Variant Item, in optional Variant Key, in optional Variant Before, in optional Variant "
    "After); "
    "2 get Count(out result Long*); 3 call Remove(in Variant Index); "
    "-4 get _NewEnum(out result Unknown*) restricted; ",
};

TEST_F(TypeLibrary, HasTheInterfacesMemberByMember)
{
    ASSERT_EQ(std::size(kMembers), std::size(kClasses));
    for (std::size_t i = 0; i < std::size(kClasses); ++i)
        EXPECT_EQ(Members(*library.Get(), kClasses[i].interfaceId), kMembers[i]) << kClasses[i].name;
}

TEST_F(TypeLibrary, HasTheClassesWithTheirDefaultInterfaces)
{
    UINT classes = 0;
    for (UINT i = 0; i < library->GetTypeInfoCount(); ++i)
    {
        TYPEKIND kind;
        ASSERT_EQ(library->GetTypeInfoType(i, &kind), S_OK);
        classes += kind == TKIND_COCLASS;
    }
    EXPECT_EQ(classes, std::size(kClasses));
    for (const PublicClass &expected : kClasses)
    {
        SCOPED_TRACE(expected.name);
        ComPtr<ITypeInfo> type;
        ASSERT_EQ(library->GetTypeInfoOfGuid(expected.id, &type), S_OK);
        Text name;
        ASSERT_EQ(type->GetDocumentation(MEMBERID_NIL, &name, nullptr, nullptr, nullptr), S_OK);
        EXPECT_EQ(Narrow(name.str()), expected.name);
        TYPEATTR *attributes = nullptr;
        ASSERT_EQ(type->GetTypeAttr(&attributes), S_OK);
        EXPECT_EQ(attributes->typekind, TKIND_COCLASS);
        EXPECT_NE(attributes->wTypeFlags & TYPEFLAG_FCANCREATE, 0);
        EXPECT_EQ(attributes->cImplTypes, 1);
        type->ReleaseTypeAttr(attributes);
        INT flags = 0;
        ASSERT_EQ(type->GetImplTypeFlags(0, &flags), S_OK);
        EXPECT_NE(flags & IMPLTYPEFLAG_FDEFAULT, 0);
        HREFTYPE reference;
        ComPtr<ITypeInfo> implemented;
        ASSERT_EQ(type->GetRefTypeOfImplType(0, &reference), S_OK);
        ASSERT_EQ(type->GetRefTypeInfo(reference, &implemented), S_OK);
        ASSERT_EQ(implemented->GetTypeAttr(&attributes), S_OK);
        EXPECT_TRUE(attributes->guid == expected.interfaceId);
        EXPECT_NE(attributes->wTypeFlags & TYPEFLAG_FDUAL, 0);
        EXPECT_NE(attributes->wTypeFlags & TYPEFLAG_FNONEXTENSIBLE, 0);
        implemented->ReleaseTypeAttr(attributes);
    }
}

TEST_F(TypeLibrary, HasItsIdentity)
{
    TLIBATTR *attributes = nullptr;
    ASSERT_EQ(library->GetLibAttr(&attributes), S_OK);
    EXPECT_TRUE(attributes->guid == LIBID_KVHEADERS);
    EXPECT_EQ(attributes->wMajorVerNum, KVHEADERS_VERSION_MAJOR);
    EXPECT_EQ(attributes->wMinorVerNum, KVHEADERS_VERSION_MINOR);
    EXPECT_EQ(attributes->syskind, SYS_WIN32);
    library->ReleaseTLibAttr(attributes);
    Text name;
    ASSERT_EQ(library->GetDocumentation(-1, &name, nullptr, nullptr, nullptr), S_OK);
    EXPECT_EQ(name.str(), L"KVHEADERS");
}

} // namespace

} // namespace com_test
