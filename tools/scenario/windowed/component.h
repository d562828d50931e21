// The component as a host has it: created through COM by its name.
#pragma once

#include "play/stage.h"

#include <windows.h>

#include <oleauto.h>

#include <functional>
#include <string>

namespace scenario
{

// To be used in one single-threaded apartment. Failures are a Refusal with what the component says.
class Component
{
public:
    // Creates KVHEADERS.clsConfig.
    Component();
    ~Component();
    Component(const Component &) = delete;
    Component &operator=(const Component &) = delete;

    void Set(const std::string &name, const PropertyValue &value) const;
    int ShowForm() const;

private:
    DISPID Member(const wchar_t *name) const;
    void Invoke(DISPID member, WORD kind, DISPPARAMS &arguments, VARIANT *result) const;

    IDispatch *m_object = nullptr;
};

// Gives `opened` the paths that the component asks the system to open, instead of starting a program for them. Paths
// without a file go to the system, which refuses them. To be called once, when the component is loaded.
void WatchOpenedFiles(std::function<void(const std::string &path)> opened);

} // namespace scenario
