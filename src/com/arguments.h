// A script's arguments, converted to what the type library declares for the member.
#pragma once

#include "com/values.h"

#include <deque>
#include <vector>

namespace com
{

// A script passes variables as references to variants and numbers in whatever width they have. The system's own
// conversion refuses some of these where an argument is by reference, so that it is left nothing to convert: every
// argument is copied, converted by value, and passed by reference where the member requires it. (No member changes its
// arguments, so that nothing has to be carried back.)
class Arguments
{
public:
    // Raises the error 6 or 13 when an argument cannot be converted, 94 for Null; a Failure for a member that cannot be
    // called so (DISP_E_MEMBERNOTFOUND), a wrong number of arguments, an unknown name of one, or a null pointer.
    Arguments(ITypeInfo &type, DISPID member, WORD flags, const DISPPARAMS &given);

    // What to call the member with. Belongs to this object.
    DISPPARAMS *Get() { return &m_arguments; }

    // True when the member is a property without arguments of its own that yields an object, and arguments were given:
    // these are then arguments of the object's default member.
    bool AreForResult() const { return m_areForResult; }

private:
    void Convert(ITypeInfo &type, const FUNCDESC &function, const DISPPARAMS &given);
    void Convert(ITypeInfo &info, VARIANTARG &to, const VARIANT &from, const ELEMDESC &wanted);

    DISPPARAMS m_arguments;
    std::vector<VARIANTARG> m_passed; // own nothing
    std::deque<Variant> m_values;     // what m_passed refers to
    bool m_areForResult = false;
};

} // namespace com
