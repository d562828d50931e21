// The factory of the stage in use.
#include "editor/form_view.h"

#include "runtime/error.h"

#include <utility>

namespace editor
{

namespace
{

FormViewFactory &Factory()
{
    static FormViewFactory factory;
    return factory;
}

} // namespace

void SetFormViewFactory(FormViewFactory factory)
{
    Factory() = std::move(factory);
}

std::unique_ptr<FormView> MakeFormView(StagedForm &form)
{
    if (!Factory())
        runtime::Raise(runtime::kObjectNotSet);
    return Factory()(form);
}

} // namespace editor
