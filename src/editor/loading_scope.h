// The time in which the program sets lists or boxes.
#pragma once

namespace editor
{

// Sets the flag for the length of a block, and clears it at its end, also when that is an error.
class LoadingScope
{
public:
    explicit LoadingScope(bool &flag) : m_flag(flag) { m_flag = true; }
    ~LoadingScope() { m_flag = false; }
    LoadingScope(const LoadingScope &) = delete;
    LoadingScope &operator=(const LoadingScope &) = delete;

private:
    bool &m_flag;
};

} // namespace editor
