// The type library inside the DLL.
#include "com/type_library.h"

#include "com/errors.h"
#include "com/module.h"

#include <mutex>
#include <utility>
#include <vector>

namespace com
{

namespace
{

// Several apartments may call at the same time.
std::mutex mutex;
ComPtr<ITypeLib> library;
std::vector<std::pair<GUID, ComPtr<ITypeInfo>>> known;

const ComPtr<ITypeLib> &Library()
{
    if (!library)
        Check(LoadTypeLibEx(ModuleFile().c_str(), REGKIND_NONE, &library));
    return library;
}

} // namespace

ComPtr<ITypeLib> TypeLibrary()
{
    const std::lock_guard lock(mutex);
    return Library();
}

ComPtr<ITypeInfo> TypeInfo(REFGUID id)
{
    const std::lock_guard lock(mutex);
    for (const auto &[knownId, info] : known)
        if (IsEqualGUID(knownId, id))
            return info;
    ComPtr<ITypeInfo> info;
    Check(Library()->GetTypeInfoOfGuid(id, &info));
    known.emplace_back(id, info);
    return info;
}

void ForgetTypeLibrary() noexcept
{
    const std::lock_guard lock(mutex);
    known.clear();
    library.Reset();
}

} // namespace com
