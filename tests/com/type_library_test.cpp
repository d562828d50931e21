// The type library inside the DLL, read back member by member.
#include "component.h"

#include <sstream>

namespace com_test
{

namespace
{

std::string TypeName(ITypeInfo &owner, const TYPEDESC &type)
{
    switch (type.vt)
    {
    case VT_PTR:
        return TypeName(owner, *type.lptdesc) + "*";
    case VT_USERDEFINED:
    {
        ComPtr<ITypeInfo> referred;
        Text name;
        if (FAILED(owner.GetRefTypeInfo(type.hreftype, &referred)) ||
            FAILED(referred->GetDocumentation(MEMBERID_NIL, &name, nullptr, nullptr, nullptr)))
            return "?";
        return Narrow(name.str());
    }
    case VT_I2:
        return "Integer";
    case VT_I4:
        return "Long";
    case VT_UI1:
        return "Byte";
    case VT_BSTR:
        return "String";
    case VT_BOOL:
        return "Boolean";
    case VT_VARIANT:
        return "Variant";
    case VT_DISPATCH:
        return "Object";
    case VT_UNKNOWN:
        return "Unknown";
    case VT_HRESULT:
        return "HRESULT";
    case VT_VOID:
        return "void";
    default:
        return "vt" + std::to_string(type.vt);
    }
}

const char *Kind(INVOKEKIND kind)
{
    switch (kind)
    {
    case INVOKE_PROPERTYGET:
        return "get";
    case INVOKE_PROPERTYPUT:
        return "put";
    case INVOKE_PROPERTYPUTREF:
        return "putref";
    default:
        return "call";
    }
}

std::string Direction(USHORT flags)
{
    std::string text;
    if (flags & PARAMFLAG_FIN)
        text += "in ";
    if (flags & PARAMFLAG_FOUT)
        text += "out ";
    if (flags & PARAMFLAG_FRETVAL)
        text += "result ";
    if (flags & PARAMFLAG_FOPT)
        text += "optional ";
    return text;
}

// The functions of the interface as the vtable has them, one line each.
std::string Members(ITypeLib &library, REFIID id)
{
    ComPtr<ITypeInfo> dispatch;
    if (FAILED(library.GetTypeInfoOfGuid(id, &dispatch)))
        return "no such interface";
    HREFTYPE reference;
    ComPtr<ITypeInfo> type;
    if (FAILED(dispatch->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference)) ||
        FAILED(dispatch->GetRefTypeInfo(reference, &type)))
        return "not dual";
    TYPEATTR *attributes = nullptr;
    EXPECT_EQ(type->GetTypeAttr(&attributes), S_OK);
    std::ostringstream text;
    for (UINT i = 0; i < attributes->cFuncs; ++i)
    {
        FUNCDESC *function = nullptr;
        EXPECT_EQ(type->GetFuncDesc(i, &function), S_OK);
        BSTR names[16] = {};
        UINT count = 0;
        EXPECT_EQ(type->GetNames(function->memid, names, 16, &count), S_OK);
        text << function->memid << ' ' << Kind(function->invkind) << ' ' << Narrow(names[0]) << '(';
        for (int p = 0; p < function->cParams; ++p)
        {
            const ELEMDESC &parameter = function->lprgelemdescParam[p];
            text << (p ? ", " : "") << Direction(parameter.paramdesc.wParamFlags)
                 << TypeName(*type.Get(), parameter.tdesc);
            if (function->invkind == INVOKE_FUNC && static_cast<UINT>(p) + 1 < count &&
                !(parameter.paramdesc.wParamFlags & PARAMFLAG_FRETVAL))
                text << ' ' << Narrow(names[p + 1]);
        }
        text << ')' << (function->wFuncFlags & FUNCFLAG_FRESTRICTED ? " restricted" : "") << '\n';
        EXPECT_EQ(TypeName(*type.Get(), function->elemdescFunc.tdesc), "HRESULT");
        EXPECT_EQ(function->callconv, CC_STDCALL);
        for (UINT n = 0; n < count; ++n)
            SysFreeString(names[n]);
        type->ReleaseFuncDesc(function);
    }
    type->ReleaseTypeAttr(attributes);
    return text.str();
}

class TypeLibrary : public testing::Test
{
protected:
    void SetUp() override { ASSERT_EQ(LoadTypeLibEx(ComponentFile().c_str(), REGKIND_NONE, &library), S_OK); }

