// The list of loaded windows and the default instances.
#include "host/forms.h"

#include "runtime/error.h"

#include <map>

namespace host
{

namespace
{

struct DefaultInstance
{
    FormFactory factory;
    std::unique_ptr<Form> form;
};

std::map<std::string, DefaultInstance> &DefaultInstances()
{
    static std::map<std::string, DefaultInstance> instances;
    return instances;
}

} // namespace

std::vector<Form *> &LoadedForms()
{
    static std::vector<Form *> forms;
    return forms;
}

void SetFormFactory(const std::string &name, FormFactory factory)
{
    DefaultInstances()[name].factory = std::move(factory);
}

Form &DefaultForm(const std::string &name)
{
    const auto found = DefaultInstances().find(name);
    if (found == DefaultInstances().end() || !found->second.factory)
        runtime::Raise(runtime::kObjectNotSet);
    if (!found->second.form)
        found->second.form = found->second.factory();
    return *found->second.form;
}

void ReleaseDefaultForm(const std::string &name)
{
    const auto found = DefaultInstances().find(name);
    if (found != DefaultInstances().end())
        found->second.form.reset();
}

} // namespace host
