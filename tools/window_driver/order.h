// An act on its way to a window's thread, and what it throws on its way back.
#pragma once

#include <exception>
#include <functional>

namespace window_driver
{

class Order
{
public:
    explicit Order(const std::function<void()> &act) : m_act(act) {}

    // In the window's thread.
    void CarryOut() noexcept
    {
        try
        {
            m_act();
        }
        catch (...)
        {
            m_problem = std::current_exception();
        }
    }

    // In the thread that gave it, behind that.
    void ThrowProblem() const
    {
        if (m_problem)
            std::rethrow_exception(m_problem);
    }

private:
    const std::function<void()> &m_act;
    std::exception_ptr m_problem;
};

} // namespace window_driver
