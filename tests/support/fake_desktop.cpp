// A desktop for tests: message boxes are answered from a script, and everything asked of it is recorded.
#include "support/fake_desktop.h"

#include "driver/escape.h"
#include "platform/files.h"
#include "play/native_path.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

namespace support
{

namespace
{

const char *Word(platform::Answer answer)
{
    switch (answer)
    {
    case platform::Answer::Yes:
        return "Yes";
    case platform::Answer::No:
        return "No";
    default:
        return "OK";
    }
}

} // namespace

std::string Box(int flags, const std::string &title, const std::string &text, const std::string &answer)
{
    return "box " + std::to_string(flags) + " \"" + driver::Escape(title) + "\" \"" + driver::Escape(text) + "\" -> " +
           answer;
}

std::string ErrorBox(const std::string &text)
{
    return Box(platform::kExclamation, "Error", text);
}

FakeDesktop::FakeDesktop()
{
    platform::SetDesktop(this);
}

FakeDesktop::~FakeDesktop()
{
    platform::SetDesktop(nullptr);
    EXPECT_TRUE(m_answers.empty()) << m_answers.size() << " answers are left over";
}

void FakeDesktop::WillAnswer(std::initializer_list<platform::Answer> answers)
{
    m_answers.insert(m_answers.end(), answers);
}

void FakeDesktop::WillAnswerOk(std::size_t times)
{
    m_answers.insert(m_answers.end(), times, platform::Answer::Ok);
}

platform::Answer FakeDesktop::ShowMessage(const std::string &text, int flags, const std::string &title)
{
    if (m_answers.empty())
    {
        const std::string line = Box(flags, title, text, "?");
        ADD_FAILURE() << "unexpected " << line;
        throw UnexpectedBox(line);
    }
    const platform::Answer answer = m_answers.front();
    m_answers.pop_front();
    boxes.push_back(Box(flags, title, text, Word(answer)));
    if (whileBoxIsOpen)
        whileBoxIsOpen(boxes.back());
    return answer;
}

void FakeDesktop::OpenFile(platform::WindowHandle owner, const std::string &path, const std::string &workingDirectory)
{
    if (openFailure)
        throw runtime::Error(*openFailure);
    if (!platform::FileExists(path))
        runtime::Raise(runtime::kFileNotFound);
    std::ifstream file(scenario::NativePath(path), std::ios::binary);
    opened.push_back({owner, path, workingDirectory, {std::istreambuf_iterator<char>(file), {}}});
}

void FakeDesktop::SetWindowPos(platform::WindowHandle window, int insertAfter, int left, int top, int width, int height)
{
    if (!window)
        runtime::Raise(runtime::kInvalidProcedureCall);
    placings.push_back({window, insertAfter, left, top, width, height});
}

} // namespace support
