// A fresh folder for a test, and files in it, for programs of both systems.
#include "support/test_folder.h"

#include "driver/escape.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

namespace support
{

namespace
{

std::string FromEnvironment(const char *name, const std::string &otherwise)
{
    const char *value = std::getenv(name);
    return value && *value ? value : otherwise;
}

// Bytes of a document, readable: a line of text a line; control characters, "\" and bytes beyond ASCII as \r, \t, \\,
// \xNN.
std::string EscapeDocument(std::string_view bytes)
{
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string document;
    for (const char c : bytes)
    {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '\r' || c == '\t' || c == '\\')
            document += driver::Escape(std::string_view(&c, 1));
        else if (c != '\n' && (byte < 0x20 || byte >= 0x7F))
            document.append("\\x") += {kDigits[byte >> 4], kDigits[byte & 15]};
        else
            document += c;
    }
    return document;
}

} // namespace

std::string ProgramPath(const std::string &unixPath)
{
#ifdef _WIN32
    return "Z:" + unixPath;
#else
    return unixPath;
#endif
}

TestFolder::TestFolder()
{
    const std::string base = FromEnvironment("KV_BUILD", "/tmp") + "/test-folders";
    std::filesystem::create_directories(ProgramPath(base));
    std::random_device random;
    do
        m_driverPath = base + "/" + std::to_string(random());
    while (!std::filesystem::create_directory(ProgramPath(m_driverPath)));
}

TestFolder::~TestFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(Path(), ignored);
}

std::string TestFolder::Path(const std::string &name) const
{
    return ProgramPath(DriverPath(name));
}

std::string TestFolder::DriverPath(const std::string &name) const
{
    return name.empty() ? m_driverPath : m_driverPath + "/" + name;
}

std::string SourcePath(const std::string &path)
{
    return ProgramPath(FromEnvironment("KV_ROOT", ".") + "/" + path);
}

std::string ReadFile(const std::string &path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void WriteFile(const std::string &path, std::string_view bytes)
{
    std::ofstream file(path, std::ios::binary);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!file.flush())
        ADD_FAILURE() << "cannot write " << path;
}

void ExpectApproved(const std::string &name, std::string_view document)
{
    const std::string path = SourcePath("tests/" + name + ".expected");
    const std::string text = EscapeDocument(document);
    if (FromEnvironment("KV_ACCEPT", "") == "1")
        WriteFile(path, text);
    ASSERT_TRUE(std::filesystem::exists(path)) << path << " is missing; the document is:\n" << text;
    EXPECT_EQ(ReadFile(path), text) << path;
}

} // namespace support
