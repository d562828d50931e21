// The component, registered for the user for as long as the acceptance takes.
#pragma once

#include <filesystem>
#include <string>

namespace acceptance
{

class Registration
{
public:
    // Registers the file. Problem when the user has a registration already, which is left alone, or when hosts do not
    // get this file in spite of it.
    explicit Registration(const std::filesystem::path &component);
    ~Registration();
    Registration(const Registration &) = delete;
    Registration &operator=(const Registration &) = delete;

    // As a host reads it from the component.
    const std::string &Version() const { return m_version; }

private:
    std::filesystem::path m_component;
    std::string m_version;
};

} // namespace acceptance
