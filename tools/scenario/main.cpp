// scenario: plays a session of a host and of the user at the editor from a script, and prints what happens.
#include "play/options.h"
#include "play/player.h"
#include "play/process.h"
#include "play/source.h"
#include "script/failure.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>

namespace
{

constexpr int kPlayed = 0;
constexpr int kNotPlayed = 1;
constexpr int kBadUsage = 2;
constexpr int kNoDatabase = 3;

// Does it when the source could be made ready.
template <class Act>
int With(scenario::Source &source, Act &&act)
{
    try
    {
        source.MakeOwnTables();
    }
    catch (const scenario::Refusal &refusal)
    {
        std::cerr << "scenario: " << refusal.what() << "\n";
        return kNoDatabase;
    }
    act();
    source.RemoveOwnTables();
    return kPlayed;
}

int PlayFile(const std::string &file, const scenario::Options &options)
{
    std::ifstream stream(file, std::ios::binary);
    if (!stream)
    {
        std::cerr << "scenario: cannot read " << file << "\n";
        return kBadUsage;
    }
    const std::string text{std::istreambuf_iterator<char>(stream), {}};
    try
    {
        scenario::Script script = scenario::ParseScript(file, text);
        script.folder = std::filesystem::absolute(file).parent_path();
        scenario::Source source(options);
        return With(source,
                    [&]
                    {
                        scenario::Player player(script, source, std::cout, options.showSql);
                        const std::unique_ptr<scenario::Stage> stage = scenario::MakeStage(player);
                        player.Play(*stage);
                    });
    }
    catch (const scenario::Failure &failure)
    {
        std::cout.flush();
        std::cerr << failure.what() << "\n";
    }
    catch (const std::exception &problem)
    {
        std::cout.flush();
        std::cerr << file << ": " << problem.what() << "\n";
    }
    return kNotPlayed;
}

// Whether the data source can be used, and what its server says of itself.
int CheckSource(const scenario::Options &options)
try
{
    scenario::Source source(options);
    return With(source,
                [&]
                {
                    try
                    {
                        for (const std::string &row : source.Connection().Query("SELECT @@VERSION"))
                            std::cout << row.substr(0, row.find('\n')) << "\n";
                    }
                    catch (const scenario::Refusal &)
                    {
                        std::cout << "a server without @@VERSION\n";
                    }
                });
}
catch (const std::exception &problem)
{
    std::cerr << "scenario: " << problem.what() << "\n";
    return kNotPlayed;
}

int Play(const std::string &file, const scenario::Options &options)
{
    const auto here = [&] { return PlayFile(file, options); };
    if (options.files.size() == 1)
        return here();
    std::vector<std::string> arguments = options.given;
    arguments.push_back(file);
    return scenario::PlayApart(arguments, here);
}

int PlayEach(const scenario::Options &options)
{
    int worst = kPlayed;
    for (const std::string &file : options.files)
    {
        const auto started = std::chrono::steady_clock::now();
        if (options.headers)
            std::cout << "# " << file << std::endl;
        const int status = Play(file, options);
        const auto took = std::chrono::steady_clock::now() - started;
        if (options.headers)
            std::cout << "# " << status << " " << std::chrono::duration_cast<std::chrono::milliseconds>(took).count()
                      << std::endl;
        worst = std::max(worst, status);
    }
    return worst;
}

} // namespace

int main(int count, char **values)
{
    scenario::LeaveLineEnds();
    std::string problem;
    const auto options = scenario::ParseOptions({values + 1, values + count}, problem);
    if (!options)
    {
        std::cerr << "scenario: " << problem << "\n" << scenario::kUsage;
        return kBadUsage;
    }
    if (options->help)
    {
        std::cout << scenario::kUsage;
        return kPlayed;
    }
    return options->files.empty() ? CheckSource(*options) : PlayEach(*options);
}