    ComPtr<ITypeLib> library;
};

struct Expected
{
    const char *name;
    const IID &id;
    const CLSID &classId;
    const char *members;
};

const Expected kInterfaces[] = {
    {"clsConfig", __uuidof(_clsConfig), __uuidof(clsConfig),
     R"(1 put User_ID(in Integer)
1 get User_ID(out result Integer*)
2 put PartitionID(in Long)
2 get PartitionID(out result Long*)
3 put DebugMode(in Integer)
3 get DebugMode(out result Integer*)
4 put LogFile(in String)
4 get LogFile(out result String*)
5 put SqlServerName(in String)
5 get SqlServerName(out result String*)
6 put Password(in String)
6 get Password(out result String*)
7 put SqlUserName(in String)
7 get SqlUserName(out result String*)
8 put SqlDbName(in String)
8 get SqlDbName(out result String*)
9 put SQLDSN(in String)
9 get SQLDSN(out result String*)
10 put SqlTimeout(in Integer)
10 get SqlTimeout(out result Integer*)
11 put Zentra_INIFile(in String)
11 get Zentra_INIFile(out result String*)
12 get Version(out result String*)
13 call ShowForm(out result Byte*)
)"},
    {"clsFormats", __uuidof(_clsFormats), __uuidof(clsFormats),
     R"(1 put FormatID(in out Integer*)
1 get FormatID(out result Integer*)
2 put FormatName(in out String*)
2 get FormatName(out result String*)
3 put InsertBefore(in out Boolean*)
3 get InsertBefore(out result Boolean*)
4 put InsertAfter(in out Boolean*)
4 get InsertAfter(out result Boolean*)
5 put InsertColon(in out Boolean*)
5 get InsertColon(out result Boolean*)
6 put Bold(in out Boolean*)
6 get Bold(out result Boolean*)
7 put Underline(in out Boolean*)
7 get Underline(out result Boolean*)
8 put Indent(in out Boolean*)
8 get Indent(out result Boolean*)
9 put NewFormat(in out Boolean*)
9 get NewFormat(out result Boolean*)
10 put SystemFormat(in out Boolean*)
10 get SystemFormat(out result Boolean*)
11 put HasChanged(in out Boolean*)
11 get HasChanged(out result Boolean*)
12 put RemoveFormat(in out Boolean*)
12 get RemoveFormat(out result Boolean*)
13 call FillFields(in out Integer* p_format_id, in out String* p_format_name, in out Boolean* p_insert_before, )"
     R"(in out Boolean* p_insert_after, in out Boolean* p_insert_colon, in out Boolean* p_bold, )"
     R"(in out Boolean* p_underline, in out Boolean* p_indent, in out Boolean* p_system_format, )"
     R"(in out Boolean* p_newformat, in out Boolean* p_haschanged)
)"},
    {"colFormats", __uuidof(_colFormats), __uuidof(colFormats),
     R"(1 put m_lngPartitionID(in Long)
1 get m_lngPartitionID(out result Long*)
2 putref ColFormatInfo(in _Collection*)
2 get ColFormatInfo(out result _Collection**)
0 get Item(in out Variant*, out result _clsFormats**)
3 call GetFormatInfo()
)"},
    {"clsHeadings", __uuidof(_clsHeadings), __uuidof(clsHeadings),
     R"(1 put HeadingName(in out String*)
1 get HeadingName(out result String*)
2 put NewHeading(in out Boolean*)
2 get NewHeading(out result Boolean*)
3 put SystemHeading(in out Boolean*)
3 get SystemHeading(out result Boolean*)
4 put HasChanged(in out Boolean*)
4 get HasChanged(out result Boolean*)
5 put HeadID(in out Integer*)
5 get HeadID(out result Integer*)
6 put RemoveHeader(in out Boolean*)
6 get RemoveHeader(out result Boolean*)
7 call FillHeadings(in out Integer* p_head_id, in out String* p_heading_name, in out Boolean* p_new_heading, )"
     R"(in out Boolean* p_system_heading, in out Boolean* p_haschanged)
)"},
    {"colHeadings", __uuidof(_colHeadings), __uuidof(colHeadings),
     R"(1 put m_lngPartitionID(in Long)
1 get m_lngPartitionID(out result Long*)
2 putref ColHeadingInfo(in _Collection*)
2 get ColHeadingInfo(out result _Collection**)
0 get Item(in out Variant*, out result _clsHeadings**)
3 call GetHeadingInfo()
)"},
    {"clsSettings", __uuidof(_clsSettings), __uuidof(clsSettings),
     R"(1 put HospitalID(in out Integer*)
1 get HospitalID(out result Integer*)
2 put ReportType(in out Integer*)
2 get ReportType(out result Integer*)
3 put FormatID(in out Integer*)
3 get FormatID(out result Integer*)
4 put PartitionID(in out Long*)
4 get PartitionID(out result Long*)
5 put NewSetting(in out Boolean*)
5 get NewSetting(out result Boolean*)
6 put HasChanged(in out Boolean*)
6 get HasChanged(out result Boolean*)
7 put SettingID(in out Integer*)
7 get SettingID(out result Integer*)
8 put RemoveSetting(in out Boolean*)
8 get RemoveSetting(out result Boolean*)
9 call FillSettings(in out Integer* p_setting_id, in out Integer* p_hosp_acct_id, )"
     R"(in out Integer* p_report_type_nbr, in out Integer* p_format_id, in out Long* p_partition_id, )"
     R"(in out Boolean* p_new_setting, in out Boolean* p_haschanged)
)"},
    {"colSettings", __uuidof(_colSettings), __uuidof(colSettings),
     R"(1 put m_lngPartitionID(in Long)
1 get m_lngPartitionID(out result Long*)
2 putref ColSettingInfo(in _Collection*)
2 get ColSettingInfo(out result _Collection**)
0 get Item(in out Variant*, out result _clsSettings**)
3 call AddSettingtoCollection(in out _clsSettings** p_clsSetting)
4 call GetSettingInfo()
)"},
    {"clsPartition", __uuidof(_clsPartition), __uuidof(clsPartition),
     R"(1 put m_strPartitionName(in String)
1 get m_strPartitionName(out result String*)
2 put m_lngPartitionID(in Long)
2 get m_lngPartitionID(out result Long*)
3 put m_blnParent(in Boolean)
3 get m_blnParent(out result Boolean*)
4 put m_strLineage(in String)
4 get m_strLineage(out result String*)
5 put m_blnTagKnownHeadings(in Boolean)
5 get m_blnTagKnownHeadings(out result Boolean*)
6 put m_blnKnownFound(in Boolean)
6 get m_blnKnownFound(out result Boolean*)
7 put m_blnAllowMixedCaseHeadings(in Boolean)
7 get m_blnAllowMixedCaseHeadings(out result Boolean*)
8 put m_blnMixFound(in Boolean)
8 get m_blnMixFound(out result Boolean*)
9 putref m_objcolFormats(in _colFormats*)
9 get m_objcolFormats(out result _colFormats**)
10 putref m_objcolHeadings(in _colHeadings*)
10 get m_objcolHeadings(out result _colHeadings**)
11 call SetPartitionID(in out Long* p_lngPartitionID)
)"},
    {"colPartitions", __uuidof(_colPartitions), __uuidof(colPartitions),
     R"(1 putref colPartitions(in _Collection*)
1 put colPartitions(in _Collection*)
1 get colPartitions(out result _Collection**)
0 get Item(in out Variant*, out result _clsPartition**)
)"},
    {"Collection", __uuidof(_Collection), __uuidof(Collection),
     R"(0 get Item(in Variant, out result Variant*)
1 call Add(in Variant Item, in optional Variant Key, in optional Variant Before, in optional Variant After)
2 get Count(out result Long*)
3 call Remove(in Variant Index)
-4 get _NewEnum(out result Unknown*) restricted
)"},
};

TEST_F(TypeLibrary, HasTheInterfacesMemberByMember)
{
    for (const Expected &expected : kInterfaces)
    {
        SCOPED_TRACE(expected.name);
        EXPECT_EQ(Members(*library.Get(), expected.id), expected.members);
    }
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
    EXPECT_EQ(classes, std::size(kInterfaces));
    for (const Expected &expected : kInterfaces)
    {
        SCOPED_TRACE(expected.name);
        ComPtr<ITypeInfo> type;
        ASSERT_EQ(library->GetTypeInfoOfGuid(expected.classId, &type), S_OK);
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
        EXPECT_TRUE(attributes->guid == expected.id);
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
