// The classes that a host can create, in one table.
#include "com/classes.h"

#include "com/config_object.h"
#include "com/formats_objects.h"
#include "com/headings_objects.h"
#include "com/partition_objects.h"
#include "com/settings_objects.h"

namespace com
{

namespace
{

template <class Record>
IUnknown *Create()
{
    return Wrap(runtime::MakeRef<Record>());
}

IUnknown *CreateCollection()
{
    return static_cast<_Collection *>(new CollectionObject);
}

template <class Record>
constexpr PublicClass Describe(const wchar_t *name)
{
    return {&__uuidof(typename ComTraits<Record>::Class), name, Create<Record>};
}

} // namespace

std::span<const PublicClass> PublicClasses()
{
    static const PublicClass classes[] = {
        Describe<host::clsConfig>(L"clsConfig"),          Describe<model::clsFormats>(L"clsFormats"),
        Describe<model::colFormats>(L"colFormats"),       Describe<model::clsHeadings>(L"clsHeadings"),
        Describe<model::colHeadings>(L"colHeadings"),     Describe<model::clsSettings>(L"clsSettings"),
        Describe<model::colSettings>(L"colSettings"),     Describe<model::clsPartition>(L"clsPartition"),
        Describe<model::colPartitions>(L"colPartitions"), {&__uuidof(::Collection), L"Collection", CreateCollection},
    };
    return classes;
}

} // namespace com
