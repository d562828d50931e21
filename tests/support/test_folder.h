// A fresh folder for a test, and files in it, for programs of both systems.
#pragma once

#include <string>
#include <string_view>

namespace support
{

// A folder that is made for the test and removed with this object. Two names lead to each file: the one that the test's
// own program opens, and the one that the database's driver opens, which lives on the Unix side also under Wine.
class TestFolder
{
public:
    TestFolder();
    ~TestFolder();
    TestFolder(const TestFolder &) = delete;
    TestFolder &operator=(const TestFolder &) = delete;

    std::string Path(const std::string &name = {}) const;
    std::string DriverPath(const std::string &name = {}) const;

private:
    std::string m_driverPath;
};

// A Unix path as the test's own program opens it.
std::string ProgramPath(const std::string &unixPath);

// A file of the sources, by its path from the project's root. As the test's own program opens it.
std::string SourcePath(const std::string &path);

// The whole file; empty when it cannot be read.
std::string ReadFile(const std::string &path);
void WriteFile(const std::string &path, std::string_view bytes);

// Compares a document with its approved text tests/<name>.expected (its control characters and what is not ASCII
// escaped). With KV_ACCEPT=1 in the environment the document becomes the approved one.
void ExpectApproved(const std::string &name, std::string_view document);

} // namespace support
